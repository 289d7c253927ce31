// The syllables that Python code receives: immutable, hashable, ordered, picklable.

#include "bindings/syllables.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "bindings/arguments.h"
#include "bindings/fastcall.h"
#include "bindings/languages.h"
#include "bindings/objects.h"
#include "bindings/rows.h"
#include "bindings/types.h"

namespace qeo::python {

namespace {

struct SyllableObject {
  PyObject base;
  std::int32_t language;
  std::uint32_t code;
  std::int8_t tone;
  std::uint8_t raw_tone;
  PyObject* phones;  // a tuple of Phone and None
};

// The documentation of the type, as Python shows it.
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

PyTypeObject* syllable_type = nullptr;

SyllableObject* AsSyllable(PyObject* object) { return reinterpret_cast<SyllableObject*>(object); }

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
  return result == -1 ? -2 : result;  // -1 means an error
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
    const SyllableObject& syllable = *AsSyllable(self);
    PyObject* rows = SyllableTable(syllable.language);
    const auto row = static_cast<Py_ssize_t>(syllable.code / sp::kTonesPerRow);
    const bool has_row = syllable.code != 0 && row < PyTuple_GET_SIZE(rows);
    if (!has_row) return py::str(PhoneNames(syllable));
    return Borrow(AsRow(PyTuple_GET_ITEM(rows, row))->fields[0]);
  });
}

PyObject* ReprSyllable(PyObject* self) {
  return Guard([&] {
    const SyllableObject& syllable = *AsSyllable(self);
    std::string text = "Syllable('" + PhoneNames(syllable) + "', ";
    text += FindLanguage(syllable.language)->name;
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
    if (phone != Py_None && !IsPhone(phone)) {
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

// clang-format off
PyMemberDef syllable_members[] = {
    Member("phones",   T_OBJECT_EX, offsetof(SyllableObject, phones),   "Phone or None, in order"),
    Member("code",     T_UINT,      offsetof(SyllableObject, code),     "0 where not made"),
    Member("tone",     T_BYTE,      offsetof(SyllableObject, tone),     "of romanised text, folded"),
    Member("raw_tone", T_UBYTE,     offsetof(SyllableObject, raw_tone), "digit of a pronunciation"),
    {},
};
// clang-format on

PyGetSetDef syllable_getters[] = {
    {"language", GetLanguage<SyllableObject>, nullptr, "its Language", nullptr},
    {"spelling", GetSpelling, nullptr, "letters without tone, or names of phones", nullptr},
    {},
};

PyMethodDef syllable_methods[] = {
    {"__reduce__", ReduceSyllable, METH_NOARGS, nullptr},
    {},
};

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

}  // namespace

void AddSyllables(py::module_& module) {
  syllable_type = MakeSyllableType();
  AddType(module, "Syllable", syllable_type);
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
