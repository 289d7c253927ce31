#ifndef LEXICON_EXPORT_H_
#define LEXICON_EXPORT_H_

/// Marks what the shared library exports; all else is hidden. A static library's users define
/// LEXICON_STATIC_DEFINE, which the CMake target and pkg-config do for them.
#ifdef LEXICON_STATIC_DEFINE
#define LEXICON_EXPORT
#else
#define LEXICON_EXPORT __attribute__((visibility("default")))
#endif

#endif  // LEXICON_EXPORT_H_
