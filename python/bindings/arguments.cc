// Reading of Python's arguments.

#include "bindings/arguments.h"

#include <climits>
#include <cstddef>

#include "bindings/languages.h"

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

int LanguageArgument(PyObject* language) {
  if (PyUnicode_Check(language)) return LanguageOfName(language);
  const auto integer = py::reinterpret_steal<py::object>(PyNumber_Index(language));
  if (!integer) {
    PyErr_Clear();
    throw py::type_error("a language must be a name, a Language or an int, not " +
                         TypeName(language));
  }
  int overflow = 0;
  const long id = PyLong_AsLongAndOverflow(integer.ptr(), &overflow);
  if (overflow > 0 || id > INT_MAX) return INT_MAX;
  if (overflow < 0 || id < INT_MIN) return INT_MIN;
  return static_cast<int>(id);
}

long IntegerArgument(PyObject* integer, long least, long most, const char* what) {
  const auto index = py::reinterpret_steal<py::object>(PyNumber_Index(integer));
  if (!index) throw py::error_already_set();
  int overflow = 0;
  const long value = PyLong_AsLongAndOverflow(index.ptr(), &overflow);
  if (overflow == 0 && value >= least && value <= most) return value;
  throw py::value_error(std::string(what) + " is " + std::to_string(least) + " to " +
                        std::to_string(most) + ", not " + std::string(py::repr(index)));
}

std::string TypeName(PyObject* object) { return Py_TYPE(object)->tp_name; }

}  // namespace qeo::python
