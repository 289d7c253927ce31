#ifndef TOOLS_BASE_USAGE_ERROR_H_
#define TOOLS_BASE_USAGE_ERROR_H_

// The one way to refuse a command line.

#include <stdexcept>
#include <string>

namespace qeo::tool {

/// What is wrong with the command line. `main` catches it and prints the message, which is ready
/// for a terminal, and must not go to standard error where that is the file in question.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message, bool is_about_standard_error = false)
      : std::runtime_error(message), is_about_standard_error_(is_about_standard_error) {}

  bool is_about_standard_error() const { return is_about_standard_error_; }

 private:
  bool is_about_standard_error_;
};

}  // namespace qeo::tool

#endif  // TOOLS_BASE_USAGE_ERROR_H_
