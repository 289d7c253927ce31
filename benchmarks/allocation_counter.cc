#include "benchmarks/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace {
std::size_t allocation_count = 0;
}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++allocation_count;
  return std::malloc(size > 0 ? size : 1);
}

void* operator new(std::size_t size) {
  void* memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }

namespace qeo::sp::benchmarks {

std::size_t CountAllocations() { return allocation_count; }

}  // namespace qeo::sp::benchmarks
