#ifndef TESTS_PACKAGE_EARLY_H_
#define TESTS_PACKAGE_EARLY_H_

/// How many syllables a static initialiser of another source found in "ni3hao3".
int EarlySyllableCount();

#endif  // TESTS_PACKAGE_EARLY_H_
