// The registered languages, made once while the module is imported.

#include "bindings/languages.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>

#include "bindings/arguments.h"
#include "bindings/objects.h"
#include "bindings/records.h"

namespace qeo::python {

namespace {

struct Source {
  const char* name;
  int id;
  void (*initialize)(std::map<int, sp::SpMapping>&);
};

constexpr Source kSources[] = {
    {"mandarin", sp::LANGUAGE_MANDARIN, sp::InitializeMandarinSet},
    {"cantonese", sp::LANGUAGE_CANTONESE, sp::InitializeCantoneseSet},
    {"english", sp::LANGUAGE_AMERICAN_ENGLISH, sp::InitializeAmericanSet},
};

using Languages = std::array<Language, std::size(kSources)>;

// Never destroyed: objects must not be released after the interpreter has ended.
Languages& AllLanguages() {
  static auto& languages = *new Languages;
  return languages;
}

PyObject* PhoneOrNone(const sp::PhoneInfo* phone, const Language& language) {
  return phone == nullptr ? Py_None : language.phones[static_cast<std::size_t>(phone->id)];
}

RowPhones PhonesOf(const sp::PinyinInfo& row) {
  RowPhones phones = {};
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
  Languages languages;
  for (std::size_t i = 0; i < languages.size(); ++i) {
    Language& language = languages[i];
    language.name = kSources[i].name;
    language.id = kSources[i].id;
    language.py_name = PyUnicode_InternFromString(language.name);
    language.member = language_enum(py::int_(language.id)).release().ptr();
    std::map<int, sp::SpMapping> table;
    kSources[i].initialize(table);
    AddRows(table.at(language.id), enums, language);
  }
  AllLanguages() = languages;
}

py::dict LanguageIds() {
  py::dict ids;
  for (const Language& language : AllLanguages()) ids[language.name] = language.id;
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
  std::string names;
  for (const Language& language : AllLanguages()) {
    if (PyUnicode_Compare(name, language.py_name) == 0) return language.id;
    names += (names.empty() ? "" : ", ") + std::string(language.name);
  }
  throw py::value_error("no language is called " + Shown(name) + "; there are: " + names);
}

PyObject* PhoneObject(const sp::PhoneInfo* phone) {
  if (phone == nullptr) return Py_None;
  return FindLanguage(phone->language)->phones[static_cast<std::size_t>(phone->id)];
}

}  // namespace qeo::python
