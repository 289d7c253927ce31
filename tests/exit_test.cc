// Threads that still use the library when main has returned: conversions until the phone sets are
// freed, and from then on the functions that need none.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "phoneme/phoneme.h"
#include "testing.h"

namespace qeo::sp {
namespace {

constexpr int kRounds = 200;  // that a thread completes when exit has begun

[[noreturn]] void Fail(const char* what) {
  std::fputs(what, stderr);
  std::_Exit(EXIT_FAILURE);
}

// Every function that asks a phone set.
bool ConvertsRight() {
  std::vector<unsigned short> codes;
  std::vector<unsigned char> phone_ids;
  std::vector<SyllableInfo> syllables;
  std::vector<std::string> pieces;
  SyllableInfo syllable;
  return py2code(LANGUAGE_MANDARIN, "ni3hao3", codes) == 0 &&
         codes == std::vector<unsigned short>{2243, 1173} &&
         py2ph(LANGUAGE_CANTONESE, "nei5hou2", syllables) == 0 &&
         PhoneNames(syllables.at(1)) == "h ou" &&
         pr2ph(LANGUAGE_AMERICAN_ENGLISH, "hh ax 0, l ow 1", syllables) == 0 &&
         PhoneNames(syllables.at(1)) == "l ow" &&
         pr2ph(LANGUAGE_MANDARIN, "n i 3", phone_ids) == 0 &&
         phone_ids == std::vector<unsigned char>{24, 35, 3} &&
         ph2ph(LANGUAGE_MANDARIN, phone_ids, syllables) == 0 &&
         PhoneNames(syllables.at(0)) == "n i" && code2ph(LANGUAGE_MANDARIN, 1173, syllable) == 0 &&
         PhoneNames(syllable) == "h ao" && pyw2py(LANGUAGE_MANDARIN, "fangan", pieces, true) == 0 &&
         pieces.at(0) == "gan" && code2py(LANGUAGE_CANTONESE, 6186, true) == "zyut6" &&
         ToneAdaptation(LANGUAGE_CANTONESE, 8) == 1 &&
         std::string(GetPhoneInfoById(LANGUAGE_AMERICAN_ENGLISH, 40)->name) == "zh" &&
         GetPhoneInfoByDescription(LANGUAGE_CANTONESE, "ng")->type == PHONE_TYPE_INITIAL;
}

// What destructors may call at any time: it asks no phone set.
bool AnswersWithoutPhoneSets(const PhoneInfo* phone) {
  return ph2tp(LANGUAGE_MANDARIN, 9) == 1 && GetPhoneFeature(phone, 0) == '+' &&
         std::string(phone->name) == "aa" && LexiconEnPhoneId("zh") == 90 &&
         LexiconEnPhoneTypeStr("aa") != 0 &&
         LexiconModulePhoneTypeStr("ueng", LANGUAGE_MANDARIN) == 2 &&
         LanguageOfName("zh-HK") == LANGUAGE_CANTONESE && Languages().front().name == "mandarin";
}

// Not while another thread converts: these three write the rows' phones, as they are, once more.
bool FillsTables() {
  std::map<int, SpMapping> table;
  InitializeMandarinSet(table);
  InitializeCantoneseSet(table);
  InitializeAmericanSet(table);
  return table.at(LANGUAGE_MANDARIN).pinyin_map.at("hao")->id == 117 &&
         table.at(LANGUAGE_CANTONESE).pinyin_count == 619 &&
         table.at(LANGUAGE_AMERICAN_ENGLISH).phone_count == 41;
}

// Runs `ask` in a thread from its construction to its destruction and some rounds into that.
class Asker {
 public:
  explicit Asker(bool (*ask)()) : ask_(ask) {
    if (!ask_()) Fail("a wrong answer before main\n");
    thread_ = std::thread(&Asker::Run, this);
  }
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;
  ~Asker() {
    const int begun = rounds_;
    while (rounds_ < begun + kRounds) std::this_thread::yield();
    ends_ = true;
    thread_.join();
  }

  int rounds() const { return rounds_; }

 private:
  void Run() {
    while (!ends_) {
      if (!ask_()) Fail("a thread gets a wrong answer\n");
      ++rounds_;
    }
  }

  bool (*ask_)();
  std::atomic<int> rounds_ = 0;
  std::atomic<bool> ends_ = false;
  std::thread thread_;
};

const PhoneInfo* KeptPhone() {
  static const PhoneInfo* const phone = GetPhoneInfoByDescription(LANGUAGE_AMERICAN_ENGLISH, "aa");
  return phone;
}

bool AsksWithoutPhoneSets() { return AnswersWithoutPhoneSets(KeptPhone()); }

struct AfterThePhoneSets {
  AfterThePhoneSets() = default;
  AfterThePhoneSets(const AfterThePhoneSets&) = delete;
  AfterThePhoneSets& operator=(const AfterThePhoneSets&) = delete;
  ~AfterThePhoneSets() {
    if (phone == nullptr) return;  // the test did not run
    if (!AnswersWithoutPhoneSets(phone)) Fail("a wrong answer at the end\n");
  }

  const PhoneInfo* phone = nullptr;
};

// Constructed before the phone sets where they are in the same program, and so destroyed when
// they are freed already.
#if defined(__GNUC__)
[[gnu::init_priority(101)]]
#endif
AfterThePhoneSets after_the_phone_sets;

// Both used the library when they were constructed, so the phone sets outlive them. The first is
// destroyed last, when the thread of the other has ended.
const struct Filler {
  Filler() { Fill(); }
  Filler(const Filler&) = delete;
  Filler& operator=(const Filler&) = delete;
  ~Filler() { Fill(); }

  static void Fill() {
    if (!FillsTables()) Fail("a table is filled wrong\n");
  }
} filling;
const Asker converting(ConvertsRight);

}  // namespace

// The checks that matter follow when this process exits.
TEST(ThreadsAtExit, AreRunningWhenMainReturns) {
  after_the_phone_sets.phone = KeptPhone();
  static const Asker asking(AsksWithoutPhoneSets);
  while (converting.rounds() == 0 || asking.rounds() == 0) std::this_thread::yield();
  std::thread([] {
    while (AsksWithoutPhoneSets()) continue;  // until the process ends
    Fail("a thread gets a wrong answer while the process ends\n");
  }).detach();
}

}  // namespace qeo::sp
