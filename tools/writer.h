#ifndef TOOLS_WRITER_H_
#define TOOLS_WRITER_H_

/// From the library's syllables to a text in one of the target notations.

#include <string>

#include "tools/notations.h"
#include "tools/reader.h"

namespace qeo::tool {

/// Appends the syllables of the text that `reader` has read to `out`, in the notation `to`.
///
/// Returns false when the notation has no form for them, with `out` as it was: a pronunciation has
/// none for a syllable without phones. `problem` then says which.
bool Write(int language, Target to, Reader& reader, std::string& out, std::string& problem);

}  // namespace qeo::tool

#endif  // TOOLS_WRITER_H_
