#ifndef PHONEME_TESTS_SANITIZED_H_
#define PHONEME_TESTS_SANITIZED_H_

// TESTS_SANITIZED is defined where a sanitizer has a malloc of its own, which can be neither
// replaced nor measured.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TESTS_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TESTS_SANITIZED
#endif
#endif

#endif  // PHONEME_TESTS_SANITIZED_H_
