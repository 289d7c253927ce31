// The rows of the tables, made once while the module is imported: immutable, hashable, ordered,
// picklable.

#include "bindings/rows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/fastcall.h"
#include "bindings/languages.h"
#include "bindings/objects.h"
#include "bindings/types.h"

namespace qeo::python {

namespace {

// The documentation of the types, as Python shows it.

constexpr char kPhoneDoc[] = R"(Phone(id, language)
--

A phone: one row of the phone table of its language.

>>> phone("n")
Phone(14, mandarin, 'n')
>>> Phone(1, "english").feature
'+l33-000'

Each row is one object for the whole process, so phones can be compared with `is`.
Phones are ordered by language and id. A row that does not exist is a ValueError.)";

constexpr char kSyllableRowDoc[] = R"(SyllableRow(id, language)
--

A toneless syllable: one row of the syllable table of its language.

>>> row = syllables("mandarin")[224]
>>> row
SyllableRow(224, mandarin, 'ni')
>>> row.initial, row.final
(Phone(14, mandarin, 'n'), Phone(25, mandarin, 'i'))

Each row is one object for the whole process. A syllable code is id * 10 + tone.)";

PyTypeObject* phone_type = nullptr;
PyTypeObject* syllable_row_type = nullptr;

PyObject* FindRow(PyTypeObject* type, int language, long id) {
  PyObject* rows = type == phone_type ? PhoneTable(language) : SyllableTable(language);
  return id >= 0 && id < PyTuple_GET_SIZE(rows) ? PyTuple_GET_ITEM(rows, id) : nullptr;
}

// The constructor gives the one object of a row, for pickle and whoever holds an id.
PyObject* NewRow(PyTypeObject* type, PyObject* args, PyObject* keywords) {
  return Guard([&] {
    static const char* names[] = {"id", "language", nullptr};
    PyObject* id = nullptr;
    PyObject* language = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OO", const_cast<char**>(names), &id,
                                     &language)) {
      throw py::error_already_set();
    }
    const long row_id = IntegerArgument(id, INT32_MIN, INT32_MAX, "a row");
    const int language_id = LanguageArgument(language, Py_False);
    PyObject* row = FindRow(type, language_id, row_id);
    if (row == nullptr) {
      const std::string& name = FindLanguage(language_id)->name;
      throw py::value_error("no row " + std::to_string(row_id) + " in " + name);
    }
    return Borrow(row);
  });
}

PyObject* CompareRows(PyObject* a, PyObject* b, int operation) {
  if (Py_TYPE(a) != Py_TYPE(b)) Py_RETURN_NOTIMPLEMENTED;
  return Answer(RowKey(a) - RowKey(b), operation);
}

Py_hash_t HashRow(PyObject* self) { return RowKey(self); }

PyObject* ReprRow(PyObject* self) {
  return Guard([&] {
    const RowObject& row = *AsRow(self);
    const bool is_phone = Py_TYPE(self) == phone_type;
    return py::str("{}({}, {}, {!r})")
        .format(is_phone ? "Phone" : "SyllableRow", row.id, FindLanguage(row.language)->name,
                Borrow(row.fields[is_phone ? 1 : 0]));
  });
}

PyObject* ReduceRow(PyObject* self, PyObject* /*no argument*/) {
  return Guard([&] {
    const RowObject& row = *AsRow(self);
    return py::make_tuple(Borrow(reinterpret_cast<PyObject*>(Py_TYPE(self))),
                          py::make_tuple(row.id, row.language));
  });
}

py::object MakeRow(PyTypeObject* type, int language, int id, py::object first, py::object second,
                   py::object third) {
  py::object object = NewObject(type);
  RowObject& row = *AsRow(object.ptr());
  row.language = language;
  row.id = id;
  row.fields[0] = first.release().ptr();
  row.fields[1] = second.release().ptr();
  row.fields[2] = third.release().ptr();
  return object;
}

// The types

constexpr std::size_t FieldOffset(std::size_t field) {
  return offsetof(RowObject, fields) + field * sizeof(PyObject*);
}

// clang-format off
PyMemberDef phone_members[] = {
    Member("id",       T_INT,       offsetof(RowObject, id), "number within the language"),
    Member("type",     T_OBJECT_EX, FieldOffset(0),          "its PhoneType"),
    Member("name",     T_OBJECT_EX, FieldOffset(1),          "lower-case name: 'zh'"),
    Member("feature",  T_OBJECT_EX, FieldOffset(2),          "8 articulatory characters, or ''"),
    {},
};

PyMemberDef syllable_row_members[] = {
    Member("id",       T_INT,       offsetof(RowObject, id), "row; a code is id * 10 + tone"),
    Member("pinyin",   T_OBJECT_EX, FieldOffset(0),          "spelling without tone: 'zhuang'"),
    Member("initial",  T_OBJECT_EX, FieldOffset(1),          "a Phone or None"),
    Member("final",    T_OBJECT_EX, FieldOffset(2),          "a Phone or None"),
    {},
};
// clang-format on

PyGetSetDef row_getters[] = {
    {"language", GetLanguage<RowObject>, nullptr, "its Language", nullptr},
    {},
};

PyMethodDef row_methods[] = {
    {"__reduce__", ReduceRow, METH_NOARGS, nullptr},
    {},
};

PyTypeObject* MakeRowType(const char* name, PyMemberDef* members, const char* doc) {
  PyType_Slot slots[] = {
      {Py_tp_new, Slot(NewRow)},
      {Py_tp_richcompare, Slot(CompareRows)},
      {Py_tp_hash, Slot(HashRow)},
      {Py_tp_repr, Slot(ReprRow)},
      {Py_tp_methods, row_methods},
      {Py_tp_members, members},
      {Py_tp_getset, row_getters},
      {Py_tp_doc, Mutable(doc)},
      {0, nullptr},
  };
  return MakeType(name, sizeof(RowObject), slots);
}

// The tables

// Those of one language, tuples.
struct Tables {
  int language;
  PyObject* phones;
  PyObject* syllables;
};

// Set once, and never destroyed, as the languages are.
const std::vector<Tables>* all_tables = nullptr;

const Tables& TablesOf(int language) {
  return *std::find_if(all_tables->begin(), all_tables->end(),
                       [=](const Tables& tables) { return tables.language == language; });
}

py::tuple MakePhones(const sp::SpMapping& set, const py::object& types) {
  py::tuple phones(set.phone_count);
  for (std::size_t i = 0; i < set.phone_count; ++i) {
    const sp::PhoneInfo& row = set.phone_list[i];
    phones[i] = MakeRow(phone_type, row.language, row.id, types(py::int_(row.type)),
                        py::str(row.name), py::str(row.feature));
  }
  return phones;
}

py::tuple MakeSyllableRows(int language, const sp::SpMapping& set, const py::tuple& phones) {
  const auto phone_or_none = [&](const sp::PhoneInfo* phone) -> py::object {
    if (phone == nullptr) return py::none();
    return phones[static_cast<std::size_t>(phone->id)];
  };
  py::tuple rows(set.pinyin_count);
  for (std::size_t i = 0; i < set.pinyin_count; ++i) {
    const sp::PinyinInfo& row = set.pinyin_list[i];
    rows[i] = MakeRow(syllable_row_type, language, row.id, py::str(row.pinyin),
                      phone_or_none(row.initial_phone), phone_or_none(row.final_phone));
  }
  return rows;
}

std::vector<Tables> MakeTables(const py::object& phone_types) {
  std::vector<Tables> all;
  for (const sp::LanguageNames& language : sp::Languages()) {
    const sp::SpMapping& set = *sp::FindPhoneSet(language.id);
    py::tuple phones = MakePhones(set, phone_types);
    py::tuple rows = MakeSyllableRows(language.id, set, phones);
    all.push_back({language.id, phones.release().ptr(), rows.release().ptr()});
  }
  return all;
}

}  // namespace

void AddRows(py::module_& module, const py::module_& enums) {
  phone_type = MakeRowType("phoneme.Phone", phone_members, kPhoneDoc);
  syllable_row_type = MakeRowType("phoneme.SyllableRow", syllable_row_members, kSyllableRowDoc);
  AddType(module, "Phone", phone_type);
  AddType(module, "SyllableRow", syllable_row_type);
  all_tables = new std::vector<Tables>(MakeTables(enums.attr("PhoneType")));
}

PyObject* PhoneTable(int language) { return TablesOf(language).phones; }
PyObject* SyllableTable(int language) { return TablesOf(language).syllables; }

PyObject* PhoneObject(const sp::PhoneInfo* phone) {
  if (phone == nullptr) return Py_None;
  return PyTuple_GET_ITEM(PhoneTable(phone->language), phone->id);
}

bool IsPhone(PyObject* object) { return Py_TYPE(object) == phone_type; }

}  // namespace qeo::python
