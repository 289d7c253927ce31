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
#include "bindings/status.h"

namespace qeo::python {

namespace py = pybind11;

/// As many texts are read as fit the processor's cache, then they are converted; large enough that
/// taking the lock again, which can mean waiting for another thread, is rare.
inline constexpr std::size_t kChunkTexts = std::size_t{1} << 16;
inline constexpr std::size_t kChunkBytes = std::size_t{1} << 20;

/// In what a text's positions are counted.
enum class Unit : std::uint8_t { kBytes, kCharacters };

/// Texts one after the other, and where each ends.
struct Chunk {
  std::string bytes;
  std::vector<std::size_t> ends;
  std::vector<Unit> units;
  std::vector<std::size_t> missing;  ///< indexes of None and its like, which are empty texts here
};

/// What a batch takes beside plain texts.
struct Taken {
  bool missing = false;  ///< None and NaN, as texts that failed
  /// The status of each text of a pair of buffers, from where they come from; null for none. Texts
  /// that failed there are not converted.
  const unsigned char* status = nullptr;
  std::size_t status_count = 0;
};

/// Reads an iterable of str and bytes chunk by chunk. Bytes are copied, so that nobody can change
/// or free them while the lock is not held.
class ObjectReader {
 public:
  /// A TypeError when `texts` is a single text or cannot be iterated.
  ObjectReader(py::handle texts, bool takes_missing);

  /// Reads the next chunk; false when there are no more texts. A TypeError that names the index of
  /// an object that is not a text.
  bool Read(Chunk& chunk);

  /// How many texts there are at least, for reserving memory.
  std::size_t size_hint() const { return size_hint_; }

 private:
  void Append(py::handle text, Chunk& chunk) const;

  py::object iterator_;
  bool takes_missing_;
  std::size_t size_hint_ = 0;
  std::size_t count_ = 0;
};

/// The pair of an Arrow array of strings: a buffer of bytes, and one of 32-bit or 64-bit offsets,
/// one more than there are texts, or none at all.
class BufferPair {
 public:
  /// The pair, or nothing when `texts` is not a tuple of two with a buffer of offsets second. A
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

/// Calls `converter.Add(text, unit)` for each of the texts in order, `text` a std::string, or
/// `converter.Skip(status)` for one that has failed already, after `converter.Reserve(count)`.
template <typename Converter>
void ConvertPair(const BufferPair& pair, const unsigned char* status, Converter& converter) {
  std::string text;
  std::size_t i = 0;
  while (i < pair.count()) {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    WithoutLock([&] {
      const std::size_t end = std::min(i + kChunkTexts, pair.count());
      for (std::size_t bytes = 0; i < end && bytes < kChunkBytes; ++i) {
        const auto [data, size] = pair.At(i);
        bytes += size;
        if (status != nullptr && status[i] != 0) {
          converter.Skip(static_cast<Status>(status[i]));
          continue;
        }
        text.assign(data, size);
        converter.Add(text, Unit::kBytes);
      }
    });
  }
}

template <typename Converter>
void ConvertChunk(const Chunk& chunk, std::string& text, Converter& converter) {
  std::size_t begin = 0;
  auto missing = chunk.missing.begin();
  for (std::size_t i = 0; i < chunk.ends.size(); ++i) {
    const std::size_t end = chunk.ends[i];
    if (missing != chunk.missing.end() && *missing == i) {
      converter.Skip(Status::kMissing);
      ++missing;
      continue;
    }
    text.assign(chunk.bytes, begin, end - begin);
    converter.Add(text, chunk.units[i]);
    begin = end;
  }
}

template <typename Converter>
void ConvertAll(py::handle texts, const Taken& taken, Converter& converter) {
  if (const std::optional<BufferPair> pair = BufferPair::From(texts)) {
    if (taken.status != nullptr && taken.status_count != pair->count()) {
      throw py::value_error(std::to_string(pair->count()) + " texts have the status of " +
                            std::to_string(taken.status_count));
    }
    converter.Reserve(pair->count());
    ConvertPair(*pair, taken.status, converter);
    return;
  }
  ObjectReader reader(texts, taken.missing);
  converter.Reserve(reader.size_hint());
  Chunk chunk;
  std::string text;
  while (reader.Read(chunk)) {
    WithoutLock([&] { ConvertChunk(chunk, text, converter); });
  }
}

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_TEXTS_H_
