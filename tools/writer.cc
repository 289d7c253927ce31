#include "tools/writer.h"

#include <cstddef>

#include "phoneme/phoneme.h"
#include "tools/numbers.h"

namespace qeo::tool {
namespace {

int ToneDigit(const sp::SyllableInfo& syllable) {
  return syllable.tone != 0 ? syllable.tone : syllable.raw_tone;
}

// Every word that an Append function writes has one blank behind it.

void AppendPhones(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    out += phone->name;
    out += ' ';
  }
}

void AppendIds(const sp::SyllableInfo& syllable, std::string& out) {
  for (const sp::PhoneInfo* phone : syllable.phones) {
    AppendNumber(phone->id + kFirstPhoneByte, out);
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

void AppendSyllable(int language, Target to, const sp::SyllableInfo& syllable, std::string& out) {
  switch (to) {
    case Target::kSyllables:
      out += sp::code2py(language, static_cast<unsigned short>(syllable.code), true);
      out += ' ';
      return;
    case Target::kPhones:
      return AppendPhones(syllable, out);
    case Target::kCodes:
      AppendNumber(syllable.code, out);
      out += ' ';
      return;
    case Target::kIds:
      return AppendIds(syllable, out);
    case Target::kPronunciation:
      return AppendPronunciation(syllable, out);
  }
}

}  // namespace

bool Write(int language, Target to, Reader& reader, std::string& out, std::string& problem) {
  const std::size_t begin = out.size();
  for (std::size_t i = 0; i < reader.syllable_count(); ++i) {
    const sp::SyllableInfo& syllable = reader.Syllable(i);
    if (to == Target::kPronunciation && syllable.phones.empty()) {
      problem = "syllable " + std::to_string(i + 1) + " has no phones";
      out.resize(begin);
      return false;
    }
    AppendSyllable(language, to, syllable, out);
  }
  while (out.size() > begin && (out.back() == ' ' || out.back() == ',')) {
    out.pop_back();  // nothing stands behind the last word
  }
  return true;
}

}  // namespace qeo::tool
