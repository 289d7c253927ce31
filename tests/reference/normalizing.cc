// How the results of the reference forms of the normalisers are compared and shown.

#include "tests/reference/normalizing.h"

#include <algorithm>

#include "tests/reference/compare.h"

namespace qeo::sp::reference {

bool Same(const notation::Normalized& result, const Reading& reading) {
  return result.text == reading.text &&
         std::equal(result.problems.begin(), result.problems.end(), reading.problems.begin(),
                    reading.problems.end(), [](const notation::Problem& a, const Misfit& b) {
                      return a.kind == b.kind && a.range.offset == b.range.offset &&
                             a.range.length == b.range.length;
                    });
}

namespace {

template <typename Result>
std::string ShowResult(const Result& result) {
  std::string shown = Show(result.text);
  for (const auto& problem : result.problems) {
    shown += ", " + std::string(notation::ProblemName(problem.kind)) + ' ' +
             std::to_string(problem.range.offset) + '+' + std::to_string(problem.range.length);
  }
  return shown;
}

}  // namespace

std::string Show(const notation::Normalized& result) { return ShowResult(result); }
std::string Show(const Reading& reading) { return ShowResult(reading); }

}  // namespace qeo::sp::reference
