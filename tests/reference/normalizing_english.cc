// The reference form of ARPAbet both ways. It shares nothing with the library but the tables of
// phones and onsets.

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "notation/english_onsets.h"
#include "tests/reference/normalizing.h"
#include "tests/reference/normalizing_bytes.h"
#include "tests/reference/reference.h"

namespace qeo::sp::reference {
namespace {

using notation::ProblemKind;
using notation::Rule;
using notation::RuleSet;

struct Word {
  std::string text;
  std::size_t begin = 0;

  std::size_t end() const { return begin + text.size(); }
};

// What is between blanks.
std::vector<Word> Words(const std::string& text, std::size_t begin, std::size_t end) {
  std::vector<Word> words;
  bool is_open = false;
  for (std::size_t i = begin; i < end; ++i) {
    if (!IsBlank(text[i]) && !is_open) words.push_back({"", i});
    is_open = !IsBlank(text[i]);
    if (is_open) words.back().text += text[i];
  }
  return words;
}

const PhoneInfo* FindPhone(const std::string& name) {
  const auto& phones = PhoneSets().at(LANGUAGE_AMERICAN_ENGLISH).phone_map;
  const auto found = phones.find(name);
  return found == phones.end() ? nullptr : found->second;
}

void ReportUnknownPhone(const Word& word, std::vector<Misfit>& problems) {
  bool is_valid = true;
  for (std::size_t i = 0; i < word.text.size() && is_valid; i = Decode(word.text, i).end) {
    is_valid = Decode(word.text, i).value != kNoCodePoint;
  }
  Report(is_valid ? ProblemKind::kUnknownPhone : ProblemKind::kInvalidUtf8, word.begin, word.end(),
         problems);
}

struct Phone {
  std::string name;
  bool is_vowel = false;
  char digit = '0';
};

bool IsOnset(const std::vector<Phone>& phones, std::size_t begin, std::size_t end) {
  std::string onset;
  for (std::size_t i = begin; i < end; ++i) onset += (i == begin ? "" : " ") + phones[i].name;
  return std::any_of(std::begin(notation::internal::english_onsets),
                     std::end(notation::internal::english_onsets),
                     [&onset](const auto& row) { return row.phones == onset; });
}

// Where the syllable of the vowel begins: with the longest onset between `begin` and the vowel.
std::size_t OnsetBegin(const std::vector<Phone>& phones, std::size_t begin, std::size_t vowel) {
  while (begin < vowel && !IsOnset(phones, begin, vowel)) ++begin;
  return begin;
}

void AppendSyllable(const std::vector<Phone>& phones, std::size_t begin, std::size_t end,
                    std::string& text) {
  if (begin == end) return;
  if (!text.empty()) text += ", ";
  char digit = '0';
  for (std::size_t i = begin; i < end; ++i) {
    text += phones[i].name + ' ';
    if (phones[i].is_vowel) digit = phones[i].digit;
  }
  text += digit;
}

// A phone with its digits; none when it is left out.
std::optional<Phone> ReadPhone(const Word& word, RuleSet rules, std::vector<Misfit>& problems) {
  std::size_t length = word.text.size();
  while (length > 0 && IsDigit(word.text[length - 1])) --length;
  std::string name = word.text.substr(0, length);
  if (rules.Has(Rule::kLowerCase)) std::transform(name.begin(), name.end(), name.begin(), Small);
  const PhoneInfo* const phone = FindPhone(name);
  if (phone == nullptr) {
    ReportUnknownPhone(word, problems);
    return std::nullopt;
  }
  const bool is_vowel = phone->type == PHONE_TYPE_FINAL;
  const std::string digits = word.text.substr(length);
  const bool is_stress = is_vowel && (digits == "0" || digits == "1" || digits == "2");
  if (is_vowel && !is_stress && !rules.Has(Rule::kMissingStress)) {
    Report(ProblemKind::kBadTone, word.begin, word.end(), problems);
    return std::nullopt;
  }
  if (!is_stress && !digits.empty()) {
    Report(ProblemKind::kBadTone, word.begin + length, word.end(), problems);
  }
  if (name == "ah" && digits == "0" && rules.Has(Rule::kReducedVowel)) name = "ax";
  const bool is_folded = digits == "2" && rules.Has(Rule::kSecondStress);
  return Phone{name, is_vowel, is_folded ? '1' : is_stress ? digits[0] : '0'};
}

// The phones of a syllable of a pronunciation string, and the digit that closes it.
void WriteArpabet(const std::vector<Word>& words, Reading& reading) {
  const std::string& digit = words.back().text;
  if (words.size() < 2 || digit.size() != 1 || !IsDigit(digit[0])) {
    Report(ProblemKind::kBadTone, words.front().begin, words.back().end(), reading.problems);
    return;
  }
  std::vector<std::string> names;
  std::size_t first_vowel = std::string::npos;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const PhoneInfo* const phone = FindPhone(words[i].text);
    if (phone == nullptr) {
      ReportUnknownPhone(words[i], reading.problems);
      continue;
    }
    const bool is_first_vowel = phone->type == PHONE_TYPE_FINAL && first_vowel > names.size();
    if (is_first_vowel) first_vowel = names.size();
    names.push_back(is_first_vowel && words[i].text == "ax" && digit == "0" ? "ah" : words[i].text);
  }
  const bool has_vowel = first_vowel < names.size();
  const bool is_stress = has_vowel ? digit[0] <= '2' : digit == "0";
  if (!is_stress) {
    Report(ProblemKind::kBadTone, words.back().begin, words.back().end(), reading.problems);
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!reading.text.empty()) reading.text += ' ';
    for (const char c : names[i]) reading.text += static_cast<char>(c - 'a' + 'A');
    if (i == first_vowel && is_stress) reading.text += digit;
  }
}

}  // namespace

Reading ArpabetToPronunciation(const std::string& phones, RuleSet rules) {
  Reading reading;
  std::vector<Phone> read;
  for (const Word& word : Words(phones, 0, phones.size())) {
    const std::optional<Phone> phone = ReadPhone(word, rules, reading.problems);
    if (phone) read.push_back(*phone);
  }
  std::size_t begin = 0;  // of the syllable that is not written yet
  std::size_t after_vowel = 0;
  for (std::size_t i = 0; i < read.size(); ++i) {
    if (!read[i].is_vowel) continue;
    const std::size_t onset = OnsetBegin(read, after_vowel, i);
    AppendSyllable(read, begin, onset, reading.text);
    begin = onset;
    after_vowel = i + 1;
  }
  AppendSyllable(read, begin, read.size(), reading.text);
  return reading;
}

Reading PronunciationToArpabet(const std::string& pronunciation) {
  Reading reading;
  for (std::size_t begin = 0; begin <= pronunciation.size();) {
    const std::size_t end = std::min(pronunciation.find(',', begin), pronunciation.size());
    const std::vector<Word> words = Words(pronunciation, begin, end);
    if (!words.empty()) WriteArpabet(words, reading);
    begin = end + 1;
  }
  return reading;
}

}  // namespace qeo::sp::reference
