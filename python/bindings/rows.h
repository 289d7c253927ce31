#ifndef PYTHON_BINDINGS_ROWS_H_
#define PYTHON_BINDINGS_ROWS_H_

// The types Phone and SyllableRow, and the tables: their rows as objects that are made once and
// live as long as the process.

#include <pybind11/pybind11.h>

#include <cstdint>

#include "phoneme/phoneme.h"

namespace qeo::python {

namespace py = pybind11;

/// A row of a table, a Phone or a SyllableRow. Each row is one object, so that equality is
/// identity.
struct RowObject {
  PyObject base;
  std::int32_t language;
  std::int32_t id;
  PyObject* fields[3];  // Phone: type, name, feature; SyllableRow: pinyin, initial, final
};

inline RowObject* AsRow(PyObject* object) { return reinterpret_cast<RowObject*>(object); }

/// Rows of one type are ordered by it.
inline std::int64_t RowKey(PyObject* row) {
  return (std::int64_t{AsRow(row)->language} << 32) + AsRow(row)->id;
}

/// Makes the two types and adds them to the module, then the tables of all languages; `enums` is
/// the module of the enum PhoneType.
void AddRows(py::module_& module, const py::module_& enums);

/// The tables of a registered language as tuples, borrowed references.
PyObject* PhoneTable(int language);
PyObject* SyllableTable(int language);

/// The object of a phone, None for null; a borrowed reference.
PyObject* PhoneObject(const sp::PhoneInfo* phone);

/// Whether an object is a Phone.
bool IsPhone(PyObject* object);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_ROWS_H_
