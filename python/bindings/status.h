#ifndef PYTHON_BINDINGS_STATUS_H_
#define PYTHON_BINDINGS_STATUS_H_

// What became of a text of a batch.

#include <cstdint>

#include "notation/records.h"

namespace qeo::python {

/// The numbers of the package's enum Status.
enum class Status : std::uint8_t {
  kConverted = 0,
  kFailed = 1,
  kFirstProblem = 2,  // here the kinds of problems begin, in their order
  kLettersLost = kFirstProblem + static_cast<int>(notation::ProblemKind::kLettersLost),
  kMissing = 255,
};

constexpr Status StatusOf(notation::ProblemKind kind) {
  return static_cast<Status>(static_cast<int>(Status::kFirstProblem) + static_cast<int>(kind));
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_STATUS_H_
