// Reading of the texts of a batch.

#include "bindings/texts.h"

#include <algorithm>
#include <string_view>

namespace qeo::python {

namespace {

bool IsText(py::handle object) {
  return PyUnicode_Check(object.ptr()) != 0 || PyBytes_Check(object.ptr()) != 0;
}

bool IsBool(py::handle object) {
  const std::string_view type = Py_TYPE(object.ptr())->tp_name;
  return PyBool_Check(object.ptr()) || type == "numpy.bool_" || type == "numpy.bool";
}

// Whether an object differs from itself, as the NaN of every type does. What cannot be compared, or
// as an array gives no single answer, does not.
bool DiffersFromItself(PyObject* object) {
  const auto differs =
      py::reinterpret_steal<py::object>(PyObject_RichCompare(object, object, Py_NE));
  if (differs) return IsBool(differs) && FlagArgument(differs.ptr());
  if (PyErr_ExceptionMatches(PyExc_Exception) == 0) throw py::error_already_set();
  PyErr_Clear();
  return false;
}

// What a column of a table holds where it has no text: None, NaN and NaT of any type, and
// pandas.NA, which does not say whether it differs from itself.
bool IsMissing(PyObject* object) {
  if (object == Py_None) return true;
  return std::string_view(Py_TYPE(object)->tp_name) == "NAType" || DiffersFromItself(object);
}

// The size of a buffer's offsets: 4 or 8 bytes, or 0 when they are something else.
std::size_t OffsetSize(const py::buffer_info& info) {
  const std::string type = ItemType(info);
  const bool is_signed = type == "i" || type == "l" || type == "q";
  const bool is_offset = is_signed && (info.itemsize == 4 || info.itemsize == 8);
  return is_offset ? static_cast<std::size_t>(info.itemsize) : 0;
}

}  // namespace

ObjectReader::ObjectReader(py::handle texts, bool takes_missing) : takes_missing_(takes_missing) {
  if (IsText(texts)) {
    throw py::type_error("a batch takes many texts, not one " + TypeName(texts.ptr()));
  }
  CheckIterable(texts.ptr(), "the texts of a batch");
  iterator_ = py::reinterpret_steal<py::object>(PyObject_GetIter(texts.ptr()));
  if (!iterator_) throw py::error_already_set();
  const Py_ssize_t hint = PyObject_LengthHint(texts.ptr(), 0);
  if (hint < 0) throw py::error_already_set();
  constexpr std::size_t kMostBelieved = std::size_t{1} << 24;  // a hint may be any number
  size_hint_ = std::min(static_cast<std::size_t>(hint), kMostBelieved);
}

bool ObjectReader::Read(Chunk& chunk) {
  chunk.bytes.clear();
  chunk.ends.clear();
  chunk.units.clear();
  chunk.missing.clear();
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  while (chunk.ends.size() < kChunkTexts && chunk.bytes.size() < kChunkBytes) {
    const auto text = py::reinterpret_steal<py::object>(PyIter_Next(iterator_.ptr()));
    if (!text) {
      if (PyErr_Occurred() != nullptr) throw py::error_already_set();
      break;
    }
    Append(text, chunk);
    ++count_;
  }
  return !chunk.ends.empty();
}

void ObjectReader::Append(py::handle text, Chunk& chunk) const {
  if (!AppendText(text.ptr(), chunk.bytes)) {
    const bool is_missing = IsMissing(text.ptr());
    if (!is_missing || !takes_missing_) {
      throw py::type_error("texts[" + std::to_string(count_) + "] must be str or bytes, not " +
                           TypeName(text.ptr()) +
                           (is_missing ? "; errors=\"none\" takes it as a text that failed" : ""));
    }
    chunk.missing.push_back(chunk.ends.size());
  }
  chunk.ends.push_back(chunk.bytes.size());
  chunk.units.push_back(PyUnicode_Check(text.ptr()) ? Unit::kCharacters : Unit::kBytes);
}

std::optional<BufferPair> BufferPair::From(py::handle texts) {
  if (!PyTuple_Check(texts.ptr()) || PyTuple_GET_SIZE(texts.ptr()) != 2) return std::nullopt;
  const py::handle data = PyTuple_GET_ITEM(texts.ptr(), 0);
  const py::handle offsets = PyTuple_GET_ITEM(texts.ptr(), 1);
  if (IsText(offsets) || PyObject_CheckBuffer(offsets.ptr()) == 0) return std::nullopt;
  if (PyObject_CheckBuffer(data.ptr()) == 0) {
    throw py::type_error("the data of a pair of buffers must be a buffer, not " +
                         TypeName(data.ptr()));
  }
  return BufferPair(py::reinterpret_borrow<py::buffer>(data).request(),
                    py::reinterpret_borrow<py::buffer>(offsets).request());
}

BufferPair::BufferPair(py::buffer_info data, py::buffer_info offsets) {
  const std::size_t offset_size = OffsetSize(offsets);
  if (offset_size == 0) {
    const char* hint = offsets.itemsize == 1 ? "; untyped bytes are given as "
                                               "numpy.frombuffer(offsets, numpy.int32), or int64"
                                             : "";
    throw py::type_error("offsets must be 32-bit or 64-bit integers, not of format " +
                         Shown(py::str(offsets.format).ptr()) + hint);
  }
  if (data.itemsize != 1) {
    throw py::type_error("the data of a pair of buffers must be bytes, not of format " +
                         Shown(py::str(data.format).ptr()));
  }
  if (!IsRow(data) || !IsRow(offsets)) {
    throw py::value_error("a pair of buffers must be contiguous and of one dimension");
  }
  is_wide_ = offset_size == sizeof(std::int64_t);
  byte_count_ = static_cast<std::size_t>(data.size);
  offset_count_ = static_cast<std::size_t>(offsets.size);
  data_ = std::make_shared<py::buffer_info>(std::move(data));
  offsets_ = std::make_shared<py::buffer_info>(std::move(offsets));
}

std::int64_t BufferPair::Offset(std::size_t i) const {
  const char* offsets = static_cast<const char*>(offsets_->ptr);
  std::int32_t narrow = 0;
  std::int64_t wide = 0;
  if (is_wide_) {
    std::memcpy(&wide, offsets + i * sizeof wide, sizeof wide);
    return wide;
  }
  std::memcpy(&narrow, offsets + i * sizeof narrow, sizeof narrow);
  return narrow;
}

std::pair<const char*, std::size_t> BufferPair::At(std::size_t i) const {
  const std::int64_t begin = Offset(i);
  const std::int64_t end = Offset(i + 1);
  if (begin < 0 || end < begin || static_cast<std::uint64_t>(end) > byte_count_) {
    throw py::value_error("the offsets of text " + std::to_string(i) + ", " +
                          std::to_string(begin) + " and " + std::to_string(end) +
                          ", fall or are outside of " + std::to_string(byte_count_) + " bytes");
  }
  return {static_cast<const char*>(data_->ptr) + begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace qeo::python
