// The shared libraries loaded and unloaded a thousand times, as a program does with plug-ins: each
// time they are complete and right, and nothing of them stays. This test links neither.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstddef>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tests/sanitized.h"

namespace qeo {
namespace {

constexpr int kLoads = 1000;
constexpr int kWarmUp = 20;

class Loaded {
 public:
  explicit Loaded(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  ~Loaded() { EXPECT_TRUE(handle_ == nullptr || dlclose(handle_) == 0); }

  // The function of a mangled name; null when there is none.
  template <typename Function>
  Function* Find(const char* name) const {
    return handle_ == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(handle_, name));
  }

 private:
  void* handle_;
};

bool IsLoaded(const char* path) {
  void* handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

void UsePhoneme() {
  const Loaded library(PHONEME_LIBRARY);
  const auto to_codes = library.Find<decltype(sp::py2code)>(
      "_ZN3qeo2sp7py2codeEiRKNSt7__cxx1112basic_stringIcSt11char_"
      "traitsIcESaIcEEERSt6vectorItSaItEE");
  ASSERT_NE(to_codes, nullptr);
  std::vector<unsigned short> codes;
  EXPECT_EQ(to_codes(sp::LANGUAGE_CANTONESE, "nei5hou2", codes), 0);
  EXPECT_EQ(codes, (std::vector<unsigned short>{4035, 2382}));
}

// The tables are made at the first call, thus anew.
void UseNotation() {
  const Loaded library(NOTATION_LIBRARY);
  const auto normalize = library.Find<decltype(notation::NormalizePinyin)>(
      "_ZN3qeo8notation15NormalizePinyinESt17basic_string_viewIcSt11char_traitsIcEENS0_7RuleSetE");
  using FromCodes = notation::Spelling(const std::vector<unsigned short>&, notation::Spacing);
  const auto mark =
      library.Find<FromCodes>("_ZN3qeo8notation12MarkedPinyinERKSt6vectorItSaItEENS0_7SpacingE");
  const auto to_jyutping =
      library.Find<FromCodes>("_ZN3qeo8notation8JyutpingERKSt6vectorItSaItEENS0_7SpacingE");
  const auto to_pronunciation = library.Find<decltype(notation::ArpabetToPronunciation)>(
      "_ZN3qeo8notation22ArpabetToPronunciationESt17basic_string_viewIcSt11char_"
      "traitsIcEENS0_7RuleSetE");
  const auto analyze = library.Find<decltype(notation::Analyze)>(
      "_ZN3qeo8notation7AnalyzeEiSt17basic_string_viewIcSt11char_"
      "traitsIcEERKNS0_15AnalysisOptionsE");
  ASSERT_NE(normalize, nullptr);
  ASSERT_NE(mark, nullptr);
  ASSERT_NE(to_jyutping, nullptr);
  ASSERT_NE(to_pronunciation, nullptr);
  ASSERT_NE(analyze, nullptr);
  EXPECT_EQ(normalize("nǐ hǎo", notation::kPinyinRules).text, "ni3 hao3");
  EXPECT_EQ(mark({2243, 1173}, notation::Spacing::kWord).text, "nǐhǎo");
  EXPECT_EQ(to_jyutping({4035}, notation::Spacing::kWord).text, "nei5");
  EXPECT_EQ(to_pronunciation("HH AH0", notation::kArpabetRules).text, "hh ax 0");
  for (const auto& [language, text, suggestion] :
       {std::tuple(sp::LANGUAGE_MANDARIN, "hoa3", "hao3"),
        std::tuple(sp::LANGUAGE_CANTONESE, "juyt6", "jyut6")}) {
    EXPECT_EQ(analyze(language, text, {}).problems.at(0).suggestion, suggestion);
  }
}

// In bytes.
struct Memory {
  std::size_t heap;
  std::size_t resident;
};

Memory UsedMemory() {
  std::ifstream file("/proc/self/statm");
  std::size_t size = 0;
  std::size_t resident = 0;
  EXPECT_TRUE(file >> size >> resident);
  return {mallinfo2().uordblks, resident * 4096};
}

void UseAThousandTimes(const char* path, void (*use)()) {
  for (int i = 0; i < kWarmUp && !testing::Test::HasFailure(); ++i) use();
  [[maybe_unused]] const Memory before = UsedMemory();
  for (int i = 0; i < kLoads && !testing::Test::HasFailure(); ++i) {
    use();
    EXPECT_FALSE(IsLoaded(path));
  }
#ifndef TESTS_SANITIZED  // the address sanitizer keeps what was freed
  // A block left behind each time would be 32,000 bytes, a phone set 200 million.
  const Memory after = UsedMemory();
  EXPECT_LE(after.heap, before.heap + 16'384);
  EXPECT_LE(after.resident, before.resident + 1'048'576);
#endif
}

}  // namespace

TEST(Unloading, PhonemeAThousandTimes) { UseAThousandTimes(PHONEME_LIBRARY, UsePhoneme); }

TEST(Unloading, NotationAThousandTimes) {
  UseAThousandTimes(NOTATION_LIBRARY, UseNotation);
  EXPECT_FALSE(IsLoaded(PHONEME_LIBRARY));  // which it brought along
}

}  // namespace qeo
