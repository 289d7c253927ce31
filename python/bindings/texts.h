#ifndef PYTHON_BINDINGS_TEXTS_H_
#define PYTHON_BINDINGS_TEXTS_H_

// The texts of a batch: any iterable of str and bytes, or a pair of buffers in the layout of Arrow.
// Python's lock is held while objects are read and released while texts are converted.

#include <pybind11/pybind11.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/lock.h"

namespace qeo::python {

namespace py = pybind11;

/// As many texts are read as fit the processor's cache, then they are converted; large enough that
/// taking the lock again, which can mean waiting for another thread, is rare.
inline constexpr std::size_t kChunkTexts = std::size_t{1} << 16;
inline constexpr std::size_t kChunkBytes = std::size_t{1} << 20;

/// Texts one after the other, and where each ends.
struct Chunk {
  std::string bytes;
  std::vector<std::size_t> ends;
};

/// Reads an iterable of str and bytes chunk by chunk. Bytes are copied, so that nobody can change
/// or free them while the lock is not held.
class ObjectReader {
 public:
  /// A TypeError when `texts` is a single text or cannot be iterated.
  explicit ObjectReader(py::handle texts);

  /// Reads the next chunk; false when there are no more texts. A TypeError that names the index of
  /// an object that is no text.
  bool Read(Chunk& chunk);

  /// How many texts there are at least, for reserving memory.
  std::size_t size_hint() const { return size_hint_; }

 private:
  py::object iterator_;
  std::size_t size_hint_ = 0;
  std::size_t count_ = 0;
};

/// The pair of an Arrow array of strings: a buffer of bytes, and one of 32-bit or 64-bit offsets,
/// one more than there are texts, or none at all.
class BufferPair {
 public:
  /// The pair, or nothing when `texts` is not a tuple of two with a buffer of offsets behind. A
  /// TypeError or ValueError when it is but the buffers do not fit.
  static std::optional<BufferPair> From(py::handle texts);

  std::size_t count() const { return offset_count_ == 0 ? 0 : offset_count_ - 1; }

  /// Text `i`; a ValueError when its offsets fall or leave the data. Needs no lock.
  std::pair<const char*, std::size_t> At(std::size_t i) const;

 private:
  BufferPair(py::buffer_info data, py::buffer_info offsets);

  std::int64_t Offset(std::size_t i) const;

  std::shared_ptr<py::buffer_info> data_;
  std::shared_ptr<py::buffer_info> offsets_;
  std::size_t byte_count_ = 0;
  std::size_t offset_count_ = 0;
  bool is_wide_ = false;  // 64-bit offsets
};

/// Calls `converter.Add(text)` for each of the texts in order, `text` a std::string, after
/// `converter.Reserve(count)`.
template <typename Converter>
void ConvertPair(const BufferPair& pair, Converter& converter) {
  std::string text;
  std::size_t i = 0;
  while (i < pair.count()) {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    WithoutLock([&] {
      const std::size_t end = std::min(i + kChunkTexts, pair.count());
      for (std::size_t bytes = 0; i < end && bytes < kChunkBytes; ++i) {
        const auto [data, size] = pair.At(i);
        text.assign(data, size);
        converter.Add(text);
        bytes += size;
      }
    });
  }
}

template <typename Converter>
void ConvertChunk(const Chunk& chunk, std::string& text, Converter& converter) {
  std::size_t begin = 0;
  for (const std::size_t end : chunk.ends) {
    text.assign(chunk.bytes, begin, end - begin);
    converter.Add(text);
    begin = end;
  }
}

template <typename Converter>
void ConvertAll(py::handle texts, Converter& converter) {
  if (const std::optional<BufferPair> pair = BufferPair::From(texts)) {
    converter.Reserve(pair->count());
    ConvertPair(*pair, converter);
    return;
  }
  ObjectReader reader(texts);
  converter.Reserve(reader.size_hint());
  Chunk chunk;
  std::string text;
  while (reader.Read(chunk)) {
    WithoutLock([&] { ConvertChunk(chunk, text, converter); });
  }
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_TEXTS_H_
