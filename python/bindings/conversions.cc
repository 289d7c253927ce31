// One function for each of the library's. A conversion that fails returns None; the package finds
// out why, where it is asked to.

#include "bindings/conversions.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/fastcall.h"
#include "bindings/languages.h"
#include "bindings/objects.h"
#include "bindings/positions.h"
#include "bindings/rows.h"
#include "bindings/syllables.h"
#include "phoneme/phoneme.h"

namespace qeo::python {

namespace {

using Syllables = std::vector<sp::SyllableInfo>;
using Bytes = std::vector<unsigned char>;

constexpr long kMaxCode = UINT16_MAX;

unsigned short CodeArgument(PyObject* code) {
  return static_cast<unsigned short>(IntegerArgument(code, 0, kMaxCode, "a syllable code"));
}

// A name as the lexicon's functions take it, which end it at a NUL: a name with one inside is that
// of no phone, and so is "\xff".
std::string NameArgument(PyObject* name) {
  std::string bytes = TextArgument(name);
  return bytes.find('\0') == std::string::npos ? bytes : "\xff";
}

// Tables

// phones(language, fallback)
py::object Phones(Arguments arguments) {
  const int language = LanguageArgument(arguments[0], arguments[1]);
  return Borrow(PhoneTable(sp::ServingLanguage(sp::Conversion::kPhones, language)));
}

// syllables(language, fallback)
py::object SyllableRows(Arguments arguments) {
  const int language = LanguageArgument(arguments[0], arguments[1]);
  return Borrow(SyllableTable(sp::ServingLanguage(sp::Conversion::kSyllables, language)));
}

// The row of an id, -1 for a number that is not an id.
int RowArgument(PyObject* integer) {
  int overflow = 0;
  const long row = PyLong_AsLongAndOverflow(integer, &overflow);
  const bool is_row = overflow == 0 && row >= 0 && row <= INT_MAX;
  return is_row ? static_cast<int>(row) : -1;
}

// The library answers with row 0 for what no phone has.
bool IsAsked(const sp::PhoneInfo* phone, const std::string& name) {
  return phone != nullptr && phone->name == name;
}

// phone(id_or_name, language, fallback): None for what no phone has, unless the library is to
// answer.
py::object Phone(Arguments arguments) {
  const int language = LanguageArgument(arguments[1], arguments[2]);
  const bool fallback = FlagArgument(arguments[2]);
  PyObject* key = arguments[0];
  if (std::string name; !PyLong_CheckExact(key) && AppendText(key, name)) {
    const sp::PhoneInfo* phone = sp::GetPhoneInfoByDescription(language, name);
    return fallback || IsAsked(phone, name) ? Borrow(PhoneObject(phone)) : py::none();
  }
  const py::object id = IndexOf(key);
  if (!id) throw py::type_error("a phone is asked for by id or name, not " + TypeName(key));
  const int row = RowArgument(id.ptr());
  const sp::PhoneInfo* phone = sp::GetPhoneInfoById(language, row);
  return fallback || phone->id == row ? Borrow(PhoneObject(phone)) : py::none();
}

// Romanised text

// py2ph(text, language, fallback)
py::object Py2Ph(Arguments arguments) {
  Syllables syllables;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  if (sp::py2ph(language, TextArgument(arguments[0]), syllables) != 0) return py::none();
  return MakeSyllables(syllables);
}

// py2code(text, language, fallback)
py::object Py2Code(Arguments arguments) {
  std::vector<unsigned short> codes;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  if (sp::py2code(language, TextArgument(arguments[0]), codes) != 0) return py::none();
  py::list list(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    PyList_SET_ITEM(list.ptr(), static_cast<Py_ssize_t>(i), py::int_(codes[i]).release().ptr());
  }
  return std::move(list);
}

// A piece as str. One of bytes is read as one of a str is, so that a batch, which does not keep
// what its words were, gives the same.
py::object PieceText(const std::string& piece) {
  const auto size = static_cast<Py_ssize_t>(piece.size());
  PyObject* text = PyUnicode_DecodeUTF8(piece.data(), size, "surrogatepass");
  if (text == nullptr && PyErr_ExceptionMatches(PyExc_UnicodeDecodeError) != 0) {
    PyErr_Clear();
    text = PyUnicode_DecodeUTF8(piece.data(), size, "surrogateescape");
  }
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(text);
}

// pyw2py(word, language, backward, fallback)
py::object Pyw2Py(Arguments arguments) {
  std::vector<std::string> pieces;
  const int language = LanguageArgument(arguments[1], arguments[3]);
  sp::pyw2py(language, TextArgument(arguments[0]), pieces, FlagArgument(arguments[2]));
  // What was a str becomes the same characters again; other bytes are kept in Python's own way.
  py::list list;
  for (const std::string& piece : pieces) {
    list.append(PieceText(piece));
  }
  return std::move(list);
}

// pieces(text, language, fallback)
py::object Pieces(Arguments arguments) {
  const int language = LanguageArgument(arguments[1], arguments[2]);
  const Source source(arguments[0]);
  std::vector<sp::TextPiece> pieces;
  sp::FindPieces(language, source.text(), pieces);
  return TupleOf(pieces, [&](const sp::TextPiece& piece) {
    const py::object row = piece.row < 0 ? py::object(py::none()) : py::int_(piece.row);
    return py::make_tuple(source.Positions({piece.offset, piece.length}), row,
                          static_cast<int>(piece.raw_tone));
  });
}

// tone_adaptation(tone, language, fallback)
py::object ToneAdaptation(Arguments arguments) {
  const long tone = IntegerArgument(arguments[0], SCHAR_MIN, SCHAR_MAX, "a tone");
  const int language = LanguageArgument(arguments[1], arguments[2]);
  return py::int_(static_cast<int>(sp::ToneAdaptation(language, static_cast<signed char>(tone))));
}

// Syllable codes

// code2ph(code, language, fallback)
py::object Code2Ph(Arguments arguments) {
  sp::SyllableInfo syllable;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  if (sp::code2ph(language, CodeArgument(arguments[0]), syllable) != 0) return py::none();
  return MakeSyllable(syllable);
}

// code2py(code, language, with_tone, fallback): None for a code without a row, unless the library
// is to answer.
py::object Code2Py(Arguments arguments) {
  const unsigned short code = CodeArgument(arguments[0]);
  const int language = LanguageArgument(arguments[1], arguments[3]);
  if (!FlagArgument(arguments[3])) {
    const auto row = static_cast<std::uint64_t>(code / sp::kTonesPerRow);
    if (row >= sp::FindPhoneSet(language)->pinyin_count) return py::none();
  }
  return py::str(sp::code2py(language, code, FlagArgument(arguments[2])));
}

// Pronunciations

// Whether a name of a phone that the table does not have is among the phones.
bool HasGap(const Syllables& syllables) {
  return std::any_of(syllables.begin(), syllables.end(), [](const sp::SyllableInfo& syllable) {
    const auto& phones = syllable.phones;
    return std::find(phones.begin(), phones.end(), nullptr) != phones.end();
  });
}

// pr2ph(pronunciation, language, fallback): with None among the phones only as the library's own
// answer.
py::object Pr2Ph(Arguments arguments) {
  Syllables syllables;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  if (sp::pr2ph(language, TextArgument(arguments[0]), syllables) != 0) return py::none();
  if (!FlagArgument(arguments[2]) && HasGap(syllables)) return py::none();
  return MakeSyllables(syllables);
}

// pr2ph_ids(pronunciation, language, fallback)
py::object Pr2PhIds(Arguments arguments) {
  Bytes ids;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  if (sp::pr2ph(language, TextArgument(arguments[0]), ids) != 0) return py::none();
  const auto size = static_cast<Py_ssize_t>(ids.size());
  auto bytes = py::reinterpret_steal<py::object>(PyBytes_FromStringAndSize(nullptr, size));
  if (!bytes) throw py::error_already_set();
  std::copy(ids.begin(), ids.end(), PyBytes_AS_STRING(bytes.ptr()));
  return bytes;
}

// ph2ph(phone_ids, language, fallback)
py::object Ph2Ph(Arguments arguments) {
  Syllables syllables;
  const int language = LanguageArgument(arguments[1], arguments[2]);
  const Bytes ids = BytesArgument(arguments[0], "phone ids");
  if (sp::ph2ph(language, ids, syllables) != 0) return py::none();
  return MakeSyllables(syllables);
}

// ph2tp(phone_id, language, fallback)
py::object Ph2Tp(Arguments arguments) {
  const long id = IntegerArgument(arguments[0], 0, UCHAR_MAX, "a phone id byte");
  return py::int_(
      sp::ph2tp(LanguageArgument(arguments[1], arguments[2]), static_cast<unsigned char>(id)));
}

// Lexicon phone classes

// lexicon_en_phone_type(name)
py::object LexiconEnPhoneType(Arguments arguments) {
  return py::int_(sp::LexiconEnPhoneTypeStr(NameArgument(arguments[0]).c_str()));
}

// lexicon_en_phone_id(name)
py::object LexiconEnPhoneId(Arguments arguments) {
  return py::int_(sp::LexiconEnPhoneId(NameArgument(arguments[0]).c_str()));
}

// lexicon_module_phone_type(name, language, fallback)
py::object LexiconModulePhoneType(Arguments arguments) {
  const int language = LanguageArgument(arguments[1], arguments[2]);
  return py::int_(sp::LexiconModulePhoneTypeStr(NameArgument(arguments[0]).c_str(), language));
}

PyMethodDef methods[] = {
    Method<Phones, 2>("phones"),
    Method<SyllableRows, 2>("syllables"),
    Method<Phone, 3>("phone"),
    Method<Py2Ph, 3>("py2ph"),
    Method<Py2Code, 3>("py2code"),
    Method<Pyw2Py, 4>("pyw2py"),
    Method<Pieces, 3>("pieces"),
    Method<ToneAdaptation, 3>("tone_adaptation"),
    Method<Code2Ph, 3>("code2ph"),
    Method<Code2Py, 4>("code2py"),
    Method<Pr2Ph, 3>("pr2ph"),
    Method<Pr2PhIds, 3>("pr2ph_ids"),
    Method<Ph2Ph, 3>("ph2ph"),
    Method<Ph2Tp, 3>("ph2tp"),
    Method<LexiconEnPhoneType, 1>("lexicon_en_phone_type"),
    Method<LexiconEnPhoneId, 1>("lexicon_en_phone_id"),
    Method<LexiconModulePhoneType, 3>("lexicon_module_phone_type"),
    {},
};

}  // namespace

void AddConversions(py::module_& module) { AddMethods(module, methods); }

}  // namespace qeo::python
