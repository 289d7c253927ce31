#include "tools/io/progress.h"

#include <gtest/gtest.h>

namespace qeo::tool {
namespace {

TEST(ProgressLine, OfAFile) {
  EXPECT_EQ(ProgressLine({25, 100, 300, 3}),
            "[#####               ] 25 %, 300 lines, 100 lines/s, 0:09 left");
  EXPECT_EQ(ProgressLine({1, 1000, 1, 0.5}),
            "[                    ] 0 %, 1 lines, 2 lines/s, 8:20 left");
  EXPECT_EQ(ProgressLine({1, 7447, 2, 0.5}),
            "[                    ] 0 %, 2 lines, 4 lines/s, 1:02:03 left");
  EXPECT_EQ(ProgressLine({99, 100, 10, 100}),
            "[################### ] 99 %, 10 lines, 0 lines/s, 0:01 left");
  EXPECT_EQ(ProgressLine({100, 100, 1234567, 1}),
            "[####################] 100 %, 1234567 lines, 1234567 lines/s, 0:00 left");
}

TEST(ProgressLine, OfAFileThatHasGrown) {
  EXPECT_EQ(ProgressLine({150, 100, 30, 3}),
            "[####################] 100 %, 30 lines, 10 lines/s, 0:00 left");
}

TEST(ProgressLine, OfAPipe) { EXPECT_EQ(ProgressLine({25, 0, 300, 2}), "300 lines, 150 lines/s"); }

TEST(ProgressLine, BeforeTheFirstByte) {
  EXPECT_EQ(ProgressLine({0, 100, 0, 2}), "0 lines, 0 lines/s");
}

}  // namespace
}  // namespace qeo::tool
