#ifndef TESTS_ALLOCATION_COUNTER_H_
#define TESTS_ALLOCATION_COUNTER_H_

// Linking this replaces the global operator new by one that counts and that can be made to fail.
// Every thread has counts of its own, so that counting does not slow threads down.

#include <cstddef>
#include <cstdint>

namespace qeo::allocations {

/// Allocations by this thread so far, also those that failed.
std::size_t Count();

/// Blocks that this thread has allocated, less those that it has freed.
std::ptrdiff_t CountLive();

enum class Failing : std::uint8_t {
  kOne,         ///< one allocation; those after it find memory again
  kFromThenOn,  ///< that one and all after it
};

/// Makes the n-th allocation of this thread from now on fail, counted from 1.
void FailAt(std::size_t n, Failing failing = Failing::kOne);

/// Ends that. Returns whether an allocation failed.
bool EndFailing();

/// Asks `may_succeed` before every allocation of any thread; null asks nobody.
void AskBeforeEach(bool (*may_succeed)());

// For a malloc that is replaced as well:

/// Whether the memory that is asked for is what operator new has counted already.
bool IsInsideOperatorNew();

/// Counts an allocation. Returns whether it may succeed.
bool CountAllocated();

void CountFreed();

}  // namespace qeo::allocations

#endif  // TESTS_ALLOCATION_COUNTER_H_
