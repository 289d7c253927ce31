#ifndef NOTATION_EXPORT_H_
#define NOTATION_EXPORT_H_

/// Marks what the shared library exports; all else is hidden. A static library's users define
/// NOTATION_STATIC_DEFINE, which the CMake target and pkg-config do for them.
#ifdef NOTATION_STATIC_DEFINE
#define NOTATION_EXPORT
#else
#define NOTATION_EXPORT __attribute__((visibility("default")))
#endif

#endif  // NOTATION_EXPORT_H_
