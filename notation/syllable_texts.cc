// How a syllable is written in each notation: what it cannot express, and the text, with what comes
// between it and the next syllable.

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

#include "notation/notation_table.h"
#include "notation/spelling.h"
#include "notation/writer.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {
namespace {

void AppendNumber(std::uint32_t number, std::string& out) {
  char digits[12];  // room for any 32-bit number
  out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void AppendTone(const sp::SyllableInfo& syllable, std::string& out) {
  AppendNumber(static_cast<std::uint32_t>(ToneDigit(syllable)), out);
}

bool IsFinal(const sp::PhoneInfo* phone) { return phone->type == sp::PHONE_TYPE_FINAL; }

// The index of the phone that carries the tone: the first final, or where there is none and still a
// tone, the last phone.
std::size_t FindToneCarrier(const sp::SyllableInfo& syllable) {
  const auto& phones = syllable.phones;
  const auto final = std::find_if(phones.begin(), phones.end(), IsFinal);
  const bool has_carrier = final != phones.end() || ToneDigit(syllable) == 0;
  return static_cast<std::size_t>((has_carrier ? final : phones.end() - 1) - phones.begin());
}

// Appends phones as `append` does each, the one that carries the tone with its digit.
template <typename Append>
void AppendWithTone(const sp::SyllableInfo& syllable, std::string& out, Append append) {
  const std::size_t carrier = FindToneCarrier(syllable);
  for (std::size_t i = 0; i < syllable.phones.size(); ++i) {
    append(*syllable.phones[i]);
    if (i == carrier) AppendTone(syllable, out);
    out += ' ';
  }
}

}  // namespace

Gap GapInText(const SyllableTraits& syllable) {
  if (!syllable.has_spelling) return Gap::kNoSpelling;
  const bool is_read_back = syllable.takes_any_digit || syllable.tone_gap == Gap::kNoTone;
  return is_read_back ? Gap::kNone : syllable.tone_gap;
}

void AppendText(const sp::SyllableInfo& syllable, std::string& out) {
  out += sp::code2py(syllable.language, static_cast<unsigned short>(syllable.code), true);
  out += ' ';
}

Gap GapInMarks(const SyllableTraits& syllable) { return syllable.tone_gap; }

void AppendMarks(const sp::SyllableInfo& syllable, std::string& out) {
  const std::vector<unsigned short> codes = {static_cast<unsigned short>(syllable.code)};
  out += MarkedPinyin(codes, Spacing::kSpace).text;
  out += ' ';
}

Gap GapInPhones(const SyllableTraits& syllable) { return syllable.phone_gap; }

void AppendPhones(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    out += phone->name;
    out += ' ';
  }
}

Gap GapInTonedPhones(const SyllableTraits& syllable) {
  if (syllable.phone_gap != Gap::kNone || syllable.needs_no_tone) return syllable.phone_gap;
  if (syllable.tone_gap != Gap::kNone) return syllable.tone_gap;
  if (syllable.has_many_finals) return Gap::kManyFinals;
  return syllable.can_carry_tone ? Gap::kNone : Gap::kToneWithoutFinal;
}

void AppendTonedPhones(const sp::SyllableInfo& syllable, std::string& out) {
  AppendWithTone(syllable, out, [&out](const sp::PhoneInfo& phone) { out += phone.name; });
}

// "ax0" is written AH0, as dictionaries have it.
void AppendArpabet(const sp::SyllableInfo& syllable, std::string& out) {
  const bool is_unstressed = ToneDigit(syllable) == 0;
  AppendWithTone(syllable, out, [&](const sp::PhoneInfo& phone) {
    const std::string_view name = phone.name;
    if (is_unstressed && name == "ax") {
      out += "AH";
    } else {
      for (const char c : name) out += static_cast<char>(c - 'a' + 'A');
    }
  });
}

Gap GapInCodes(const SyllableTraits& /*syllable*/) { return Gap::kNone; }

void AppendCode(const sp::SyllableInfo& syllable, std::string& out) {
  AppendNumber(syllable.code, out);
  out += ' ';
}

Gap GapInIds(const SyllableTraits& syllable) {
  return syllable.phone_gap == Gap::kMissingPhone ? Gap::kMissingPhone : Gap::kNone;
}

void AppendIds(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    AppendNumber(static_cast<std::uint32_t>(phone->id + sp::kFirstPhoneByte), out);
    out += ' ';
  }
  AppendTone(syllable, out);
  out += ' ';
}

Gap GapInPronunciation(const SyllableTraits& syllable) {
  const bool needs_phones_only =
      syllable.phone_gap != Gap::kNone || syllable.needs_no_tone || syllable.takes_any_digit;
  return needs_phones_only ? syllable.phone_gap : syllable.tone_gap;
}

void AppendPronunciation(const sp::SyllableInfo& syllable, std::string& out) {
  AppendPhones(syllable, out);
  AppendTone(syllable, out);
  out += ", ";
}

}  // namespace qeo::notation::internal
