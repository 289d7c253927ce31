// Counts the blocks that C code, utf8proc, takes from malloc along with those of operator new, and
// makes them fail like those. A sanitizer has a malloc of its own: under it C finds memory always.

#include <cstddef>

#include "tests/allocation_counter.h"
#include "tests/sanitized.h"

#if defined(__GLIBC__) && !defined(TESTS_SANITIZED)

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): names of the C library
void* __libc_malloc(std::size_t size);
void __libc_free(void* block);
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

void* malloc(std::size_t size) noexcept {
  if (!qeo::allocations::IsInsideOperatorNew() && !qeo::allocations::CountAllocated()) {
    return nullptr;
  }
  return __libc_malloc(size);
}

void free(void* block) noexcept {
  if (!qeo::allocations::IsInsideOperatorNew() && block != nullptr) {
    qeo::allocations::CountFreed();
  }
  __libc_free(block);
}
}

#endif
