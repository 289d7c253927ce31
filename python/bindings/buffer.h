#ifndef PYTHON_BINDINGS_BUFFER_H_
#define PYTHON_BINDINGS_BUFFER_H_

// A growing array for the results of a batch. Unlike a vector it grows and shrinks in place,
// as far as the allocator can, which large arrays are worth; and NumPy can take it over.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace qeo::python {

namespace py = pybind11;

template <typename Value>
class Buffer {
  static_assert(std::is_trivially_copyable_v<Value>, "values are moved as bytes");

 public:
  Buffer() = default;
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() { std::free(values_); }

  std::size_t size() const { return size_; }

  void Reserve(std::size_t count) {
    if (count > capacity_) Resize(count);
  }

  void Add(Value value) {
    if (size_ == capacity_) Grow(1);
    values_[size_++] = value;
  }

  /// Appends values, or what can be converted to them one by one.
  template <typename Source>
  void Append(const Source* values, std::size_t count) {
    if (count > capacity_ - size_) Grow(count);
    std::copy(values, values + count, values_ + size_);
    size_ += count;
  }

  /// Hands the values over to a NumPy array, and is empty afterwards.
  py::array TakeArray() {
    Resize(std::max(size_, std::size_t{1}));
    const py::capsule memory(values_, std::free);
    Value* values = std::exchange(values_, nullptr);
    const std::size_t size = std::exchange(size_, 0);
    capacity_ = 0;
    return py::array_t<Value>(static_cast<py::ssize_t>(size), values, memory);
  }

 private:
  static constexpr std::size_t kLeastCapacity = 64;

  void Grow(std::size_t count) {
    Resize(std::max({size_ + count, capacity_ + capacity_ / 2, kLeastCapacity}));
  }

  void Resize(std::size_t capacity) {
    void* values = std::realloc(values_, capacity * sizeof(Value));
    if (values == nullptr) throw std::bad_alloc();
    values_ = static_cast<Value*>(values);
    capacity_ = capacity;
  }

  Value* values_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_BUFFER_H_
