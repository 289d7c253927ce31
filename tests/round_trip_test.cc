// How the conversions fit together: what one writes another reads back, two routes to one result
// agree, and text that is joined or cut by hand converts like its parts.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/reference/compare.h"
#include "tests/reference/random_text.h"
#include "tests/reference/reference.h"

namespace qeo::sp {
namespace {

using reference::kLanguageIds;
using reference::PhoneSets;
using reference::RandomText;
using reference::Same;
using reference::Show;

using Syllables = std::vector<SyllableInfo>;
using Codes = std::vector<unsigned short>;
using Strings = std::vector<std::string>;
using Bytes = std::vector<unsigned char>;

constexpr int kInputs = 20000;
constexpr char kSeparators[] = {' ', '\t', '\n', '\v', '\f', '\r', '`', '\''};
constexpr int kChinese[] = {LANGUAGE_MANDARIN, LANGUAGE_CANTONESE};

// The conversions as functions that return everything they give.

template <typename Output>
struct Outcome {
  int result;
  Output output;
};

template <typename Output>
bool operator==(const Outcome<Output>& a, const Outcome<Output>& b) {
  return a.result == b.result && Same(a.output, b.output);
}

template <typename Output>
void PrintTo(const Outcome<Output>& outcome, std::ostream* out) {
  *out << outcome.result << ' ' << Show(outcome.output);
}

Outcome<Syllables> ToSyllables(int language, const std::string& text) {
  Outcome<Syllables> outcome = {};
  outcome.result = py2ph(language, text, outcome.output);
  return outcome;
}

Outcome<Codes> ToCodes(int language, const std::string& text) {
  Outcome<Codes> outcome = {};
  outcome.result = py2code(language, text, outcome.output);
  return outcome;
}

Strings Cut(int language, const std::string& text, bool backward) {
  Strings pieces;
  EXPECT_EQ(pyw2py(language, text, pieces, backward), 0);
  return pieces;
}

Outcome<SyllableInfo> ToSyllable(int language, unsigned short code) {
  Outcome<SyllableInfo> outcome = {};
  outcome.result = code2ph(language, code, outcome.output);
  return outcome;
}

Outcome<Syllables> Parse(int language, const std::string& pronunciation) {
  Outcome<Syllables> outcome = {};
  outcome.result = pr2ph(language, pronunciation, outcome.output);
  return outcome;
}

Outcome<Bytes> ParseToIds(int language, const std::string& pronunciation, Bytes before = {}) {
  Outcome<Bytes> outcome = {0, std::move(before)};
  outcome.result = pr2ph(language, pronunciation, outcome.output);
  return outcome;
}

Outcome<Syllables> Regroup(int language, const Bytes& phone_ids) {
  Outcome<Syllables> outcome = {};
  outcome.result = ph2ph(language, phone_ids, outcome.output);
  return outcome;
}

// What a comparison was made with, ready to be pasted into a test.
template <typename... Inputs>
std::string With(int language, const Inputs&... inputs) {
  return (Show(language) + ... + (' ' + Show(inputs)));
}

template <typename T>
std::vector<T> operator+(std::vector<T> a, const std::vector<T>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// A failure anywhere in the text is a failure of the whole.
template <typename T>
Outcome<std::vector<T>> operator+(const Outcome<std::vector<T>>& a,
                                  const Outcome<std::vector<T>>& b) {
  if (a.result != 0) return a;
  if (b.result != 0) return b;
  return {0, a.output + b.output};
}

bool HasNull(const Syllables& syllables) {
  for (const SyllableInfo& syllable : syllables) {
    for (const PhoneInfo* phone : syllable.phones) {
      if (phone == nullptr) return true;
    }
  }
  return false;
}

std::string LowerCase(std::string text) {
  for (char& c : text) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string Joined(const Strings& pieces, const std::string& before_each) {
  std::string text;
  for (const std::string& piece : pieces) text += before_each + piece;
  return text;
}

// The syllable's phones and a digit: "n i 3".
std::string Pronunciation(const SyllableInfo& syllable, int digit) {
  std::string text;
  for (const PhoneInfo* phone : syllable.phones) {
    text += phone->name;
    text += ' ';
  }
  return text + std::to_string(digit);
}

// Pronunciation strings and phone-id sequences

TEST(RoundTrip, PronunciationToIdsToSyllables) {
  RandomText random(11);
  int agreed = 0;
  int nameless = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string text = random.Pronunciation(language);
    SCOPED_TRACE(With(language, text));
    const Outcome<Syllables> syllables = Parse(language, text);
    const Outcome<Bytes> phone_ids = ParseToIds(language, text);
    if (HasNull(syllables.output)) {  // "E" and "ng" have no id to be written
      EXPECT_EQ(phone_ids, (Outcome<Bytes>{-1, {}}));
      ++nameless;
      continue;
    }
    EXPECT_EQ(phone_ids.result, syllables.result);
    EXPECT_EQ(Regroup(language, phone_ids.output), (Outcome<Syllables>{0, syllables.output}));
    agreed += !syllables.output.empty();
  }
  EXPECT_GE(agreed, 10000);
  EXPECT_GE(nameless, 400);
}

TEST(RoundTrip, IdsToSyllablesToIds) {
  constexpr unsigned char kIou = 10 + 35;
  constexpr unsigned char kOtherIou = 10 + 36;  // a row that its name does not reach
  RandomText random(12);
  int compared = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const Bytes phone_ids = random.PhoneIds(language);
    SCOPED_TRACE(With(language, phone_ids));
    for (const SyllableInfo& syllable : Regroup(language, phone_ids).output) {
      if (syllable.phones.empty()) continue;  // cannot be written as a pronunciation
      Bytes expected;
      for (const PhoneInfo* phone : syllable.phones) {
        const auto id = static_cast<unsigned char>(10 + phone->id);
        expected.push_back(language == LANGUAGE_MANDARIN && id == kOtherIou ? kIou : id);
      }
      expected.push_back(syllable.raw_tone);
      const std::string text = Pronunciation(syllable, syllable.raw_tone);
      EXPECT_EQ(ParseToIds(language, text), (Outcome<Bytes>{0, expected})) << text;
      ++compared;
    }
  }
  EXPECT_GE(compared, 15000);
}

TEST(RoundTrip, ClosingBytesAreAsManyAsSyllables) {
  RandomText random(13);
  int syllable_count = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const Bytes phone_ids = random.PhoneIds(language);
    const Outcome<Syllables> syllables = Regroup(language, phone_ids);
    if (syllables.result != 0) continue;
    std::size_t closing_bytes = 0;
    for (const unsigned char byte : phone_ids) closing_bytes += ph2tp(language, byte) == 1;
    EXPECT_EQ(syllables.output.size(), closing_bytes) << With(language, phone_ids);
    syllable_count += static_cast<int>(closing_bytes);
  }
  EXPECT_GE(syllable_count, 25000);
}

TEST(RoundTrip, IdSequencesJoin) {
  RandomText random(14);
  int joined = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    Bytes front = random.PhoneIds(language);
    front.push_back(static_cast<unsigned char>(random.Below(10)));  // nothing is left open
    const Bytes back = random.PhoneIds(language);
    const Outcome<Syllables> whole = Regroup(language, front + back);
    EXPECT_EQ(whole, Regroup(language, front) + Regroup(language, back))
        << With(language, front, back);
    joined += whole.output.size() >= 2;
  }
  EXPECT_GE(joined, 10000);
}

TEST(RoundTrip, PronunciationsJoin) {
  RandomText random(15);
  int joined = 0;
  int failed = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string front = random.Pronunciation(language);
    const std::string back = random.Pronunciation(language);
    const std::string whole = std::string(front).append(",").append(back);
    // The byte form appends, so the parts in turn give what the whole gives at once.
    Outcome<Bytes> in_turn = ParseToIds(language, front);
    if (in_turn.result == 0) in_turn = ParseToIds(language, back, in_turn.output);
    EXPECT_EQ(ParseToIds(language, whole), in_turn) << With(language, whole);
    joined += in_turn.result == 0 && !in_turn.output.empty();
    failed += in_turn.result != 0;
  }
  EXPECT_GE(joined, 8000);
  EXPECT_GE(failed, 3000);
}

// Syllable codes

TEST(RoundTrip, EverySyllableAndTone) {
  int compared = 0;
  int reread = 0;  // Mandarin "E": text is lower-cased, so it is read as "e"
  for (const int language : kChinese) {
    const SpMapping& mapping = PhoneSets().at(language);
    for (std::uint64_t row = 0; row < mapping.pinyin_count; ++row) {
      const std::string written = mapping.pinyin_list[row].pinyin;
      const std::string read = LowerCase(written);
      reread += written != read;
      for (const char* digit : {"", "0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
        const std::string text = written + digit;
        SCOPED_TRACE(With(language, text));
        const auto raw_tone = static_cast<signed char>(*digit == '\0' ? 0 : *digit - '0');
        const signed char tone = ToneAdaptation(language, raw_tone);
        const auto code = static_cast<unsigned short>(mapping.pinyin_map.at(read)->id * 10 + tone);
        const Outcome<SyllableInfo> syllable = ToSyllable(language, code);
        EXPECT_EQ(syllable.result, 0);
        EXPECT_EQ(ToCodes(language, text), (Outcome<Codes>{0, {code}}));
        EXPECT_EQ(ToSyllables(language, text), (Outcome<Syllables>{0, {syllable.output}}));
        EXPECT_EQ(code2py(language, code, true), read + std::to_string(tone));
        EXPECT_EQ(code2py(language, code, false), read);
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, (417 + 619) * 11);
  EXPECT_EQ(reread, 1);
}

TEST(RoundTrip, TextToCodesToText) {
  RandomText random(21);
  int compared = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    const Outcome<Codes> codes = ToCodes(language, text);
    std::string spelled;
    for (const unsigned short code : codes.output) spelled += code2py(language, code, true);
    EXPECT_EQ(ToCodes(language, spelled).output, codes.output) << With(language, text, spelled);
    compared += !codes.output.empty();
  }
  EXPECT_GE(compared, 10000);
}

TEST(RoundTrip, RecordsCarryTheCodes) {
  RandomText random(22);
  int converted = 0;
  int failed = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    const Outcome<Codes> codes = ToCodes(language, text);
    Outcome<Syllables> expected = {codes.result, {}};
    for (const unsigned short code : codes.output) {
      expected.output.push_back(ToSyllable(language, code).output);
    }
    EXPECT_EQ(ToSyllables(language, text), expected) << With(language, text);
    converted += !codes.output.empty();
    failed += codes.result != 0;
  }
  EXPECT_GE(converted, 10000);
  EXPECT_GE(failed, 3000);
}

TEST(RoundTrip, SyllablesAsPronunciations) {
  int compared = 0;
  int phoneless = 0;  // Mandarin "E" and "ng": no initial, and a final that is not a phone
  for (const int language : kChinese) {
    const SpMapping& mapping = PhoneSets().at(language);
    for (const auto& [spelling, row] : mapping.pinyin_map) {
      const SyllableInfo syllable =
          ToSyllable(language, static_cast<unsigned short>(row->id * 10 + 3)).output;
      SyllableInfo expected = syllable;
      expected.code = 0;
      expected.tone = 0;
      expected.raw_tone = 3;
      const Outcome<Syllables> parsed = Parse(language, Pronunciation(syllable, 3));
      if (syllable.phones.empty()) {
        EXPECT_EQ(parsed, (Outcome<Syllables>{-1, {}})) << spelling;
        ++phoneless;
        continue;
      }
      EXPECT_EQ(parsed, (Outcome<Syllables>{0, {expected}})) << spelling;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 415 + 619);
  EXPECT_EQ(phoneless, 2);
}

// Cutting text

TEST(RoundTrip, PiecesAreCutOnce) {
  RandomText random(31);
  int several = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    for (const bool backward : {false, true}) {
      const Strings pieces = Cut(language, text, backward);
      EXPECT_EQ(Cut(language, Joined(pieces, " "), backward), pieces)
          << With(language, text, backward);
      several += pieces.size() >= 2;
    }
  }
  EXPECT_GE(several, 20000);
}

TEST(RoundTrip, PiecesConvertLikeTheirText) {
  RandomText random(32);
  int converted = 0;
  int failed = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    const Outcome<Codes> codes = ToCodes(language, text);
    EXPECT_EQ(ToCodes(language, Joined(Cut(language, text, false), " ")), codes)
        << With(language, text);
    converted += !codes.output.empty();
    failed += codes.result != 0;
  }
  EXPECT_GE(converted, 10000);
  EXPECT_GE(failed, 3000);
}

TEST(RoundTrip, WrittenSeparatorsDivide) {
  RandomText random(33);
  int converted = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    const std::string front = random.Romanised(language);
    const std::string back = random.Romanised(language);
    const std::string separator(1, kSeparators[random.Below(std::size(kSeparators))]);
    const std::string whole = std::string(front).append(separator).append(back);
    // Each part keeps its separator: without one, the part would be cut as an unwritten whole.
    SCOPED_TRACE(With(language, front, separator, back));
    for (const bool backward : {false, true}) {
      EXPECT_EQ(Cut(language, whole, backward), Cut(language, front + separator, backward) +
                                                    Cut(language, separator + back, backward));
    }
    const Outcome<Codes> codes = ToCodes(language, whole);
    EXPECT_EQ(codes, ToCodes(language, front + separator) + ToCodes(language, separator + back));
    converted += codes.output.size() >= 2;
  }
  EXPECT_GE(converted, 8000);
}

TEST(RoundTrip, DigitsDivideBehindThem) {
  RandomText random(34);
  int converted = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    std::string front = random.Romanised(language);
    if (front.empty() || front.back() < '0' || '9' < front.back()) front += '3';
    const std::string back = ' ' + random.Romanised(language);  // as if written apart
    const std::string whole = front + back.substr(1);
    for (const bool backward : {false, true}) {
      EXPECT_EQ(Cut(language, whole, backward),
                Cut(language, front, backward) + Cut(language, back, backward))
          << With(language, whole);
    }
    const Outcome<Codes> codes = ToCodes(language, whole);
    EXPECT_EQ(codes, ToCodes(language, front) + ToCodes(language, back)) << With(language, whole);
    converted += codes.output.size() >= 2;
  }
  EXPECT_GE(converted, 4000);
}

TEST(RoundTrip, CapitalsOpenWordsLikeSpaces) {
  RandomText random(35);
  int several = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = kChinese[i % 2];
    std::string capitalised;
    std::string spaced;
    for (std::size_t words = 1 + random.Below(4); words > 0; --words) {
      const std::size_t syllable_count = 1 + random.Below(2);
      std::string word = random.PlainText(language, syllable_count, random.Chance(30));
      spaced += ' ' + word;
      word[0] = static_cast<char>(word[0] - 'a' + 'A');
      capitalised += word;
    }
    for (const bool backward : {false, true}) {
      EXPECT_EQ(Cut(language, capitalised, backward), Cut(language, spaced, backward))
          << capitalised;
    }
    const Outcome<Codes> codes = ToCodes(language, capitalised);
    EXPECT_EQ(codes, ToCodes(language, spaced)) << capitalised;
    several += codes.output.size() >= 2;
  }
  EXPECT_GE(several, 10000);
}

TEST(RoundTrip, TonedSyllablesComeBack) {
  RandomText random(36);
  std::size_t syllable_count = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = kChinese[i % 2];
    const std::size_t count = 1 + random.Below(8);
    const std::string text = random.PlainText(language, count, true);
    for (const bool backward : {false, true}) {
      const Strings pieces = Cut(language, text, backward);
      EXPECT_EQ(pieces.size(), count) << text;
      EXPECT_EQ(Joined(pieces, ""), text);
    }
    syllable_count += count;
  }
  EXPECT_GE(syllable_count, 80000U);
}

// Where nothing is written between letters, each piece is a syllable, none longer would fit, and
// the pieces stop where no syllable fits at all.

bool IsSyllable(int language, const std::string& spelling) {
  return PhoneSets().at(language).pinyin_map.count(spelling) != 0;
}

// The longest syllable that the letters begin (or end) with, tried one by one.
std::string LongestSyllable(int language, const std::string& letters, bool backward) {
  std::string longest;
  for (std::size_t byte_count = 1; byte_count <= letters.size(); ++byte_count) {
    const std::size_t start = backward ? letters.size() - byte_count : 0;
    const std::string candidate = letters.substr(start, byte_count);
    if (IsSyllable(language, candidate)) longest = candidate;
  }
  return longest;
}

TEST(RoundTrip, RunsAreCutByLongestMatch) {
  RandomText random(37);
  int whole = 0;
  int shortened = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = kChinese[i % 2];
    std::string letters = random.PlainText(language, 1 + random.Below(6), false);
    if (random.Chance(50)) letters[random.Below(letters.size())] = 'v';
    for (const bool backward : {false, true}) {
      SCOPED_TRACE(With(language, letters, backward));
      std::string rest = letters;
      for (const std::string& piece : Cut(language, letters, backward)) {
        EXPECT_EQ(piece, LongestSyllable(language, rest, backward));
        rest.erase(backward ? rest.size() - piece.size() : 0, piece.size());
      }
      EXPECT_EQ(LongestSyllable(language, rest, backward), "");
      whole += rest.empty();
      shortened += !rest.empty();
    }
  }
  EXPECT_GE(whole, 15000);
  EXPECT_GE(shortened, 8000);
}

// Languages and phones

TEST(RoundTrip, UnregisteredLanguagesAreServedByOthers) {
  RandomText random(41);
  int compared = 0;
  for (int i = 0; i < kInputs && !HasFailure(); ++i) {
    const int language = random.LanguageId();
    if (PhoneSets().count(language) != 0) continue;
    SCOPED_TRACE(language);
    const std::string text = random.Romanised(language);
    EXPECT_EQ(ToSyllables(language, text), ToSyllables(LANGUAGE_MANDARIN, text)) << Show(text);
    EXPECT_EQ(ToCodes(language, text), ToCodes(LANGUAGE_MANDARIN, text)) << Show(text);
    EXPECT_EQ(Cut(language, text, true), Cut(LANGUAGE_MANDARIN, text, true)) << Show(text);

    const auto code = static_cast<unsigned short>(random.Below(0x10000));
    EXPECT_EQ(ToSyllable(language, code), ToSyllable(LANGUAGE_MANDARIN, code)) << code;
    EXPECT_EQ(code2py(language, code, random.Chance(50)), code2py(LANGUAGE_MANDARIN, code, true));

    const std::string sounds = random.Pronunciation(language);
    const Bytes phone_ids = random.PhoneIds(language);
    constexpr int kEnglish = LANGUAGE_AMERICAN_ENGLISH;
    EXPECT_EQ(Parse(language, sounds), Parse(kEnglish, sounds)) << Show(sounds);
    EXPECT_EQ(ParseToIds(language, sounds), ParseToIds(kEnglish, sounds)) << Show(sounds);
    EXPECT_EQ(Regroup(language, phone_ids), Regroup(kEnglish, phone_ids)) << Show(phone_ids);
    ++compared;
  }
  EXPECT_GE(compared, 5000);
}

TEST(RoundTrip, PhonesToNamesToPhones) {
  int compared = 0;
  int shadowed = 0;  // the second Mandarin "iou"
  for (const auto& [language, mapping] : PhoneSets()) {
    for (int id = 0; id < static_cast<int>(mapping.phone_count); ++id) {
      const PhoneInfo* phone = GetPhoneInfoById(language, id);
      EXPECT_EQ(phone->id, id);
      EXPECT_EQ(phone->language, language);
      const PhoneInfo* named = GetPhoneInfoByDescription(language, phone->name);
      EXPECT_STREQ(named->name, phone->name);
      shadowed += named != phone;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 61 + 95 + 41);
  EXPECT_EQ(shadowed, 1);
}

TEST(RoundTrip, LexiconNumbersFollowThePhones) {
  constexpr int kEnglish = LANGUAGE_AMERICAN_ENGLISH;
  int phone_count = 0;
  for (const auto& [language, mapping] : PhoneSets()) {
    for (const auto& [name, own] : mapping.phone_map) {
      const bool is_english = PhoneSets().at(kEnglish).phone_map.count(name) != 0;
      const PhoneInfo* phone = GetPhoneInfoByDescription(kEnglish, name);
      EXPECT_EQ(LexiconEnPhoneId(name.c_str()), is_english ? 50 + phone->id : 255) << name;
      EXPECT_EQ(LexiconEnPhoneTypeStr(name.c_str()), is_english ? phone->type : 0) << name;
      for (const int chinese : kChinese) {
        const bool is_silence = name == "sil";
        const auto& phones = PhoneSets().at(chinese).phone_map;
        const auto found = phones.find(name);
        const bool is_phone = found != phones.end() && found->second != nullptr;
        EXPECT_EQ(LexiconModulePhoneTypeStr(name.c_str(), chinese),
                  is_silence ? 0 : (is_phone ? 2 : 1))
            << name;
      }
      ++phone_count;
    }
  }
  EXPECT_EQ(phone_count, 62 + 95 + 41);  // "iou" once, and "E" and "ng" beside the phones
}

TEST(RoundTrip, FoldedTonesStayFolded) {
  int compared = 0;
  for (const int language : kLanguageIds) {
    for (int tone = -128; tone <= 127; ++tone) {
      const signed char folded = ToneAdaptation(language, static_cast<signed char>(tone));
      EXPECT_EQ(ToneAdaptation(language, folded), folded) << language << ' ' << tone;
      ++compared;
    }
  }
  EXPECT_EQ(compared, static_cast<int>(std::size(kLanguageIds)) * 256);
}

}  // namespace
}  // namespace qeo::sp
