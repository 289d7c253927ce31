// A static initialiser that converts, in a source that is linked before the library and in one
// that is linked after it: whoever comes first makes the phone sets. PHONEME_LIBRARY_FIRST says
// which of the two this is.

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/allocation_counter.h"

namespace qeo::sp {
namespace {

struct EarlyUse {
  EarlyUse() {
    codes.reserve(1);
    const std::size_t before = allocations::Count();
    result = py2code(LANGUAGE_CANTONESE, "zyut6", codes);
    allocation_count = allocations::Count() - before;
  }

  int result = 1;
  std::vector<unsigned short> codes;
  std::size_t allocation_count = 0;
};

const EarlyUse early;

}  // namespace

TEST(LinkOrder, StaticInitialiserConverts) {
  EXPECT_EQ(early.result, 0);
  EXPECT_EQ(early.codes, std::vector<unsigned short>{6186});
}

TEST(LinkOrder, WhoComesFirstMakesThePhoneSets) {
  constexpr std::size_t kFewestForPhoneSets = 1000;
  if (PHONEME_LIBRARY_FIRST) {
    EXPECT_EQ(early.allocation_count, 0U);
  } else {
    EXPECT_GE(early.allocation_count, kFewestForPhoneSets);
  }
}

}  // namespace qeo::sp
