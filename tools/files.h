#ifndef TOOLS_FILES_H_
#define TOOLS_FILES_H_

/// Files that the tool opens itself. Their descriptors are never those of standard input, output
/// and error, also where one of these was closed: what is meant for them must not end up in a file.

#include <string>

namespace qeo::tool {

/// Moves an open descriptor beyond the standard ones. Returns it, or -1 with errno set, also when
/// it was -1.
int MoveBeyondStandard(int file_descriptor);

/// Opens a file, with the flags of open(2), close on exec among them. Returns -1 with errno set.
int OpenFile(const std::string& path, int flags);

/// What messages call an input: its name in quotes, or "standard input" for "-".
std::string InputName(const std::string& path);

}  // namespace qeo::tool

#endif  // TOOLS_FILES_H_
