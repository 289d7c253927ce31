#include "notation/writer.h"

#include <algorithm>
#include <string_view>

#include "notation/notation_table.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

// The library reads text in small letters alone.
bool IsInSmallLetters(std::string_view name) {
  return std::all_of(name.begin(), name.end(), ascii::IsSmall);
}

Gap ToneGapOf(const sp::SyllableInfo& syllable) {
  if (HasTone(syllable)) return Gap::kNone;
  const bool has_none = ToneDigit(syllable) == sp::TonesOf(syllable.language).none;
  return has_none ? Gap::kNoTone : Gap::kBadTone;
}

std::ptrdiff_t CountFinals(const sp::SyllableInfo& syllable) {
  return std::count_if(
      syllable.phones.begin(), syllable.phones.end(),
      [](const sp::PhoneInfo* phone) { return phone->type == sp::PHONE_TYPE_FINAL; });
}

std::size_t RowOfCode(const sp::SyllableInfo& syllable) {
  return syllable.code / std::size_t{sp::kTonesPerRow};
}

// Nothing follows the last syllable.
void EndText(std::size_t begin, std::string& out) {
  std::size_t size = out.size();
  while (size > begin && (out[size - 1] == ' ' || out[size - 1] == ',')) --size;
  out.resize(size);
}

}  // namespace

int ToneDigit(const sp::SyllableInfo& syllable) {
  return syllable.tone != 0 ? syllable.tone : syllable.raw_tone;
}

bool HasTone(const sp::SyllableInfo& syllable) {
  const sp::Tones tones = sp::TonesOf(syllable.language);
  const int digit = ToneDigit(syllable);
  return digit >= tones.first && digit <= tones.last;
}

Writer::Writer(Notation to, int language, bool have_codes, bool takes_any_digit)
    : row_(internal::RowOf(to)),
      language_(language),
      have_codes_(have_codes),
      takes_any_digit_(takes_any_digit) {
  const sp::Conversion conversion =
      have_codes ? sp::Conversion::kSyllables : sp::Conversion::kPronunciations;
  const sp::SpMapping& tables = *sp::FindPhoneSet(sp::ServingLanguage(conversion, language));
  for (std::uint64_t i = 0; i < tables.pinyin_count; ++i) {
    const sp::PinyinInfo& row = tables.pinyin_list[i];
    missing_names_.push_back(internal::MissingName(row));
    has_spelling_.push_back(IsInSmallLetters(row.pinyin));
    const sp::PhoneInfo* const last = row.final[0] != '\0' ? row.final_phone : row.initial_phone;
    if (last != nullptr && last->type == sp::PHONE_TYPE_INITIAL) syllabic_phones_.push_back(last);
  }
}

Gap Writer::FindGap(const sp::SyllableInfo& syllable) const {
  internal::SyllableTraits traits;
  if (MissingName(syllable) != nullptr) {
    traits.phone_gap = Gap::kMissingPhone;
  } else if (syllable.phones.empty()) {
    traits.phone_gap = Gap::kNoPhones;
  }
  traits.tone_gap = ToneGapOf(syllable);
  traits.takes_any_digit = takes_any_digit_ && traits.tone_gap == Gap::kBadTone;
  const std::size_t row = RowOfCode(syllable);
  traits.has_spelling = row < has_spelling_.size() && has_spelling_[row];
  const std::ptrdiff_t final_count = CountFinals(syllable);
  const auto is_syllabic = [this](const sp::PhoneInfo* phone) {
    return std::find(syllabic_phones_.begin(), syllabic_phones_.end(), phone) !=
           syllabic_phones_.end();
  };
  traits.can_carry_tone =
      final_count > 0 || (!syllable.phones.empty() && is_syllabic(syllable.phones.back()));
  traits.needs_no_tone = !traits.can_carry_tone && ToneDigit(syllable) == 0;
  traits.has_many_finals = final_count > 1;
  return row_.find_gap(traits);
}

const char* Writer::MissingName(const sp::SyllableInfo& syllable) const {
  const std::size_t row = RowOfCode(syllable);
  return have_codes_ && row < missing_names_.size() ? missing_names_[row] : nullptr;
}

// Puts the texts of many codes together before it appends them.
std::optional<std::size_t> Writer::Write(const std::vector<unsigned short>& codes,
                                         std::string& out) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what is written is read
  std::array<char, 64 * sizeof(CodeText)> texts;
  const std::size_t begin = out.size();
  std::size_t size = 0;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const CodeText& text = TextOf(codes[i]);
    if (text.size == 0) {
      out.resize(begin);
      return i;
    }
    if (size + text.bytes.size() > texts.size()) {
      out.append(texts.data(), size);
      size = 0;
    }
    std::copy(text.bytes.begin(), text.bytes.end(), texts.data() + size);  // of constant length
    size += text.size;
  }
  out.append(texts.data(), size);
  EndText(begin, out);
  return std::nullopt;
}

// The text of a code, of size 0 for one with a gap.
const Writer::CodeText& Writer::TextOf(std::size_t code) {
  if (code >= by_code_.size()) by_code_.resize(code + 1);
  CodeText& text = by_code_[code];
  if (text.size != 0) return text;
  sp::SyllableInfo syllable;
  const bool is_known = sp::code2ph(language_, static_cast<unsigned short>(code), syllable) == 0;
  if (is_known && FindGap(syllable) == Gap::kNone) {
    std::string made;
    row_.append(syllable, made);
    text.size = static_cast<std::uint8_t>(made.copy(text.bytes.data(), text.bytes.size()));
  }
  return text;
}

bool Writer::Append(const sp::SyllableInfo& syllable, std::string& out) const {
  if (FindGap(syllable) != Gap::kNone) return false;
  const std::size_t begin = out.size();
  row_.append(syllable, out);
  EndText(begin, out);
  return true;
}

std::optional<std::size_t> Writer::Write(const std::vector<sp::SyllableInfo>& syllables,
                                         std::string& out) const {
  const std::size_t begin = out.size();
  for (std::size_t i = 0; i < syllables.size(); ++i) {
    if (FindGap(syllables[i]) != Gap::kNone) {
      out.resize(begin);
      return i;
    }
    row_.append(syllables[i], out);
  }
  EndText(begin, out);
  return std::nullopt;
}

}  // namespace qeo::notation
