// The types of the records that Python code receives: immutable, hashable, ordered, picklable.

#include "bindings/records.h"

#include <structmember.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "bindings/arguments.h"
#include "bindings/fastcall.h"
#include "bindings/languages.h"
#include "bindings/objects.h"

namespace qeo::python {

namespace {

// A row of a table, a Phone or a SyllableRow. Each row is one object, so that equality is identity;
// the registry of languages holds it for ever.
struct RowObject {
  PyObject base;
  std::int32_t language;
  std::int32_t id;
  PyObject* fields[3];  // Phone: type, name, feature; SyllableRow: pinyin, initial, final
};

struct SyllableObject {
  PyObject base;
  std::int32_t language;
  std::uint32_t code;
  std::int8_t tone;
  std::uint8_t raw_tone;
  PyObject* phones;  // a tuple of Phone and None
};

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

constexpr char kSyllableDoc[] = R"(Syllable(phones, language, code=0, tone=0, raw_tone=0)
--

A syllable of the output: its phones and its tone.

>>> syllable, = py2ph("ni3")
>>> syllable
Syllable('n i', mandarin, code=2243, tone=3)
>>> syllable.spelling, syllable.language, syllable.tone
('ni', <Language.MANDARIN: 10000>, 3)

`code` is the syllable code, or 0 where none is made; `tone` is folded into the language's
range, `raw_tone` is the digit of a pronunciation string or phone-id sequence. `spelling` is
the letters of the code's row, without tone; where there is none, the names of the phones with
spaces between them. No phone is None, but where `pr2ph` was asked for the library's own answer
by fallback=True. Syllables are ordered by language, phones, code and tones.)";

PyTypeObject* phone_type = nullptr;
PyTypeObject* syllable_row_type = nullptr;
PyTypeObject* syllable_type = nullptr;

RowObject* AsRow(PyObject* object) { return reinterpret_cast<RowObject*>(object); }
SyllableObject* AsSyllable(PyObject* object) { return reinterpret_cast<SyllableObject*>(object); }

py::object NewObject(PyTypeObject* type) {
  PyObject* object = type->tp_alloc(type, 0);
  if (object == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(object);
}

// A comparison's answer, from what an ordering of the two gives: negative, 0 or positive.
PyObject* Answer(std::int64_t order, int operation) { Py_RETURN_RICHCOMPARE(order, 0, operation); }

template <typename Object>
PyObject* GetLanguage(PyObject* self, void* /*closure*/) {
  PyObject* member = FindLanguage(reinterpret_cast<Object*>(self)->language)->member;
  Py_INCREF(member);
  return member;
}

const std::string& LanguageName(int id) { return FindLanguage(id)->name; }

// Rows

PyObject* FindRow(PyTypeObject* type, const Language& language, long id) {
  const auto& rows = type == phone_type ? language.phones : language.syllables;
  const bool in_table = id >= 0 && static_cast<std::size_t>(id) < rows.size();
  return in_table ? rows[static_cast<std::size_t>(id)] : nullptr;
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
    const Language& known = *FindLanguage(LanguageArgument(language, Py_False));
    PyObject* row = FindRow(type, known, row_id);
    if (row == nullptr) {
      throw py::value_error("no row " + std::to_string(row_id) + " in " + known.name);
    }
    return Borrow(row);
  });
}

std::int64_t RowKey(PyObject* object) {
  return (std::int64_t{AsRow(object)->language} << 32) + AsRow(object)->id;
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
        .format(is_phone ? "Phone" : "SyllableRow", row.id, LanguageName(row.language),
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

// Syllables

// Phones compare by their ids, None below all of them.
int PhoneKey(PyObject* phone) { return phone == Py_None ? -1 : AsRow(phone)->id; }

std::int64_t ComparePhones(PyObject* a, PyObject* b) {
  const Py_ssize_t shorter = std::min(PyTuple_GET_SIZE(a), PyTuple_GET_SIZE(b));
  for (Py_ssize_t i = 0; i < shorter; ++i) {
    PyObject* one = PyTuple_GET_ITEM(a, i);
    PyObject* other = PyTuple_GET_ITEM(b, i);
    if (one == other) continue;
    if (one == Py_None || other == Py_None) return PhoneKey(one) - PhoneKey(other);
    return RowKey(one) - RowKey(other);
  }
  return PyTuple_GET_SIZE(a) - PyTuple_GET_SIZE(b);
}

std::int64_t OrderSyllables(const SyllableObject& a, const SyllableObject& b) {
  if (a.language != b.language) return std::int64_t{a.language} - b.language;
  if (const std::int64_t order = ComparePhones(a.phones, b.phones)) return order;
  if (a.code != b.code) return std::int64_t{a.code} - b.code;
  if (a.tone != b.tone) return a.tone - b.tone;
  return a.raw_tone - b.raw_tone;
}

PyObject* CompareSyllables(PyObject* a, PyObject* b, int operation) {
  if (Py_TYPE(a) != Py_TYPE(b)) Py_RETURN_NOTIMPLEMENTED;
  return Answer(OrderSyllables(*AsSyllable(a), *AsSyllable(b)), operation);
}

Py_hash_t HashSyllable(PyObject* self) {
  constexpr std::uint64_t kMultiplier = 0x9e3779b97f4a7c15;
  const SyllableObject& syllable = *AsSyllable(self);
  std::uint64_t hash = static_cast<std::uint32_t>(syllable.language);
  const auto mix = [&hash](std::int64_t value) {
    hash = (hash ^ static_cast<std::uint64_t>(value)) * kMultiplier;
    hash ^= hash >> 32;
  };
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(syllable.phones); ++i) {
    mix(PhoneKey(PyTuple_GET_ITEM(syllable.phones, i)));
  }
  mix(syllable.code);
  mix(syllable.tone);
  mix(syllable.raw_tone);
  const auto result = static_cast<Py_hash_t>(hash);
  return result == -1 ? -2 : result;  // -1 stands for an error
}

std::string PhoneNames(const SyllableObject& syllable) {
  std::string names;
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(syllable.phones); ++i) {
    PyObject* phone = PyTuple_GET_ITEM(syllable.phones, i);
    if (i > 0) names += ' ';
    names += phone == Py_None ? "None" : std::string(py::str(Borrow(AsRow(phone)->fields[1])));
  }
  return names;
}

PyObject* GetSpelling(PyObject* self, void* /*closure*/) {
  return Guard([&]() -> py::object {
    constexpr std::size_t kTonesPerRow = 10;
    const SyllableObject& syllable = *AsSyllable(self);
    const auto& rows = FindLanguage(syllable.language)->syllables;
    const std::size_t row = syllable.code / kTonesPerRow;
    const bool has_row = syllable.code != 0 && row < rows.size();
    return has_row ? Borrow(AsRow(rows[row])->fields[0]) : py::str(PhoneNames(syllable));
  });
}

PyObject* ReprSyllable(PyObject* self) {
  return Guard([&] {
    const SyllableObject& syllable = *AsSyllable(self);
    std::string text = "Syllable('" + PhoneNames(syllable) + "', ";
    text += LanguageName(syllable.language);
    if (syllable.code != 0) text += ", code=" + std::to_string(syllable.code);
    if (syllable.tone != 0) text += ", tone=" + std::to_string(syllable.tone);
    if (syllable.raw_tone != 0) text += ", raw_tone=" + std::to_string(syllable.raw_tone);
    return py::str(text + ")");
  });
}

PyObject* ReduceSyllable(PyObject* self, PyObject* /*no argument*/) {
  return Guard([&] {
    const SyllableObject& syllable = *AsSyllable(self);
    return py::make_tuple(
        Borrow(reinterpret_cast<PyObject*>(syllable_type)),
        py::make_tuple(Borrow(syllable.phones), syllable.language, syllable.code,
                       static_cast<int>(syllable.tone), static_cast<int>(syllable.raw_tone)));
  });
}

py::object FilledSyllable(int language, py::object phones, std::uint32_t code, std::int8_t tone,
                          std::uint8_t raw_tone) {
  py::object object = NewObject(syllable_type);
  SyllableObject& syllable = *AsSyllable(object.ptr());
  syllable.language = language;
  syllable.code = code;
  syllable.tone = tone;
  syllable.raw_tone = raw_tone;
  syllable.phones = phones.release().ptr();
  return object;
}

// Phones as an exact tuple, so that no subclass can change one or build a cycle.
py::object PhoneTuple(PyObject* phones) {
  CheckIterable(phones, "phones");
  auto tuple = py::reinterpret_steal<py::object>(PySequence_Tuple(phones));
  if (!tuple) throw py::error_already_set();
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple.ptr()); ++i) {
    PyObject* phone = PyTuple_GET_ITEM(tuple.ptr(), i);
    if (phone != Py_None && Py_TYPE(phone) != phone_type) {
      throw py::type_error("phones must be Phone or None, not " + TypeName(phone));
    }
  }
  return tuple;
}

PyObject* NewSyllable(PyTypeObject* /*type*/, PyObject* args, PyObject* keywords) {
  return Guard([&] {
    static const char* names[] = {"phones", "language", "code", "tone", "raw_tone", nullptr};
    const py::int_ zero(0);
    PyObject* phones = nullptr;
    PyObject* language = nullptr;
    PyObject* code = zero.ptr();
    PyObject* tone = zero.ptr();
    PyObject* raw_tone = zero.ptr();
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OO|OOO", const_cast<char**>(names), &phones,
                                     &language, &code, &tone, &raw_tone)) {
      throw py::error_already_set();
    }
    return FilledSyllable(
        LanguageArgument(language, Py_False), PhoneTuple(phones),
        static_cast<std::uint32_t>(IntegerArgument(code, 0, UINT16_MAX, "a syllable code")),
        static_cast<std::int8_t>(IntegerArgument(tone, INT8_MIN, INT8_MAX, "a tone")),
        static_cast<std::uint8_t>(IntegerArgument(raw_tone, 0, UINT8_MAX, "a raw tone")));
  });
}

void FreeSyllable(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  Py_XDECREF(AsSyllable(self)->phones);
  type->tp_free(self);
  Py_DECREF(type);
}

// The types

template <typename Function>
void* Slot(Function* function) {
  return reinterpret_cast<void*>(function);
}

char* Mutable(const char* text) { return const_cast<char*>(text); }

PyMemberDef Member(const char* name, int type, std::size_t offset, const char* doc) {
  return {Mutable(name), type, static_cast<Py_ssize_t>(offset), READONLY, Mutable(doc)};
}

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

PyMemberDef syllable_members[] = {
    Member("phones",   T_OBJECT_EX, offsetof(SyllableObject, phones),   "Phone or None, in order"),
    Member("code",     T_UINT,      offsetof(SyllableObject, code),     "0 where not made"),
    Member("tone",     T_BYTE,      offsetof(SyllableObject, tone),     "of romanised text, folded"),
    Member("raw_tone", T_UBYTE,     offsetof(SyllableObject, raw_tone), "digit of a pronunciation"),
    {},
};
// clang-format on

PyGetSetDef row_getters[] = {
    {"language", GetLanguage<RowObject>, nullptr, "its Language", nullptr},
    {},
};

PyGetSetDef syllable_getters[] = {
    {"language", GetLanguage<SyllableObject>, nullptr, "its Language", nullptr},
    {"spelling", GetSpelling, nullptr, "letters without tone, or names of phones", nullptr},
    {},
};

PyMethodDef row_methods[] = {
    {"__reduce__", ReduceRow, METH_NOARGS, nullptr},
    {},
};

PyMethodDef syllable_methods[] = {
    {"__reduce__", ReduceSyllable, METH_NOARGS, nullptr},
    {},
};

#ifdef Py_TPFLAGS_IMMUTABLETYPE  // from Python 3.10
constexpr unsigned kTypeFlags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE;
#else
constexpr unsigned kTypeFlags = Py_TPFLAGS_DEFAULT;
#endif

PyTypeObject* MakeType(const char* name, std::size_t size, PyType_Slot* slots) {
  PyType_Spec spec = {name, static_cast<int>(size), 0, kTypeFlags, slots};
  PyObject* type = PyType_FromSpec(&spec);
  if (type == nullptr) throw py::error_already_set();
  return reinterpret_cast<PyTypeObject*>(type);
}

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

PyTypeObject* MakeSyllableType() {
  PyType_Slot slots[] = {
      {Py_tp_new, Slot(NewSyllable)},
      {Py_tp_dealloc, Slot(FreeSyllable)},
      {Py_tp_richcompare, Slot(CompareSyllables)},
      {Py_tp_hash, Slot(HashSyllable)},
      {Py_tp_repr, Slot(ReprSyllable)},
      {Py_tp_methods, syllable_methods},
      {Py_tp_members, syllable_members},
      {Py_tp_getset, syllable_getters},
      {Py_tp_doc, Mutable(kSyllableDoc)},
      {0, nullptr},
  };
  return MakeType("phoneme.Syllable", sizeof(SyllableObject), slots);
}

void AddType(py::module_& module, const char* name, PyTypeObject* type) {
  module.attr(name) = Borrow(reinterpret_cast<PyObject*>(type));
}

}  // namespace

void AddRecordTypes(py::module_& module) {
  phone_type = MakeRowType("phoneme.Phone", phone_members, kPhoneDoc);
  syllable_row_type = MakeRowType("phoneme.SyllableRow", syllable_row_members, kSyllableRowDoc);
  syllable_type = MakeSyllableType();
  AddType(module, "Phone", phone_type);
  AddType(module, "SyllableRow", syllable_row_type);
  AddType(module, "Syllable", syllable_type);
}

py::object MakePhone(const sp::PhoneInfo& row, const py::object& type) {
  return MakeRow(phone_type, row.language, row.id, type, py::str(row.name), py::str(row.feature));
}

py::object MakeSyllableRow(int language, const sp::PinyinInfo& row, PyObject* initial,
                           PyObject* final) {
  return MakeRow(syllable_row_type, language, row.id, py::str(row.pinyin), Borrow(initial),
                 Borrow(final));
}

py::object MakeSyllable(const sp::SyllableInfo& syllable) {
  py::tuple phones(syllable.phones.size());
  for (std::size_t i = 0; i < syllable.phones.size(); ++i) {
    PyObject* phone = PhoneObject(syllable.phones[i]);
    Py_INCREF(phone);
    PyTuple_SET_ITEM(phones.ptr(), static_cast<Py_ssize_t>(i), phone);
  }
  return FilledSyllable(syllable.language, std::move(phones), syllable.code, syllable.tone,
                        syllable.raw_tone);
}

py::object MakeSyllables(const std::vector<sp::SyllableInfo>& syllables) {
  py::list list(syllables.size());
  for (std::size_t i = 0; i < syllables.size(); ++i) {
    PyObject* syllable = MakeSyllable(syllables[i]).release().ptr();
    PyList_SET_ITEM(list.ptr(), static_cast<Py_ssize_t>(i), syllable);
  }
  return std::move(list);
}

bool IsSyllable(PyObject* object) { return Py_TYPE(object) == syllable_type; }

sp::SyllableInfo SyllableArgument(PyObject* object) {
  if (!IsSyllable(object)) throw py::type_error("not a Syllable: " + TypeName(object));
  const SyllableObject& syllable = *AsSyllable(object);
  sp::SyllableInfo info;
  info.language = syllable.language;
  info.code = syllable.code;
  info.tone = syllable.tone;
  info.raw_tone = syllable.raw_tone;
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(syllable.phones); ++i) {
    PyObject* phone = PyTuple_GET_ITEM(syllable.phones, i);
    info.phones.push_back(phone == Py_None
                              ? nullptr
                              : sp::GetPhoneInfoById(AsRow(phone)->language, AsRow(phone)->id));
  }
  return info;
}

}  // namespace qeo::python
