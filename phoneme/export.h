#ifndef PHONEME_EXPORT_H_
#define PHONEME_EXPORT_H_

/// Marks what the shared library exports; all else is hidden. A static library's users define
/// PHONEME_STATIC_DEFINE, which the CMake target and pkg-config do for them.
#ifdef PHONEME_STATIC_DEFINE
#define PHONEME_EXPORT
#else
#define PHONEME_EXPORT __attribute__((visibility("default")))
#endif

#endif  // PHONEME_EXPORT_H_
