// Every form of operator new and delete, on malloc and free.

#include "tests/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace qeo::allocations {
namespace {

thread_local std::size_t allocation_count = 0;
thread_local std::ptrdiff_t live_count = 0;
thread_local std::size_t countdown = 0;  // to the allocation that fails; 0 when none will
thread_local Failing kind_of_failing = Failing::kOne;
thread_local bool has_failed = false;
// Volatile, because compilers take it that malloc and free look at no variable.
thread_local volatile bool is_inside_operator_new = false;
bool (*may_each_succeed)() = nullptr;

// While it lives, malloc and free serve operator new and delete.
class Inside {
 public:
  Inside() { is_inside_operator_new = true; }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;
  ~Inside() { is_inside_operator_new = false; }
};

void* Allocate(std::size_t size) noexcept {
  if (!CountAllocated()) return nullptr;
  const Inside inside;
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateAligned(std::size_t size, std::align_val_t alignment) noexcept {
  if (!CountAllocated()) return nullptr;
  const Inside inside;
  const auto unit = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

// Not inlined, or g++ takes it for a free() of what another operator new gave.
[[gnu::noinline]] void Free(void* block) noexcept {
  if (block != nullptr) CountFreed();
  const Inside inside;
  std::free(block);
}

void* OrThrow(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

std::size_t Count() { return allocation_count; }

std::ptrdiff_t CountLive() { return live_count; }

void FailAt(std::size_t n, Failing failing) {
  countdown = n;
  kind_of_failing = failing;
  has_failed = false;
}

bool EndFailing() {
  countdown = 0;
  return has_failed;
}

void AskBeforeEach(bool (*may_succeed)()) { may_each_succeed = may_succeed; }

bool IsInsideOperatorNew() { return is_inside_operator_new; }

bool CountAllocated() {
  ++allocation_count;
  if (may_each_succeed != nullptr && !may_each_succeed()) return false;
  if (countdown == 1) {
    has_failed = true;
    if (kind_of_failing == Failing::kOne) countdown = 0;
    return false;
  }
  if (countdown > 1) --countdown;
  ++live_count;
  return true;
}

void CountFreed() { --live_count; }

}  // namespace qeo::allocations

using qeo::allocations::Allocate;
using qeo::allocations::AllocateAligned;
using qeo::allocations::Free;
using qeo::allocations::OrThrow;

void* operator new(std::size_t size) { return OrThrow(Allocate(size)); }
void* operator new[](std::size_t size) { return OrThrow(Allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return OrThrow(AllocateAligned(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return OrThrow(AllocateAligned(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateAligned(size, alignment);
}

void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
  Free(block);
}
