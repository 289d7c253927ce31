// The library before and after main: conversions in the constructors and destructors of this
// source's own namespace-scope objects.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

// What every kind of function answers at the moment.
struct Answers {
  SpelledList py2ph_result;
  std::vector<unsigned short> py2code_result;
  std::vector<std::string> pyw2py_result;
  Spelled code2ph_result;
  std::string code2py_result;
  std::vector<unsigned char> pr2ph_result;
  SpelledList ph2ph_result;
  std::string phone_name;
  const PhoneInfo* phone;
  int lexicon_class;
};

bool operator==(const Answers& a, const Answers& b) {
  return a.py2ph_result == b.py2ph_result && a.py2code_result == b.py2code_result &&
         a.pyw2py_result == b.pyw2py_result && a.code2ph_result == b.code2ph_result &&
         a.code2py_result == b.code2py_result && a.pr2ph_result == b.pr2ph_result &&
         a.ph2ph_result == b.ph2ph_result && a.phone_name == b.phone_name && a.phone == b.phone &&
         a.lexicon_class == b.lexicon_class;
}

Answers Ask() {
  Answers answers = {};
  std::vector<SyllableInfo> syllables;
  py2ph(LANGUAGE_MANDARIN, "ni3hao3", syllables);
  answers.py2ph_result = Spell(syllables);
  py2code(LANGUAGE_CANTONESE, "nei5hou2", answers.py2code_result);
  pyw2py(LANGUAGE_MANDARIN, "fangan", answers.pyw2py_result, true);
  SyllableInfo syllable;
  code2ph(LANGUAGE_MANDARIN, 1433, syllable);
  answers.code2ph_result = Spell(syllable);
  answers.code2py_result = code2py(LANGUAGE_CANTONESE, 6186, true);
  pr2ph(LANGUAGE_AMERICAN_ENGLISH, "hh ah 0, l ow 1", answers.pr2ph_result);
  ph2ph(LANGUAGE_AMERICAN_ENGLISH, answers.pr2ph_result, syllables);
  answers.ph2ph_result = Spell(syllables);
  answers.phone = GetPhoneInfoByDescription(LANGUAGE_MANDARIN, "iou");
  answers.phone_name = GetPhoneInfoById(LANGUAGE_CANTONESE, 94)->name;
  answers.lexicon_class = LexiconModulePhoneTypeStr("ueng", LANGUAGE_MANDARIN);
  return answers;
}

// Asks when it is constructed and again when it is destroyed: an object that used the library in
// its constructor may use it for as long as it lives.
struct AtNamespaceScope {
  AtNamespaceScope() : answers(Ask()) {}
  AtNamespaceScope(const AtNamespaceScope&) = delete;
  AtNamespaceScope& operator=(const AtNamespaceScope&) = delete;
  ~AtNamespaceScope() {
    if (Ask() == answers) return;
    std::fputs("after main the library answers otherwise than before it\n", stderr);
    std::_Exit(EXIT_FAILURE);
  }

  Answers answers;
};

// Constructed before everything that has no priority, the library's own objects included.
#if defined(__GNUC__)
[[gnu::init_priority(101)]]
#endif
const AtNamespaceScope first_of_all;

const AtNamespaceScope in_turn;

void ExpectExactAnswers(const Answers& answers) {
  EXPECT_EQ(answers.py2ph_result,
            (SpelledList{{10000, "n i", 2243, 3, 0}, {10000, "h ao", 1173, 3, 0}}));
  EXPECT_EQ(answers.py2code_result, (std::vector<unsigned short>{4035, 2382}));
  EXPECT_EQ(answers.pyw2py_result, (std::vector<std::string>{"gan", "fan"}));
  EXPECT_EQ(answers.code2ph_result, (Spelled{10000, "j iou", 1433, 3, 0}));
  EXPECT_EQ(answers.code2py_result, "zyut6");
  EXPECT_EQ(answers.pr2ph_result, (std::vector<unsigned char>{33, 13, 0, 36, 23, 1}));
  EXPECT_EQ(answers.ph2ph_result,
            (SpelledList{{20000, "hh ah", 0, 0, 0}, {20000, "l ow", 0, 0, 1}}));
  EXPECT_EQ(answers.phone_name, "uut");
  EXPECT_EQ(answers.phone, GetPhoneInfoById(LANGUAGE_MANDARIN, 35));
  EXPECT_EQ(answers.lexicon_class, 2);
}

}  // namespace

TEST(StartUp, FirstStaticInitialiser) { ExpectExactAnswers(first_of_all.answers); }

TEST(StartUp, StaticInitialiserOfAnotherSource) { ExpectExactAnswers(in_turn.answers); }

TEST(StartUp, AfterMainBegins) { ExpectExactAnswers(Ask()); }

}  // namespace qeo::sp
