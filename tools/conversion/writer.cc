#include "tools/conversion/writer.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "phoneme/phoneme.h"
#include "tools/base/decimal.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

// Every word that an Append function writes has one blank after it.

void AppendPhones(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    out += phone->name;
    out += ' ';
  }
}

// The index of the phone that carries the tone: the first final, or where there is none and still a
// tone, the last phone.
std::size_t FindToneCarrier(const sp::SyllableInfo& syllable) {
  const auto& phones = syllable.phones;
  const auto final = std::find_if(phones.begin(), phones.end(), [](const sp::PhoneInfo* phone) {
    return phone->type == sp::PHONE_TYPE_FINAL;
  });
  const bool has_carrier = final != phones.end() || ToneDigit(syllable) == 0;
  return static_cast<std::size_t>((has_carrier ? final : phones.end() - 1) - phones.begin());
}

void AppendTonedPhones(const sp::SyllableInfo& syllable, std::string& out) {
  const std::size_t carrier = FindToneCarrier(syllable);
  for (std::size_t i = 0; i < syllable.phones.size(); ++i) {
    out += syllable.phones[i]->name;
    if (i == carrier) AppendNumber(ToneDigit(syllable), out);
    out += ' ';
  }
}

void AppendIds(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    AppendNumber(phone->id + sp::kFirstPhoneByte, out);
    out += ' ';
  }
  AppendNumber(ToneDigit(syllable), out);
  out += ' ';
}

void AppendPronunciation(const sp::SyllableInfo& syllable, std::string& out) {
  AppendPhones(syllable, out);
  AppendNumber(ToneDigit(syllable), out);
  out += ", ";
}

void AppendMarks(const sp::SyllableInfo& syllable, std::string& out) {
  const std::vector<unsigned short> codes = {static_cast<unsigned short>(syllable.code)};
  out += notation::MarkedPinyin(codes, notation::Spacing::kSpace).text;
  out += ' ';
}

void AppendSpelling(const sp::SyllableInfo& syllable, std::string& out) {
  out += sp::code2py(syllable.language, static_cast<unsigned short>(syllable.code), true);
  out += ' ';
}

void AppendCodeNumber(const sp::SyllableInfo& syllable, std::string& out) {
  AppendNumber(syllable.code, out);
  out += ' ';
}

}  // namespace

void AppendSyllable(Target to, const sp::SyllableInfo& syllable, std::string& out) {
  switch (to) {
    case Target::kSyllables:
      return AppendSpelling(syllable, out);
    case Target::kPhones:
      return AppendPhones(syllable, out);
    case Target::kTonedPhones:
      return AppendTonedPhones(syllable, out);
    case Target::kCodes:
      return AppendCodeNumber(syllable, out);
    case Target::kIds:
      return AppendIds(syllable, out);
    case Target::kPronunciation:
      return AppendPronunciation(syllable, out);
    case Target::kMarks:
      return AppendMarks(syllable, out);
    case Target::kArpabet:
    case Target::kJson:
    case Target::kTsv:
      return;
  }
}

bool Writer::Write(Reader& reader, const std::string& text, std::string& out) {
  const std::size_t begin = out.size();
  if (!WriteAll(reader, out)) {
    out.resize(begin);
    failure_ = FindGaps(reader, text);
    return false;
  }
  std::size_t size = out.size();
  while (size > begin && (out[size - 1] == ' ' || out[size - 1] == ',')) {
    --size;  // nothing follows the last word
  }
  out.resize(size);
  return true;
}

// Returns false at the first gap.
bool Writer::WriteAll(Reader& reader, std::string& out) {
  if (to_ == Target::kArpabet) return WriteArpabet(reader, out);
  return reader.has_codes() ? WriteCodes(reader, out) : WriteSyllables(reader, out);
}

// Puts the texts of many codes together before it appends them.
bool Writer::WriteCodes(Reader& reader, std::string& out) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what is written is read
  std::array<char, 64 * sizeof(CodeText)> texts;
  std::size_t size = 0;
  const std::size_t count = reader.syllable_count();
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t code = reader.Code(i);
    const bool is_made = code < by_code_.size() && by_code_[code].size != 0;
    const CodeText& text = is_made ? by_code_[code] : MakeText(code, reader.Syllable(i));
    if (text.size == 0) return false;
    if (size + text.bytes.size() > texts.size()) {
      out.append(texts.data(), size);
      size = 0;
    }
    std::copy(text.bytes.begin(), text.bytes.end(), texts.data() + size);  // of constant length
    size += text.size;
  }
  out.append(texts.data(), size);
  return true;
}

// Makes the text of a code, of size 0 for one with a gap.
const Writer::CodeText& Writer::MakeText(std::size_t code, const sp::SyllableInfo& syllable) {
  if (code >= by_code_.size()) by_code_.resize(code + 1);
  CodeText& text = by_code_[code];
  if (gaps_.Find(to_, syllable) == Gap::kNone) {
    std::string made;
    AppendSyllable(to_, syllable, made);
    text.size = static_cast<std::uint8_t>(made.copy(text.bytes.data(), text.bytes.size()));
  }
  return text;
}

bool Writer::WriteSyllables(Reader& reader, std::string& out) {
  const std::size_t count = reader.syllable_count();
  for (std::size_t i = 0; i < count; ++i) {
    const sp::SyllableInfo& syllable = reader.Syllable(i);
    if (gaps_.Find(to_, syllable) != Gap::kNone) return false;
    AppendSyllable(to_, syllable, out);
  }
  return true;
}

bool Writer::WriteArpabet(Reader& reader, std::string& out) {
  std::string pronunciation;
  for (std::size_t i = 0; i < reader.syllable_count(); ++i) {
    const sp::SyllableInfo& syllable = reader.Syllable(i);
    if (gaps_.Find(to_, syllable) != Gap::kNone) return false;
    AppendPronunciation(syllable, pronunciation);
  }
  pronunciation.resize(pronunciation.size() - std::min<std::size_t>(pronunciation.size(), 2));
  out += notation::PronunciationToArpabet(pronunciation).text;
  return true;
}

// Describes the first gap, and counts the others.
Failure Writer::FindGaps(Reader& reader, const std::string& text) const {
  const std::vector<notation::Range> places = reader.FindPlaces(text);
  Failure failure;
  std::string detail;
  std::size_t count = 0;
  for (std::size_t i = 0; i < reader.syllable_count(); ++i) {
    const sp::SyllableInfo& syllable = reader.Syllable(i);
    const Gap gap = gaps_.Find(to_, syllable);
    if (gap != Gap::kNone && count++ == 0) {
      failure.kind = Gaps::KindOf(gap);
      failure.place = i < places.size() ? places[i] : notation::Range{0, text.size()};
      const std::string written = text.substr(failure.place.offset, failure.place.length);
      failure.message =
          std::string(failure.kind) + ' ' + Quoted(written) + " (syllable " + std::to_string(i + 1);
      detail = ')' + gaps_.DetailOf(gap, syllable);
    }
  }
  if (count > 1) failure.message += " and " + std::to_string(count - 1) + " more";
  failure.message += detail;
  return failure;
}

}  // namespace qeo::tool
