#include "tools/conversion/target_gaps.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "notation/notation.h"
#include "tools/conversion/languages.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

// The first name of a row that is not a phone, or null.
const char* MissingNameOf(const sp::PinyinInfo& row) {
  if (row.initial[0] != '\0' && row.initial_phone == nullptr) return row.initial;
  return row.final[0] != '\0' && row.final_phone == nullptr ? row.final : nullptr;
}

// The library reads text in small letters alone.
bool IsInSmallLetters(std::string_view name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

Gap FindToneGap(const sp::SyllableInfo& syllable) {
  if (Gaps::HasTone(syllable)) return Gap::kNone;
  const bool is_without = ToneDigit(syllable) == TonesOf(syllable.language).none;
  return is_without ? Gap::kNoTone : Gap::kBadTone;
}

}  // namespace

int ToneDigit(const sp::SyllableInfo& syllable) {
  return syllable.tone != 0 ? syllable.tone : syllable.raw_tone;
}

Gaps::Gaps(const Conversion& conversion)
    : has_codes_(HasCodes(conversion.from)), is_strict_(conversion.is_strict) {
  const sp::SpMapping& tables = *sp::FindPhoneSet(ServingLanguage(conversion));
  for (std::uint64_t i = 0; i < tables.pinyin_count; ++i) {
    const sp::PinyinInfo& row = tables.pinyin_list[i];
    missing_names_.push_back(MissingNameOf(row));
    has_spelling_.push_back(IsInSmallLetters(row.pinyin));
    const sp::PhoneInfo* const last = row.final[0] != '\0' ? row.final_phone : row.initial_phone;
    if (last != nullptr && last->type == sp::PHONE_TYPE_INITIAL) syllabic_phones_.push_back(last);
  }
}

Gap Gaps::Find(Target to, const sp::SyllableInfo& syllable) const {
  const Gap phone_gap = FindPhoneGap(syllable);
  const Gap tone_gap = FindToneGap(syllable);
  // The library's own notations have a place for any digit.
  const bool takes_any_digit = is_strict_ && tone_gap == Gap::kBadTone;
  const bool can_carry_tone = CanCarryTone(syllable);
  const bool needs_no_tone = !can_carry_tone && ToneDigit(syllable) == 0;
  switch (to) {
    case Target::kCodes:
    case Target::kJson:
    case Target::kTsv:
      return Gap::kNone;
    case Target::kSyllables:
      if (!HasSpelling(syllable)) return Gap::kNoSpelling;
      return takes_any_digit || tone_gap == Gap::kNoTone ? Gap::kNone : tone_gap;
    case Target::kMarks:
      return tone_gap;
    case Target::kIds:
      return phone_gap == Gap::kNoPhones ? Gap::kNone : phone_gap;
    case Target::kPhones:
      return phone_gap;
    case Target::kPronunciation:
      return phone_gap != Gap::kNone || needs_no_tone || takes_any_digit ? phone_gap : tone_gap;
    case Target::kTonedPhones:
    case Target::kArpabet:
      break;
  }
  if (phone_gap != Gap::kNone || needs_no_tone) return phone_gap;
  if (tone_gap == Gap::kNone && CountFinals(syllable) > 1) return Gap::kManyFinals;
  return tone_gap != Gap::kNone || can_carry_tone ? tone_gap : Gap::kToneWithoutFinal;
}

bool Gaps::HasTone(const sp::SyllableInfo& syllable) {
  const Tones& tones = TonesOf(syllable.language);
  const int digit = ToneDigit(syllable);
  return digit >= tones.first && digit <= tones.last;
}

std::string_view Gaps::KindOf(Gap gap) {
  switch (gap) {
    case Gap::kNoPhones:
      return "no phones";
    case Gap::kMissingPhone:
      return "missing phone";
    case Gap::kNoTone:
      return "no tone";
    case Gap::kNoSpelling:
      return "no spelling";
    default:
      return notation::ProblemName(notation::ProblemKind::kBadTone);
  }
}

std::string Gaps::DetailOf(Gap gap, const sp::SyllableInfo& syllable) const {
  switch (gap) {
    case Gap::kMissingPhone:
      return std::string(": no phone is named \"") + MissingName(syllable) + '"';
    case Gap::kNoTone:
      return ": --default-tone sets one";
    case Gap::kBadTone:
      return ": " + DescribeTones(syllable.language);
    case Gap::kToneWithoutFinal:
      return ": no final or vowel carries it";
    case Gap::kManyFinals:
      return ": more than one final or vowel would carry it";
    case Gap::kNoSpelling:
      return ": text does not read it back";
    default:
      return "";
  }
}

bool Gaps::HasSpelling(const sp::SyllableInfo& syllable) const {
  const std::size_t row = syllable.code / std::size_t{10};
  return row < has_spelling_.size() && has_spelling_[row];
}

const char* Gaps::MissingName(const sp::SyllableInfo& syllable) const {
  const std::size_t row = syllable.code / std::size_t{10};
  return has_codes_ && row < missing_names_.size() ? missing_names_[row] : nullptr;
}

Gap Gaps::FindPhoneGap(const sp::SyllableInfo& syllable) const {
  if (MissingName(syllable) != nullptr) return Gap::kMissingPhone;
  return syllable.phones.empty() ? Gap::kNoPhones : Gap::kNone;
}

std::ptrdiff_t Gaps::CountFinals(const sp::SyllableInfo& syllable) {
  return std::count_if(
      syllable.phones.begin(), syllable.phones.end(),
      [](const sp::PhoneInfo* phone) { return phone->type == sp::PHONE_TYPE_FINAL; });
}

bool Gaps::CanCarryTone(const sp::SyllableInfo& syllable) const {
  return CountFinals(syllable) > 0 ||
         (!syllable.phones.empty() && std::find(syllabic_phones_.begin(), syllabic_phones_.end(),
                                                syllable.phones.back()) != syllabic_phones_.end());
}

}  // namespace qeo::tool
