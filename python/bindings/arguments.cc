// Reading of Python's arguments.

#include "bindings/arguments.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace qeo::python {

namespace {

void AppendUtf8(Py_UCS4 c, std::string& bytes) {
  const auto tail = [c](int shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3f)); };
  if (c < 0x80) {
    bytes += static_cast<char>(c);
  } else if (c < 0x800) {
    bytes += static_cast<char>(0xc0 | (c >> 6));
    bytes += tail(0);
  } else if (c < 0x10000) {
    bytes += static_cast<char>(0xe0 | (c >> 12));
    bytes += tail(6);
    bytes += tail(0);
  } else {
    bytes += static_cast<char>(0xf0 | (c >> 18));
    bytes += tail(12);
    bytes += tail(6);
    bytes += tail(0);
  }
}

// By hand, since Python's own encoder would keep a copy of the bytes in each str for good.
void AppendStr(PyObject* text, std::string& bytes) {
  if (PyUnicode_READY(text) != 0) throw py::error_already_set();
  const Py_ssize_t length = PyUnicode_GET_LENGTH(text);
  const void* characters = PyUnicode_DATA(text);
  if (PyUnicode_IS_ASCII(text)) {
    bytes.append(static_cast<const char*>(characters), static_cast<std::size_t>(length));
    return;
  }
  const auto kind = PyUnicode_KIND(text);
  for (Py_ssize_t i = 0; i < length; ++i) AppendUtf8(PyUnicode_READ(kind, characters, i), bytes);
}

}  // namespace

bool AppendText(PyObject* text, std::string& bytes) {
  if (PyUnicode_Check(text)) {
    AppendStr(text, bytes);
    return true;
  }
  if (!PyBytes_Check(text)) return false;
  bytes.append(PyBytes_AS_STRING(text), static_cast<std::size_t>(PyBytes_GET_SIZE(text)));
  return true;
}

std::string TextArgument(PyObject* text) {
  std::string bytes;
  if (!AppendText(text, bytes)) {
    throw py::type_error("a text must be str or bytes, not " + TypeName(text));
  }
  return bytes;
}

std::vector<unsigned char> BytesArgument(PyObject* bytes, const char* what) {
  if (PyBytes_Check(bytes)) {
    const char* data = PyBytes_AS_STRING(bytes);
    return {data, data + PyBytes_GET_SIZE(bytes)};
  }
  if (PyObject_CheckBuffer(bytes) == 0) {
    throw py::type_error(std::string(what) + " must be bytes, not " + TypeName(bytes));
  }
  const py::buffer_info buffer = py::reinterpret_borrow<py::buffer>(bytes).request();
  const std::string type = ItemType(buffer);
  if (!IsRow(buffer) || (type != "B" && type != "b" && type != "c")) {
    throw py::type_error(std::string(what) + " must be bytes or one contiguous row of them, not " +
                         TypeName(bytes) + " of format " + Shown(py::str(buffer.format).ptr()) +
                         " in " + std::to_string(buffer.ndim) + " dimensions");
  }
  const auto* data = static_cast<const unsigned char*>(buffer.ptr);
  return {data, data + buffer.size};
}

bool IsRow(const py::buffer_info& buffer) {
  return buffer.ndim == 1 && (buffer.shape[0] <= 1 || buffer.strides[0] == buffer.itemsize);
}

std::string ItemType(const py::buffer_info& buffer) {
  const std::string& format = buffer.format;
  const bool has_order = !format.empty() && std::strchr("@=<", format[0]) != nullptr;
  return format.substr(has_order ? 1 : 0);
}

py::object IndexOf(PyObject* object) {
  if (PyLong_CheckExact(object)) return py::reinterpret_borrow<py::object>(object);
  if (PyBool_Check(object)) return {};
  auto index = py::reinterpret_steal<py::object>(PyNumber_Index(object));
  if (index) return index;
  if (PyErr_ExceptionMatches(PyExc_TypeError) == 0) throw py::error_already_set();
  PyErr_Clear();
  return index;
}

bool FlagArgument(PyObject* flag) {
  if (PyBool_Check(flag)) return flag == Py_True;
  const int is_true = PyObject_IsTrue(flag);
  if (is_true < 0) throw py::error_already_set();
  return is_true != 0;
}

void CheckIterable(PyObject* object, const char* what) {
  if (Py_TYPE(object)->tp_iter != nullptr || PySequence_Check(object) != 0) return;
  throw py::type_error(what + (" must be iterable, not " + TypeName(object)));
}

long IntegerArgument(PyObject* integer, long least, long most, const char* what) {
  const py::object index = IndexOf(integer);
  if (!index) {
    throw py::type_error(std::string(what) + " must be an int, not " + TypeName(integer));
  }
  int overflow = 0;
  const long value = PyLong_AsLongAndOverflow(index.ptr(), &overflow);
  if (overflow == 0 && value >= least && value <= most) return value;
  throw py::value_error(std::string(what) + " is " + std::to_string(least) + " to " +
                        std::to_string(most) + ", not " + Shown(index.ptr()));
}

namespace {

void AppendEscape(Py_UCS4 c, std::string& bytes) {
  char escape[sizeof "\\U0010ffff"];
  const char* form = c < 0x100 ? "\\x%02x" : c < 0x10000 ? "\\u%04x" : "\\U%08x";
  std::snprintf(escape, sizeof escape, form, static_cast<unsigned>(c));
  bytes += escape;
}

}  // namespace

std::string Presentable(PyObject* text) {
  constexpr Py_ssize_t kLongest = 60;
  const Py_ssize_t length = PyUnicode_GetLength(text);
  if (length < 0) throw py::error_already_set();
  std::string bytes;
  for (Py_ssize_t i = 0; i < std::min(length, kLongest); ++i) {
    const Py_UCS4 c = PyUnicode_ReadChar(text, i);
    Py_UNICODE_ISPRINTABLE(c) ? AppendUtf8(c, bytes) : AppendEscape(c, bytes);
  }
  return length > kLongest ? bytes + "..." : bytes;
}

std::string TypeName(PyObject* object) {
  const py::str name(Py_TYPE(object)->tp_name);
  return Presentable(name.ptr());
}

std::string Shown(PyObject* object) {
  int overflow = 0;
  if (PyLong_Check(object)) PyLong_AsLongAndOverflow(object, &overflow);
  if (overflow != 0) return "an int of more than 64 bits";
  return Presentable(py::repr(object).ptr());
}

}  // namespace qeo::python
