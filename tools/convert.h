#ifndef TOOLS_CONVERT_H_
#define TOOLS_CONVERT_H_

/// `phoneme convert`: texts from the arguments or standard input, one result a line.

#include <cstddef>
#include <string>
#include <vector>

#include "tools/messages.h"
#include "tools/notations.h"

namespace qeo::tool {

struct ConvertOptions {
  Conversion conversion;
  std::size_t column = 0;          ///< field to convert, counted from 1; 0 for the whole line
  std::vector<std::string> texts;  ///< when empty, the lines of standard input
};

/// Converts all texts, which `options.conversion` must allow (ConversionProblem), and returns the
/// exit status. What fails is told on standard error.
ExitStatus Convert(const ConvertOptions& options);

}  // namespace qeo::tool

#endif  // TOOLS_CONVERT_H_
