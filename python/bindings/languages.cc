// The registered languages, made once while the module is imported.

#include "bindings/languages.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/objects.h"
#include "bindings/records.h"

namespace qeo::python {

namespace {

// Set once, and never destroyed: objects must not be released after the interpreter has ended.
const std::vector<Language>* all_languages = nullptr;

const std::vector<Language>& AllLanguages() { return *all_languages; }

std::map<int, sp::SpMapping> Tables() {
  std::map<int, sp::SpMapping> tables;
  sp::InitializeMandarinSet(tables);
  sp::InitializeCantoneseSet(tables);
  sp::InitializeAmericanSet(tables);
  return tables;
}

PyObject* PhoneOrNone(const sp::PhoneInfo* phone, const Language& language) {
  return phone == nullptr ? Py_None : language.phones[static_cast<std::size_t>(phone->id)];
}

RowPhones PhonesOf(const sp::PinyinInfo& row) {
  RowPhones phones = {};
  phones.letters = static_cast<std::uint8_t>(std::string_view(row.pinyin).size());
  for (const sp::PhoneInfo* phone : {row.initial_phone, row.final_phone}) {
    if (phone != nullptr) phones.ids[phones.count++] = static_cast<std::uint8_t>(phone->id);
  }
  return phones;
}

void AddRows(const sp::SpMapping& mapping, const py::module_& enums, Language& language) {
  const py::object phone_type = enums.attr("PhoneType");
  for (std::size_t i = 0; i < mapping.phone_count; ++i) {
    const sp::PhoneInfo& row = mapping.phone_list[i];
    language.phones.push_back(MakePhone(row, phone_type(py::int_(row.type))).release().ptr());
  }
  for (std::size_t i = 0; i < mapping.pinyin_count; ++i) {
    const sp::PinyinInfo& row = mapping.pinyin_list[i];
    language.row_phones.push_back(PhonesOf(row));
    language.syllables.push_back(MakeSyllableRow(language.id, row,
                                                 PhoneOrNone(row.initial_phone, language),
                                                 PhoneOrNone(row.final_phone, language))
                                     .release()
                                     .ptr());
  }
  language.phone_tuple = TupleOf(language.phones, Borrow).release().ptr();
  language.syllable_tuple = TupleOf(language.syllables, Borrow).release().ptr();
}

}  // namespace

void InitializeLanguages(const py::module_& enums) {
  const py::object language_enum = enums.attr("Language");
  const std::map<int, sp::SpMapping> tables = Tables();
  std::vector<Language> languages;
  for (const sp::LanguageNames& names : sp::Languages()) {
    Language& language = languages.emplace_back();
    language.name = names.name;
    language.id = names.id;
    language.py_name = PyUnicode_InternFromString(language.name.c_str());
    language.member = language_enum(py::int_(language.id)).release().ptr();
    AddRows(tables.at(language.id), enums, language);
  }
  all_languages = new std::vector<Language>(std::move(languages));
}

py::dict LanguageIds() {
  py::dict ids;
  for (const Language& language : AllLanguages()) ids[py::str(language.name)] = language.id;
  return ids;
}

const Language* FindLanguage(int id) {
  for (const Language& language : AllLanguages()) {
    if (language.id == id) return &language;
  }
  return nullptr;
}

const Language& PhoneLanguage(int id) {
  return *FindLanguage(sp::GetPhoneInfoById(id, 0)->language);
}

const Language& SyllableLanguage(int id) {
  if (const Language* language = FindLanguage(id)) return *language;
  sp::SyllableInfo syllable;
  sp::code2ph(id, 0, syllable);  // the language that answers writes its id
  return *FindLanguage(syllable.language);
}

int LanguageOfName(PyObject* name) {
  for (const Language& language : AllLanguages()) {
    if (language.py_name == name) return language.id;
  }
  if (const auto id = sp::LanguageOfName(TextArgument(name))) return *id;
  throw py::value_error("unknown language " + Shown(name) + "; the languages are " +
                        sp::KnownLanguages());
}

PyObject* PhoneObject(const sp::PhoneInfo* phone) {
  if (phone == nullptr) return Py_None;
  return FindLanguage(phone->language)->phones[static_cast<std::size_t>(phone->id)];
}

}  // namespace qeo::python
