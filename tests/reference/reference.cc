// The second implementation of every conversion, which is to be simple and need not be fast. It
// shares nothing with the library but the tables: text helpers and lookups are its own.

#include "tests/reference/reference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Calls within this file say `reference::`: the argument types live in qeo::sp, and a bare name
// would also find the library's function.

namespace qeo::sp::reference {
namespace {

using Strings = std::vector<std::string>;

// Text, as bytes. The classes are those of the "C" locale, whatever the process has set.

constexpr char kBlanks[] = "\t\r\n ";

bool IsDigit(char c) { return '0' <= c && c <= '9'; }
bool IsUpper(char c) { return 'A' <= c && c <= 'Z'; }
bool IsLetter(char c) { return IsUpper(c) || ('a' <= c && c <= 'z'); }
bool IsSpace(char c) { return c == ' ' || ('\t' <= c && c <= '\r'); }

std::string LowerCase(std::string text) {
  for (char& c : text) {
    if (IsUpper(c)) c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string LettersOf(const std::string& text) {
  std::string letters;
  for (const char c : text) {
    if (IsLetter(c)) letters += c;
  }
  return letters;
}

std::string Trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return "";
  const std::size_t last = text.find_last_not_of(kBlanks);
  return text.substr(first, last - first + 1);
}

// Empty pieces are kept, so n separators make n + 1 pieces.
Strings Split(const std::string& text, char separator) {
  Strings pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string::npos;
       end = text.find(separator, start)) {
    pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

// Languages. A lookup without an entry is tried again with the language that serves the id.

const SpMapping* Find(int language) {
  const auto entry = PhoneSets().find(language);
  return entry == PhoneSets().end() ? nullptr : &entry->second;
}

const SpMapping& Resolve(int& language, int fallback) {
  const SpMapping* mapping = Find(language);
  while (mapping == nullptr) {
    language = fallback;
    mapping = Find(language);
  }
  return *mapping;
}

// The lookups by phone take an id of the English family for an English variant.
const SpMapping& ResolveByFamily(int language) {
  const bool english = 20000 <= language && language <= 29999;
  return Resolve(language, english ? LANGUAGE_AMERICAN_ENGLISH : LANGUAGE_MANDARIN);
}

// Cutting romanised text

bool IsSyllable(const SpMapping& mapping, const std::string& spelling) {
  return mapping.pinyin_map.find(spelling) != mapping.pinyin_map.end();
}

// Puts a space after each digit, before each capital and in place of each separator. Returns
// whether there were any.
bool Mark(const std::string& text, std::string& working) {
  bool separated = false;
  working.reserve(2 * text.size());
  for (const char c : text) {
    if (IsDigit(c)) {
      working += c;
      working += ' ';
      separated = true;
    } else if (IsUpper(c)) {
      working += ' ';
      working += c;
      separated = true;
    } else if (IsSpace(c) || c == '`' || c == '\'') {
      working += ' ';
      separated = true;
    } else {
      working += c;
    }
  }
  return separated;
}

void CutAtSpaces(const std::string& working, Strings& out) {
  for (const std::string& piece : Split(working, ' ')) {
    const std::string trimmed = Trim(piece);
    if (!trimmed.empty()) out.push_back(trimmed);
  }
}

// Takes the longest known syllable off the front (or the end), again and again. What is left when
// none is known is dropped.
void CutByLongestMatch(const SpMapping& mapping, std::string working, Strings& out, bool backward) {
  while (true) {
    std::int32_t length = std::min(static_cast<std::int32_t>(working.size()),
                                   static_cast<std::int32_t>(mapping.max_pinyin_length));
    for (; length >= 1; --length) {
      const auto byte_count = static_cast<std::size_t>(length);
      const std::size_t start = backward ? working.size() - byte_count : 0;
      const std::string candidate = working.substr(start, byte_count);
      if (IsSyllable(mapping, candidate)) {
        out.push_back(candidate);
        working.erase(start, byte_count);
        break;
      }
    }
    if (length < 1) return;
  }
}

void SplitPinyinOne(const SpMapping& mapping, const std::string& text, Strings& out,
                    bool backward) {
  std::string working;
  const bool separated = Mark(text, working);
  working = LowerCase(Trim(working));
  if (separated) {
    CutAtSpaces(working, out);
  } else {
    CutByLongestMatch(mapping, working, out, backward);
  }
}

void SplitPinyin(const SpMapping& mapping, const std::string& text, Strings& out, bool backward) {
  Strings pieces;
  SplitPinyinOne(mapping, text, pieces, backward);
  for (const std::string& piece : pieces) {
    const std::string copy = LowerCase(piece);
    if (IsSyllable(mapping, LettersOf(copy))) {
      out.push_back(piece);
      continue;
    }
    Strings second_cut;
    SplitPinyinOne(mapping, copy, second_cut, backward);
    out.insert(out.end(), second_cut.begin(), second_cut.end());
  }
}

// Tones

// Takes the tone digit off the end of a syllable. One byte alone is a spelling, never a tone.
signed char TakeTone(std::string& syllable) {
  if (syllable.size() < 2 || !IsDigit(syllable.back())) return 0;
  const auto tone = static_cast<signed char>(syllable.back() - '0');
  syllable.pop_back();
  return tone;
}

unsigned short Code(const PinyinInfo& row, signed char tone) {
  return static_cast<unsigned short>(row.id * 10 + tone);
}

void AppendPhones(const PinyinInfo& row, std::vector<const PhoneInfo*>& phones) {
  if (row.initial_phone != nullptr) phones.push_back(row.initial_phone);
  if (row.final_phone != nullptr) phones.push_back(row.final_phone);
}

// Pronunciation strings: a syllable is at least one phone name and the digit that closes it.

bool IsClosingDigit(const std::string& piece) { return piece.size() == 1 && IsDigit(piece[0]); }

}  // namespace

const std::map<int, SpMapping>& PhoneSets() {
  static const std::map<int, SpMapping> phone_sets = [] {
    std::map<int, SpMapping> table;
    InitializeMandarinSet(table);
    InitializeCantoneseSet(table);
    InitializeAmericanSet(table);
    return table;
  }();
  return phone_sets;
}

// NOLINTBEGIN(misc-no-recursion): a function that falls back calls itself with the other language.

int py2ph(int language, const std::string& text, std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const SpMapping* mapping = Find(language);
  if (mapping == nullptr) return reference::py2ph(LANGUAGE_MANDARIN, text, syllables);

  Strings pieces;
  SplitPinyin(*mapping, text, pieces, false);
  for (std::string& piece : pieces) {
    SyllableInfo syllable;
    syllable.language = language;
    const signed char tone = reference::ToneAdaptation(language, TakeTone(piece));
    const auto found = mapping->pinyin_map.find(Trim(piece));
    if (found == mapping->pinyin_map.end()) {
      syllables.clear();
      return -1;
    }
    syllable.code = Code(*found->second, tone);
    syllable.tone = tone;
    AppendPhones(*found->second, syllable.phones);
    syllables.push_back(syllable);
  }
  return 0;
}

int py2code(int language, const std::string& text, std::vector<unsigned short>& codes) {
  codes.clear();
  const SpMapping& mapping = Resolve(language, LANGUAGE_MANDARIN);

  Strings pieces;
  SplitPinyin(mapping, text, pieces, false);
  for (std::string& piece : pieces) {
    const signed char tone = reference::ToneAdaptation(language, TakeTone(piece));
    const auto found = mapping.pinyin_map.find(piece);
    if (found == mapping.pinyin_map.end()) {
      codes.clear();
      return -1;
    }
    codes.push_back(Code(*found->second, tone));
  }
  return 0;
}

int pyw2py(int language, const std::string& word, Strings& syllables, bool backward) {
  syllables.clear();
  const SpMapping& mapping = Resolve(language, LANGUAGE_MANDARIN);
  SplitPinyin(mapping, word, syllables, backward);
  return 0;
}

signed char ToneAdaptation(int language, signed char tone) {
  const int top = language == LANGUAGE_CANTONESE ? 7 : 5;
  if (1 <= tone && tone <= top) return tone;
  const int remainder = tone % top;
  return static_cast<signed char>(remainder == 0 ? top : remainder);
}

int code2ph(int language, unsigned short code, SyllableInfo& syllable) {
  const SpMapping& mapping = Resolve(language, LANGUAGE_MANDARIN);
  syllable.code = code;
  syllable.tone = static_cast<std::int8_t>(code % 10);
  const unsigned index = code / 10U;
  if (index >= mapping.pinyin_count) return -1;
  syllable.language = language;
  AppendPhones(mapping.pinyin_list[index], syllable.phones);
  return 0;
}

std::string code2py(int language, unsigned short code, bool with_tone) {
  const SpMapping* mapping = Find(language);
  if (mapping == nullptr) return reference::code2py(LANGUAGE_MANDARIN, code, true);

  if (mapping->pinyin_count == 0) return "";
  const unsigned index = code / 10U;
  const PinyinInfo& row = mapping->pinyin_list[index < mapping->pinyin_count ? index : 0];
  std::string spelling = row.pinyin;
  if (with_tone) spelling += std::to_string(code % 10);
  return spelling;
}

int pr2ph(int language, const std::string& pronunciation, std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const SpMapping* mapping = Find(language);
  if (mapping == nullptr) {
    return reference::pr2ph(LANGUAGE_AMERICAN_ENGLISH, pronunciation, syllables);
  }

  SyllableInfo syllable;
  syllable.language = language;
  for (const std::string& token : Split(pronunciation, ',')) {
    const std::string trimmed = Trim(token);
    if (trimmed.empty()) continue;
    const Strings pieces = Split(trimmed, ' ');
    if (pieces.size() < 2) return -1;  // the syllables before it stay
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
      const auto found = mapping->phone_map.find(pieces[i]);
      if (found == mapping->phone_map.end()) {
        syllables.clear();
        return -1;
      }
      syllable.phones.push_back(found->second);  // null for a name that no phone carries
    }
    if (!IsClosingDigit(pieces.back())) {
      syllables.clear();
      return -1;
    }
    syllable.raw_tone = static_cast<std::uint8_t>(pieces.back()[0] - '0');
    syllables.push_back(syllable);
    syllable.raw_tone = 0;
    syllable.phones.clear();
  }
  return 0;
}

int pr2ph(int language, const std::string& pronunciation, std::vector<unsigned char>& phone_ids) {
  const SpMapping* mapping = Find(language);
  if (mapping == nullptr) {
    return reference::pr2ph(LANGUAGE_AMERICAN_ENGLISH, pronunciation, phone_ids);
  }

  for (const std::string& token : Split(pronunciation, ',')) {
    const std::string trimmed = Trim(token);
    if (trimmed.empty()) continue;
    const Strings pieces = Split(trimmed, ' ');
    if (pieces.size() < 2) return -1;  // the bytes before it stay
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
      const auto found = mapping->phone_map.find(pieces[i]);
      if (found == mapping->phone_map.end() || found->second == nullptr) {
        phone_ids.clear();
        return -1;
      }
      phone_ids.push_back(static_cast<unsigned char>(found->second->id + 10));
    }
    if (!IsClosingDigit(pieces.back())) {
      phone_ids.clear();
      return -1;
    }
    phone_ids.push_back(static_cast<unsigned char>(pieces.back()[0] - '0'));
  }
  return 0;
}

// NOLINTEND(misc-no-recursion)

int ph2ph(int language, const std::vector<unsigned char>& phone_ids,
          std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const SpMapping& mapping = Resolve(language, LANGUAGE_AMERICAN_ENGLISH);

  SyllableInfo syllable;
  syllable.language = language;
  for (const unsigned char byte : phone_ids) {
    if (byte <= 9) {
      syllable.raw_tone = byte;
      syllables.push_back(syllable);
      syllable.raw_tone = 0;
      syllable.phones.clear();
      continue;
    }
    const unsigned id = byte - 10U;
    if (id >= mapping.phone_count) {
      syllables.clear();
      return -1;
    }
    syllable.phones.push_back(&mapping.phone_list[id]);
  }
  return 0;
}

int ph2tp(int /*language*/, unsigned char phone_id) { return phone_id <= 9 ? 1 : 2; }

const PhoneInfo* GetPhoneInfoById(int language, int id) {
  const SpMapping& mapping = ResolveByFamily(language);
  if (id >= 0 && id < static_cast<std::int32_t>(mapping.phone_count)) {
    return &mapping.phone_list[id];
  }
  return &mapping.phone_list[0];
}

const PhoneInfo* GetPhoneInfoByDescription(int language, const std::string& name) {
  const SpMapping& mapping = ResolveByFamily(language);
  const auto found = mapping.phone_map.find(name);
  return found == mapping.phone_map.end() ? &mapping.phone_list[0] : found->second;
}

char GetPhoneFeature(const PhoneInfo* phone, int index) {
  if (static_cast<std::uint32_t>(index) > 15) return 0;
  if (phone->feature[0] == 0) return 0;
  return phone->feature[index];
}

int LexiconEnPhoneTypeStr(const char* phone) {
  const SpMapping& mapping = PhoneSets().at(LANGUAGE_AMERICAN_ENGLISH);
  for (std::uint64_t row = 0; row < mapping.phone_count; ++row) {
    const PhoneInfo& info = mapping.phone_list[row];
    if (std::strcmp(phone, info.name) == 0) return info.type;
  }
  return 0;
}

int LexiconEnPhoneId(const char* phone) {
  const SpMapping& mapping = PhoneSets().at(LANGUAGE_AMERICAN_ENGLISH);
  for (std::uint64_t row = 0; row < mapping.phone_count; ++row) {
    if (std::strcmp(phone, mapping.phone_list[row].name) == 0) return 50 + static_cast<int>(row);
  }
  return 255;
}

int LexiconModulePhoneTypeStr(const char* phone, int language) {
  if (language != LANGUAGE_CANTONESE && language != LANGUAGE_MANDARIN) return 0;
  if (std::strcmp(phone, "sil") == 0) return 0;
  if (std::strcmp(phone, "ssil") == 0) return 0;
  const SpMapping& mapping = PhoneSets().at(language);
  for (std::uint64_t row = 0; row < mapping.phone_count; ++row) {
    if (std::strcmp(phone, mapping.phone_list[row].name) == 0) return 2;
  }
  return 1;
}

}  // namespace qeo::sp::reference
