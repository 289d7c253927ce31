// Every public function, but for those that fill tables, from eight threads at once, each with
// output containers of its own; all must answer what one thread alone is answered.

#include "threads.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"
#include "xstr/xstr.h"

namespace qeo::sp {
namespace {

constexpr int kLanguages[] = {10000, 10001, 20000, 20005, 30000, -1};

void AskAboutText(int language, std::ostream& answers) {
  std::vector<SyllableInfo> syllables;
  std::vector<unsigned short> codes;
  std::vector<std::string> pieces;
  for (const char* text : {"ni3hao3", "nihao", "Xi'an", "nei5hou2", "fangan", "nihao3", "hello",
                           "ni3 xyz3", "zhuangzhuang", "n-i3", ""}) {
    answers << py2ph(language, text, syllables) << testing::PrintToString(Spell(syllables))
            << py2code(language, text, codes) << testing::PrintToString(codes);
    for (const bool backward : {false, true}) {
      answers << pyw2py(language, text, pieces, backward) << testing::PrintToString(pieces);
    }
  }
}

void AskAboutPronunciations(int language, std::ostream& answers) {
  std::vector<SyllableInfo> syllables;
  for (const char* text :
       {"n i 3, h ao 3", "hh ah 0, l ow 1", "n ei 5", "aa 1, bb", "zz 1", "", "sil 0", "ng 1"}) {
    std::vector<unsigned char> phone_ids = {20, 3};
    answers << pr2ph(language, text, syllables) << testing::PrintToString(Spell(syllables))
            << pr2ph(language, text, phone_ids) << testing::PrintToString(phone_ids)
            << ph2ph(language, phone_ids, syllables) << testing::PrintToString(Spell(syllables));
  }
}

void AskAboutCodes(int language, std::ostream& answers) {
  for (int code = 0; code < 7000; code += 37) {
    const auto narrow = static_cast<unsigned short>(code);
    SyllableInfo syllable;
    answers << code2ph(language, narrow, syllable) << testing::PrintToString(Spell(syllable))
            << code2py(language, narrow, true) << code2py(language, narrow, false);
  }
}

void AskAboutPhones(int language, std::ostream& answers) {
  for (int value = 0; value < 128; ++value) {
    const PhoneInfo* phone = GetPhoneInfoById(language, value);
    answers << phone << ph2tp(language, static_cast<unsigned char>(value))
            << static_cast<int>(ToneAdaptation(language, static_cast<signed char>(value)))
            << static_cast<int>(GetPhoneFeature(phone, value % 16));
  }
  for (const char* name : {"sil", "iou", "aa", "ng", "E", "nope", ""}) {
    answers << GetPhoneInfoByDescription(language, name) << LexiconEnPhoneTypeStr(name)
            << LexiconEnPhoneId(name) << LexiconModulePhoneTypeStr(name, language);
  }
}

void AskAboutStrings(std::ostream& answers) {
  for (const char* text : {"", " n  i 3 ", "a,,b", "ni3 hao3 ma5"}) {
    for (const char* separator : {" ", ","}) {
      answers << xstr::trim(text, separator, true)
              << testing::PrintToString(xstr::split(text, separator, 2));
    }
  }
  for (int value = -99; value < 99; value += 7) {
    answers << xstr::to_u8s(value, 10) << xstr::to_u8s(value, 16);
  }
}

std::string AskEverything() {
  std::ostringstream answers;
  AskAboutStrings(answers);
  for (const int language : kLanguages) {
    AskAboutText(language, answers);
    AskAboutPronunciations(language, answers);
    AskAboutCodes(language, answers);
    AskAboutPhones(language, answers);
  }
  return answers.str();
}

}  // namespace

TEST(Threads, EveryFunctionFromEightThreadsAtOnce) { threads::ExpectOneAnswer(100, AskEverything); }

}  // namespace qeo::sp
