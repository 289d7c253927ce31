// ArpabetToPronunciation and back: text and problems are those of the reference form, no byte is
// lost, the library parses the pronunciation, it is cut by maximal onset, and what had no problem
// comes back as it was.

#include <sstream>
#include <string_view>

#include "fuzz/normalizing.h"
#include "notation/english_onsets.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::Rule;

constexpr int kEnglish = sp::LANGUAGE_AMERICAN_ENGLISH;

bool IsVowel(const sp::PhoneInfo* phone) { return phone->type == sp::PHONE_TYPE_FINAL; }

std::vector<sp::SyllableInfo> Parse(const std::string& pronunciation) {
  std::vector<sp::SyllableInfo> syllables;
  Expect(sp::pr2ph(kEnglish, pronunciation, syllables) == 0, "the library parses the text");
  return syllables;
}

// The consonants before the vowel, and one more before them.
std::string Onset(const sp::SyllableInfo& syllable, const sp::PhoneInfo* before) {
  std::string onset = before == nullptr ? "" : before->name;
  for (const sp::PhoneInfo* phone : syllable.phones) {
    if (IsVowel(phone)) break;
    onset += onset.empty() ? phone->name : ' ' + std::string(phone->name);
  }
  return onset;
}

bool IsOnset(const std::string& phones) {
  const std::size_t count = static_cast<std::size_t>(std::count(phones.begin(), phones.end(), ' '));
  return count < notation::internal::kMaxOnsetPhones &&
         notation::internal::IsEnglishOnset(notation::internal::KeyOf(phones));
}

void ExpectMaximalOnsets(const std::vector<sp::SyllableInfo>& syllables) {
  for (std::size_t i = 0; i < syllables.size(); ++i) {
    const std::vector<const sp::PhoneInfo*>& phones = syllables[i].phones;
    const auto vowels = std::count_if(phones.begin(), phones.end(), IsVowel);
    Expect(vowels == 1 || (vowels == 0 && i == 0), "a syllable has a vowel");
    if (i == 0) continue;
    const std::string onset = Onset(syllables[i], nullptr);
    Expect(onset.empty() || IsOnset(onset), "a syllable begins with an onset");
    const sp::PhoneInfo* const before = syllables[i - 1].phones.back();
    Expect(IsVowel(before) || !IsOnset(Onset(syllables[i], before)), "no onset is longer");
  }
}

// A phone as it is read and written back.
std::string Expected(std::string phone, notation::RuleSet rules) {
  for (char& c : phone) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  const bool is_vowel = std::string_view("AEIOU").find(phone.front()) != std::string_view::npos;
  if (is_vowel && !ascii::IsDigit(phone.back())) phone += '0';
  if (phone.back() == '2' && rules.Has(Rule::kSecondStress)) phone.back() = '1';
  return phone == "AX0" ? "AH0" : phone;
}

void ExpectBack(const std::string& text, notation::RuleSet rules,
                const notation::Normalized& result) {
  const notation::Normalized back = notation::PronunciationToArpabet(result.text);
  Expect(back.problems.empty() && back.applied.empty(), "the way back has no problem");
  if (!result.problems.empty()) return;
  std::string expected;
  std::string blanks_only = text;
  std::replace_if(blanks_only.begin(), blanks_only.end(), ascii::IsBlank, ' ');
  std::istringstream phones(blanks_only);
  for (std::string phone; std::getline(phones, phone, ' ');) {
    if (phone.empty()) continue;
    if (!expected.empty()) expected += ' ';
    expected += Expected(phone, rules);
  }
  Expect(back.text == expected, "the way back gives the phones");
}

// The phones of all syllables; "ah" and "ax" are one in ARPAbet.
std::string Flat(const std::vector<sp::SyllableInfo>& syllables) {
  std::string flat;
  for (const sp::SyllableInfo& syllable : syllables) {
    for (const sp::PhoneInfo* phone : syllable.phones) {
      flat += std::string_view(phone->name) == "ax" ? "ah" : phone->name;
      flat += ' ';
    }
  }
  return flat;
}

void ExpectFromPronunciation(const std::string& text) {
  const notation::Normalized result = notation::PronunciationToArpabet(text);
  fuzzing::ExpectReference(result, sp::reference::PronunciationToArpabet(text));
  sp::reference::ExpectPlacedPronunciation(text, result, Expect);
  Expect(result.applied.empty(), "nothing can be switched");
  const notation::Normalized again = notation::ArpabetToPronunciation(result.text);
  Expect(again.problems.empty(), "what is written is ARPAbet");
  std::vector<sp::SyllableInfo> syllables;
  const bool is_parsed = sp::pr2ph(kEnglish, text, syllables) == 0;
  Expect(!is_parsed || !result.problems.empty() || Flat(syllables) == Flat(Parse(again.text)),
         "the phones are the library's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const bool is_pronunciation = input.ChooseBool();
  const notation::RuleSet rules = fuzzing::ChooseRules(input, notation::kArpabetRules);
  const std::string text = input.Rest();
  if (is_pronunciation) {
    ExpectFromPronunciation(text);
    return 0;
  }
  const notation::Normalized result = notation::ArpabetToPronunciation(text, rules);
  fuzzing::ExpectReference(result, sp::reference::ArpabetToPronunciation(text, rules));
  sp::reference::ExpectPlacedArpabet(text, result, Expect);
  ExpectMaximalOnsets(Parse(result.text));
  ExpectBack(text, rules, result);
  return 0;
}
