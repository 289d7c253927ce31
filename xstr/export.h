#ifndef XSTR_EXPORT_H_
#define XSTR_EXPORT_H_

/// Marks what the shared library exports; all else is hidden. A static library's users define
/// XSTR_STATIC_DEFINE, which the CMake target and pkg-config do for them.
#ifdef XSTR_STATIC_DEFINE
#define XSTR_EXPORT
#else
#define XSTR_EXPORT __attribute__((visibility("default")))
#endif

#endif  // XSTR_EXPORT_H_
