#include "tools/writer.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "phoneme/phoneme.h"
#include "tools/messages.h"
#include "tools/numbers.h"

namespace qeo::tool {
namespace {

// Every word that an Append function writes has one blank behind it.

bool AppendPhones(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    out += phone->name;
    out += ' ';
  }
  return !syllable.phones.empty();
}

// The phone that bears the tone: the first final, or where there is none and still a tone, the last
// phone.
const sp::PhoneInfo* ToneBearer(const sp::SyllableInfo& syllable) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    if (phone->type == sp::PHONE_TYPE_FINAL) {
      return phone;
    }
  }
  return ToneDigit(syllable) == 0 || syllable.phones.empty() ? nullptr : syllable.phones.back();
}

bool AppendTonedPhones(const sp::SyllableInfo& syllable, std::string& out) {
  const sp::PhoneInfo* const bearer = ToneBearer(syllable);
  for (const sp::PhoneInfo* phone : syllable.phones) {
    out += phone->name;
    if (phone == bearer) {
      AppendNumber(ToneDigit(syllable), out);
    }
    out += ' ';
  }
  return !syllable.phones.empty();
}

void AppendIds(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    AppendNumber(phone->id + kFirstPhoneByte, out);
    out += ' ';
  }
  AppendNumber(ToneDigit(syllable), out);
  out += ' ';
}

bool AppendPronunciation(const sp::SyllableInfo& syllable, std::string& out) {
  const bool has_phones = AppendPhones(syllable, out);
  AppendNumber(ToneDigit(syllable), out);
  out += ", ";
  return has_phones;
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

int ToneDigit(const sp::SyllableInfo& syllable) {
  return syllable.tone != 0 ? syllable.tone : syllable.raw_tone;
}

bool AppendSyllable(Target to, const sp::SyllableInfo& syllable, std::string& out) {
  switch (to) {
    case Target::kSyllables:
      AppendSpelling(syllable, out);
      break;
    case Target::kPhones:
      return AppendPhones(syllable, out);
    case Target::kTonedPhones:
      return AppendTonedPhones(syllable, out);
    case Target::kCodes:
      AppendCodeNumber(syllable, out);
      break;
    case Target::kIds:
      AppendIds(syllable, out);
      break;
    case Target::kPronunciation:
      return AppendPronunciation(syllable, out);
    case Target::kMarks:
      AppendMarks(syllable, out);
      break;
    case Target::kArpabet:
    case Target::kJson:
    case Target::kTsv:
      return false;
  }
  return true;
}

bool Writer::Write(Reader& reader, std::string& out) {
  if (to_ == Target::kArpabet) {
    return WriteArpabet(reader, out);
  }
  const std::size_t begin = out.size();
  if (!(reader.has_codes() ? WriteCodes(reader, out) : WriteSyllables(reader, out))) {
    out.resize(begin);
    return false;
  }
  std::size_t size = out.size();
  while (size > begin && (out[size - 1] == ' ' || out[size - 1] == ',')) {
    --size;  // nothing stands behind the last word
  }
  out.resize(size);
  return true;
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
    const CodeText& text = is_made ? by_code_[code] : MakeText(reader, i);
    if (text.size == 0) {
      out.append(texts.data(), size);
      size = 0;
      if (!AppendSyllable(to_, reader.Syllable(i), out)) {
        return FailAt(i);
      }
      continue;
    }
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

// Makes the text of a code, of size 0 when it has none or it is too long.
const Writer::CodeText& Writer::MakeText(Reader& reader, std::size_t index) {
  const std::size_t code = reader.Code(index);
  if (code >= by_code_.size()) {
    by_code_.resize(code + 1);
  }
  CodeText& text = by_code_[code];
  std::string made;
  if (AppendSyllable(to_, reader.Syllable(index), made) && made.size() <= text.bytes.size()) {
    text.size = static_cast<std::uint8_t>(made.size());
    std::copy(made.begin(), made.end(), text.bytes.begin());
  }
  return text;
}

bool Writer::WriteSyllables(Reader& reader, std::string& out) {
  const std::size_t count = reader.syllable_count();
  for (std::size_t i = 0; i < count; ++i) {
    if (!AppendSyllable(to_, reader.Syllable(i), out)) {
      return FailAt(i);
    }
  }
  return true;
}

bool Writer::FailAt(std::size_t index) {
  failure_ = {"no phones", "syllable " + std::to_string(index + 1) + " has no phones", {}};
  return false;
}

bool Writer::WriteArpabet(Reader& reader, std::string& out) {
  std::string pronunciation;
  for (std::size_t i = 0; i < reader.syllable_count(); ++i) {
    AppendPronunciation(reader.Syllable(i), pronunciation);
  }
  pronunciation.resize(pronunciation.size() - std::min<std::size_t>(pronunciation.size(), 2));
  const notation::Normalized arpabet = notation::PronunciationToArpabet(pronunciation);
  if (!arpabet.problems.empty()) {
    const notation::Problem& first = arpabet.problems.front();
    const std::string_view kind = notation::ProblemName(first.kind);
    failure_ = {kind, std::string(kind) + ' ' + Described(first, pronunciation), {}};
    return false;
  }
  out += arpabet.text;
  return true;
}

}  // namespace qeo::tool
