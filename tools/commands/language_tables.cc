#include "tools/commands/language_tables.h"

#include <string_view>

#include "tools/base/decimal.h"
#include "tools/conversion/notations.h"

namespace qeo::tool {

const char* TypeName(std::int32_t type, bool has_syllables) {
  switch (type) {
    case sp::PHONE_TYPE_INITIAL:
      return has_syllables ? "initial" : "consonant";
    case sp::PHONE_TYPE_FINAL:
      return has_syllables ? "final" : "vowel";
    default:
      return "silence";
  }
}

namespace {

void AppendField(std::string_view field, std::string& out) {
  out += '\t';
  out += field.empty() ? "-" : field;
}

}  // namespace

void AppendPhoneList(int language, std::string& out) {
  const sp::SpMapping& tables = *sp::FindPhoneSet(language);
  out += "# id\tbyte\tname\ttype\tfeatures\n";
  for (std::uint64_t row = 0; row < tables.phone_count; ++row) {
    const sp::PhoneInfo& phone = tables.phone_list[row];
    AppendNumber(phone.id, out);
    out += '\t';
    AppendNumber(phone.id + sp::kFirstPhoneByte, out);
    AppendField(phone.name, out);
    AppendField(TypeName(phone.type, tables.pinyin_count != 0), out);
    AppendField(phone.feature, out);
    out += '\n';
  }
}

void AppendSyllableList(int language, std::string& out) {
  const sp::SpMapping& tables = *sp::FindPhoneSet(language);
  out += "# row\tsyllable\tinitial\tfinal\n";
  for (std::uint64_t row = 0; row < tables.pinyin_count; ++row) {
    const sp::PinyinInfo& syllable = tables.pinyin_list[row];
    AppendNumber(syllable.id, out);
    AppendField(syllable.pinyin, out);
    AppendField(syllable.initial, out);
    AppendField(syllable.final, out);
    out += '\n';
  }
}

}  // namespace qeo::tool
