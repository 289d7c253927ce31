// Threads that still use the library when main has returned: conversions until the phone sets are
// freed, and from then on the functions that need none.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
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

bool ConvertsRight() {
  std::vector<unsigned short> codes;
  std::vector<SyllableInfo> syllables;
  std::vector<std::string> pieces;
  return py2code(LANGUAGE_MANDARIN, "ni3hao3", codes) == 0 &&
         codes == std::vector<unsigned short>{2243, 1173} &&
         py2ph(LANGUAGE_CANTONESE, "nei5hou2", syllables) == 0 &&
         PhoneNames(syllables.at(1)) == "h ou" &&
         pr2ph(LANGUAGE_AMERICAN_ENGLISH, "hh ax 0, l ow 1", syllables) == 0 &&
         PhoneNames(syllables.at(1)) == "l ow" &&
         pyw2py(LANGUAGE_MANDARIN, "fangan", pieces, true) == 0 && pieces.at(0) == "gan" &&
         code2py(LANGUAGE_CANTONESE, 6186, true) == "zyut6";
}

// What destructors may call at any time: it asks no phone set.
bool AnswersWithoutPhoneSets(const PhoneInfo* phone) {
  return ph2tp(LANGUAGE_MANDARIN, 9) == 1 && GetPhoneFeature(phone, 0) == '+' &&
         std::string(phone->name) == "aa" && LexiconEnPhoneId("zh") == 90 &&
         LexiconEnPhoneTypeStr("aa") != 0 &&
         LexiconModulePhoneTypeStr("ueng", LANGUAGE_MANDARIN) == 2 &&
         LanguageOfName("zh-HK") == LANGUAGE_CANTONESE && Languages().front().name == "mandarin";
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

// Constructed before the phone sets where they stand in the same program, and so destroyed when
// they are freed already.
#if defined(__GNUC__)
[[gnu::init_priority(101)]]
#endif
AfterThePhoneSets after_the_phone_sets;

// It used the library when it was constructed, so the phone sets outlive it.
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
