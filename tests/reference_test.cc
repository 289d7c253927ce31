// The library against its second, simple implementation: random input for every conversion, all
// input where there is little enough of it. Results and outputs must agree, also after a failure.

#include "tests/reference/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"
#include "tests/reference/compare.h"
#include "tests/reference/random_text.h"

namespace qeo::sp {
namespace {

using reference::kLanguageIds;
using reference::RandomText;
using reference::Same;
using reference::Show;

using Syllables = std::vector<SyllableInfo>;
using Codes = std::vector<unsigned short>;
using Strings = std::vector<std::string>;
using Bytes = std::vector<unsigned char>;

constexpr int kTexts = 120000;
constexpr int kPronunciations = 80000;
constexpr int kPhoneIdSequences = 80000;
constexpr int kMixedUp = 10000;
constexpr int kNames = 20000;
static_assert(kTexts + kPronunciations + kPhoneIdSequences >= 200000);
constexpr int kLanguageCount = static_cast<int>(std::size(kLanguageIds));

// Every run has the same input; --gtest_random_seed=N gives another one.
RandomText MakeRandomText(std::uint64_t seed) {
  return RandomText(seed + (static_cast<std::uint64_t>(GTEST_FLAG_GET(random_seed)) << 32U));
}

// One conversion in both forms.
template <typename InputType, typename Output>
struct Conversion {
  using Input = InputType;
  using Function = int (*)(int language, Input input, Output& output);

  const char* name;
  Function library;
  Function reference;
};

template <typename Output>
struct Outcome {
  int result;
  Output output;
};

// Calls both forms with equal output containers. Whatever one returns and leaves in its container,
// the other must too.
template <typename InputType, typename Output>
Outcome<Output> ExpectSame(const Conversion<InputType, Output>& conversion, int language,
                           typename Conversion<InputType, Output>::Input input,
                           const Output& stale) {
  Outcome<Output> actual = {0, stale};
  Outcome<Output> expected = {0, stale};
  actual.result = conversion.library(language, input, actual.output);
  expected.result = conversion.reference(language, input, expected.output);
  EXPECT_TRUE(actual.result == expected.result && Same(actual.output, expected.output))
      << conversion.name << '(' << language << ", " << Show(input) << ")\n"
      << "  library:   " << actual.result << ' ' << Show(actual.output) << '\n'
      << "  reference: " << expected.result << ' ' << Show(expected.output);
  return expected;
}

using TextToSyllables = Conversion<const std::string&, Syllables>;
using TextToCodes = Conversion<const std::string&, Codes>;
using TextToStrings = Conversion<const std::string&, Strings>;
using TextToBytes = Conversion<const std::string&, Bytes>;
using BytesToSyllables = Conversion<const Bytes&, Syllables>;
using CodeToSyllable = Conversion<unsigned short, SyllableInfo>;

constexpr TextToSyllables kPy2Ph = {"py2ph", py2ph, reference::py2ph};
constexpr TextToCodes kPy2Code = {"py2code", py2code, reference::py2code};
constexpr TextToSyllables kPr2Ph = {"pr2ph to syllables", pr2ph, reference::pr2ph};
constexpr TextToBytes kPr2PhIds = {"pr2ph to bytes", pr2ph, reference::pr2ph};
constexpr BytesToSyllables kPh2Ph = {"ph2ph", ph2ph, reference::ph2ph};
constexpr CodeToSyllable kCode2Ph = {"code2ph", code2ph, reference::code2ph};

template <bool kBackward>
int Cut(int language, const std::string& word, Strings& syllables) {
  return pyw2py(language, word, syllables, kBackward);
}

template <bool kBackward>
int CutByReference(int language, const std::string& word, Strings& syllables) {
  return reference::pyw2py(language, word, syllables, kBackward);
}

constexpr TextToStrings kCutForward = {"pyw2py forward", Cut<false>, CutByReference<false>};
constexpr TextToStrings kCutBackward = {"pyw2py backward", Cut<true>, CutByReference<true>};

const Syllables kStaleSyllables = {StaleSyllable(), StaleSyllable()};
const Codes kStaleCodes = {999, 2243};
const Strings kStaleStrings = {"stale", "ni3"};
const Bytes kStaleBytes = {7, 8, 255};

// Random input. Each test counts what it has seen, so that input that grows trivial fails it.

// What opens, closes or parts syllables.
constexpr char kWritten[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ \t\n\v\f\r`'";
constexpr char kLettersAndDigits[] = "abcdefghijklmnopqrstuvwxyz0123456789";

std::size_t ByteCount(const Strings& pieces) {
  std::size_t byte_count = 0;
  for (const std::string& piece : pieces) byte_count += piece.size();
  return byte_count;
}

bool SamePieces(Strings a, Strings b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  return a == b;
}

struct TextsSeen {
  int converted = 0;     // to two syllables or more
  int failed = 0;        // with other pieces beside the one that is not a syllable
  int empty = 0;         // no failure and no syllable
  int cut_by_match = 0;  // into two syllables or more, nothing written between them
  int ambiguous = 0;     // backward gives other syllables than forward
  int shortened = 0;     // bytes are dropped, and the rest is converted
  int odd_pieces = 0;    // bytes that are neither letter nor digit in a piece
  int long_texts = 0;    // 64 bytes and more
  std::map<int, int> languages;
  std::array<int, 256> bytes{};

  void Add(int language, const std::string& text, const Outcome<Codes>& codes,
           const Strings& forward, const Strings& backward) {
    const bool is_run = text.find_first_of(kWritten) == std::string::npos;
    ++languages[language];
    for (const char c : text) ++bytes[static_cast<unsigned char>(c)];
    long_texts += text.size() >= 64;
    converted += codes.output.size() >= 2;
    failed += codes.result != 0 && forward.size() >= 2;
    empty += codes.result == 0 && codes.output.empty();
    cut_by_match += is_run && forward.size() >= 2;
    ambiguous += !SamePieces(forward, backward);
    shortened += is_run && !forward.empty() && ByteCount(forward) < text.size();
    for (const std::string& piece : forward) {
      odd_pieces += piece.find_first_not_of(kLettersAndDigits) != std::string::npos;
    }
  }
};

// Pieces are in the text where FindPieces says, the first letter perhaps a capital.
void ExpectPlaces(int language, const std::string& text, bool backward, const Strings& expected) {
  std::vector<TextPiece> places;
  FindPieces(language, text, places, backward);
  Strings pieces;
  for (const TextPiece& place : places) {
    std::string& piece = pieces.emplace_back(text.substr(place.offset, place.length));
    if ('A' <= piece[0] && piece[0] <= 'Z') piece[0] = static_cast<char>(piece[0] - 'A' + 'a');
  }
  EXPECT_EQ(pieces, expected) << language << ' ' << testing::PrintToString(text) << backward;
}

TEST(Reference, RomanisedText) {
  RandomText random = MakeRandomText(1);
  TextsSeen seen;
  int compared = 0;
  for (; compared < kTexts && !HasFailure(); ++compared) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    ExpectSame(kPy2Ph, language, text, kStaleSyllables);
    const Outcome<Codes> codes = ExpectSame(kPy2Code, language, text, kStaleCodes);
    const Strings forward = ExpectSame(kCutForward, language, text, kStaleStrings).output;
    const Strings backward = ExpectSame(kCutBackward, language, text, kStaleStrings).output;
    ExpectPlaces(language, text, false, forward);
    ExpectPlaces(language, text, true, backward);
    seen.Add(language, text, codes, forward, backward);
  }
  EXPECT_EQ(compared, kTexts);

  EXPECT_GE(seen.converted, 40000);
  EXPECT_GE(seen.failed, 15000);
  EXPECT_GE(seen.empty, 15000);
  EXPECT_GE(seen.cut_by_match, 15000);
  EXPECT_GE(seen.ambiguous, 10000);
  EXPECT_GE(seen.shortened, 4000);
  EXPECT_GE(seen.odd_pieces, 6000);
  EXPECT_GE(seen.long_texts, 1000);
  for (const int language : kLanguageIds) EXPECT_GE(seen.languages[language], 2000) << language;
  EXPECT_GE(*std::min_element(seen.bytes.begin(), seen.bytes.end()), 5);
}

struct PronunciationsSeen {
  int converted = 0;  // to two syllables or more
  int empty = 0;      // no failure and no syllable
  int emptied = 0;    // failed, and nothing is left
  int kept = 0;       // failed, and the syllables before the failure are left
  int nameless = 0;   // "E" or "ng": a null phone as a syllable, a failure as bytes
  std::map<int, int> languages;

  void Add(int language, const Outcome<Syllables>& syllables, const Outcome<Bytes>& phone_ids) {
    ++languages[language];
    converted += phone_ids.result == 0 && syllables.output.size() >= 2;
    empty += syllables.result == 0 && syllables.output.empty();
    emptied += syllables.result != 0 && phone_ids.output.empty();
    kept += syllables.result != 0 && !syllables.output.empty() && !phone_ids.output.empty();
    nameless += syllables.result == 0 && phone_ids.result != 0;
  }
};

TEST(Reference, Pronunciations) {
  RandomText random = MakeRandomText(2);
  PronunciationsSeen seen;
  int compared = 0;
  for (; compared < kPronunciations && !HasFailure(); ++compared) {
    const int language = random.LanguageId();
    const std::string text = random.Pronunciation(language);
    const Outcome<Syllables> syllables = ExpectSame(kPr2Ph, language, text, kStaleSyllables);
    const Outcome<Bytes> phone_ids = ExpectSame(kPr2PhIds, language, text, kStaleBytes);
    ExpectSame(kPr2PhIds, language, text, Bytes());
    seen.Add(language, syllables, phone_ids);
  }
  EXPECT_EQ(compared, kPronunciations);

  EXPECT_GE(seen.converted, 30000);
  EXPECT_GE(seen.empty, 1000);
  EXPECT_GE(seen.emptied, 10000);
  EXPECT_GE(seen.kept, 1200);
  EXPECT_GE(seen.nameless, 2000);
  for (const int language : kLanguageIds) EXPECT_GE(seen.languages[language], 2000) << language;
}

// Callers mistake one notation for the other.
TEST(Reference, TextAsPronunciationAndBack) {
  RandomText random = MakeRandomText(3);
  int compared = 0;
  for (; compared < kMixedUp && !HasFailure(); ++compared) {
    const int language = random.LanguageId();
    const std::string text = random.Romanised(language);
    ExpectSame(kPr2Ph, language, text, kStaleSyllables);
    ExpectSame(kPr2PhIds, language, text, kStaleBytes);
    const std::string pronunciation = random.Pronunciation(language);
    ExpectSame(kPy2Ph, language, pronunciation, kStaleSyllables);
    ExpectSame(kPy2Code, language, pronunciation, kStaleCodes);
    ExpectSame(kCutForward, language, pronunciation, kStaleStrings);
    ExpectSame(kCutBackward, language, pronunciation, kStaleStrings);
  }
  EXPECT_EQ(compared, kMixedUp);
}

struct SequencesSeen {
  int converted = 0;   // to two syllables or more
  int failed = 0;      // a byte is not a phone
  int unfinished = 0;  // phones after the last closing byte are dropped
  int phoneless = 0;   // a syllable without phones
  std::map<int, int> languages;

  void Add(int language, const Bytes& phone_ids, const Outcome<Syllables>& syllables) {
    ++languages[language];
    converted += syllables.output.size() >= 2;
    failed += syllables.result != 0;
    unfinished += syllables.result == 0 && !phone_ids.empty() && phone_ids.back() > 9;
    for (const SyllableInfo& syllable : syllables.output) phoneless += syllable.phones.empty();
  }
};

TEST(Reference, PhoneIdSequences) {
  RandomText random = MakeRandomText(4);
  SequencesSeen seen;
  int compared = 0;
  for (; compared < kPhoneIdSequences && !HasFailure(); ++compared) {
    const int language = random.LanguageId();
    const Bytes phone_ids = random.PhoneIds(language);
    seen.Add(language, phone_ids, ExpectSame(kPh2Ph, language, phone_ids, kStaleSyllables));
  }
  EXPECT_EQ(compared, kPhoneIdSequences);

  EXPECT_GE(seen.converted, 30000);
  EXPECT_GE(seen.failed, 10000);
  EXPECT_GE(seen.unfinished, 6000);
  EXPECT_GE(seen.phoneless, 25000);
  for (const int language : kLanguageIds) EXPECT_GE(seen.languages[language], 2000) << language;
}

TEST(Reference, PhoneNames) {
  RandomText random = MakeRandomText(5);
  int compared = 0;
  int known = 0;
  int unknown = 0;
  int nameless = 0;  // "E" and "ng"
  for (; compared < kNames && !HasFailure(); ++compared) {
    const int language = random.LanguageId();
    const std::string name = random.PhoneName(language);
    SCOPED_TRACE(Show(language) + ' ' + Show(name));
    const PhoneInfo* phone = reference::GetPhoneInfoByDescription(language, name);
    EXPECT_EQ(GetPhoneInfoByDescription(language, name), phone);
    EXPECT_EQ(LexiconEnPhoneTypeStr(name.c_str()), reference::LexiconEnPhoneTypeStr(name.c_str()));
    EXPECT_EQ(LexiconEnPhoneId(name.c_str()), reference::LexiconEnPhoneId(name.c_str()));
    EXPECT_EQ(LexiconModulePhoneTypeStr(name.c_str(), language),
              reference::LexiconModulePhoneTypeStr(name.c_str(), language));
    nameless += phone == nullptr;
    known += phone != nullptr && phone->name == name;
    unknown += phone != nullptr && phone->name != name;
  }
  EXPECT_EQ(compared, kNames);

  EXPECT_GE(known, 5000);
  EXPECT_GE(unknown, 9000);
  EXPECT_GE(nameless, 400);
}

// All input there is

TEST(Reference, EveryTone) {
  int compared = 0;
  for (const int language : kLanguageIds) {
    for (int tone = -128; tone <= 127; ++tone) {
      const auto narrow = static_cast<signed char>(tone);
      EXPECT_EQ(ToneAdaptation(language, narrow), reference::ToneAdaptation(language, narrow))
          << language << ' ' << tone;
      ++compared;
    }
  }
  EXPECT_EQ(compared, kLanguageCount * 256);
}

TEST(Reference, EverySyllableCodeToPhones) {
  int compared = 0;
  int converted = 0;
  for (const int language : kLanguageIds) {
    for (int code = 0; code <= 0xffff && !HasFailure(); ++code) {
      const auto outcome =
          ExpectSame(kCode2Ph, language, static_cast<unsigned short>(code), StaleSyllable());
      converted += outcome.result == 0;
      ++compared;
    }
  }
  EXPECT_EQ(compared, kLanguageCount * 0x10000);
  EXPECT_EQ(converted, 11 * 4170 + 6190);  // English has no syllables
}

TEST(Reference, EverySyllableCodeToText) {
  int compared = 0;
  for (const int language : kLanguageIds) {
    for (int code = 0; code <= 0xffff && !HasFailure(); ++code) {
      const auto narrow = static_cast<unsigned short>(code);
      for (const bool with_tone : {false, true}) {
        EXPECT_EQ(code2py(language, narrow, with_tone),
                  reference::code2py(language, narrow, with_tone))
            << language << ' ' << code << ' ' << with_tone;
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, kLanguageCount * 0x10000 * 2);
}

TEST(Reference, EveryPhoneIdByteAndPair) {
  int compared = 0;
  for (const int language : kLanguageIds) {
    ExpectSame(kPh2Ph, language, Bytes(), kStaleSyllables);
    for (int byte = 0; byte <= 0xff && !HasFailure(); ++byte) {
      const auto first = static_cast<unsigned char>(byte);
      EXPECT_EQ(ph2tp(language, first), reference::ph2tp(language, first)) << byte;
      ExpectSame(kPh2Ph, language, Bytes{first}, kStaleSyllables);
      for (unsigned char digit = 0; digit <= 9; ++digit) {
        ExpectSame(kPh2Ph, language, Bytes{first, digit}, kStaleSyllables);
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, kLanguageCount * 256 * 10);
}

TEST(Reference, EveryPhoneIdAndFeature) {
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr int kMax = std::numeric_limits<int>::max();
  int compared = 0;
  for (const int language : kLanguageIds) {
    for (int id = -300; id <= 300; ++id) {
      const PhoneInfo* phone = reference::GetPhoneInfoById(language, id);
      ASSERT_EQ(GetPhoneInfoById(language, id), phone) << language << ' ' << id;
      for (const int index : {kMin, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 255, 256, kMax}) {
        EXPECT_EQ(GetPhoneFeature(phone, index), reference::GetPhoneFeature(phone, index))
            << language << ' ' << id << ' ' << index;
      }
      ++compared;
    }
    for (const int id : {kMin, kMin + 1, -65536, 256, 65536, kMax}) {
      EXPECT_EQ(GetPhoneInfoById(language, id), reference::GetPhoneInfoById(language, id))
          << language << ' ' << id;
    }
  }
  EXPECT_EQ(compared, kLanguageCount * 601);
}

}  // namespace
}  // namespace qeo::sp
