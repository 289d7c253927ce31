#ifndef BENCHMARKS_ALLOCATION_COUNTER_H_
#define BENCHMARKS_ALLOCATION_COUNTER_H_

// Linking this replaces the global operator new by one that counts.

#include <cstddef>

namespace qeo::sp::benchmarks {

/// Calls of operator new in this process so far.
std::size_t CountAllocations();

}  // namespace qeo::sp::benchmarks

#endif  // BENCHMARKS_ALLOCATION_COUNTER_H_
