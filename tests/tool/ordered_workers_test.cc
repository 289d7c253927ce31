// Tasks on real threads; the thread sanitizer runs these too.

#include "tools/io/ordered_workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

namespace qeo::tool {
namespace {

using Workers = OrderedWorkers<int>;

constexpr std::size_t kThreadCounts[] = {1, 2, 3, 8};

// What becomes of the numbers 0 to `count` - 1, in the order in which it comes back.
std::vector<int> Results(std::size_t thread_count, const Workers::Work& work, int count) {
  Workers workers(std::vector<Workers::Work>(thread_count, work));
  std::vector<int> results;
  for (int number = 0; number < count; ++number) {
    while (workers.IsFull()) results.push_back(*workers.TakeOldest());
    workers.Give(std::make_unique<int>(number));
  }
  while (!workers.IsEmpty()) results.push_back(*workers.TakeOldest());
  return results;
}

TEST(Workers, ResultsComeBackInOrder) {
  constexpr int kCount = 5000;
  for (const std::size_t thread_count : kThreadCounts) {
    const std::vector<int> results = Results(
        thread_count, [](int& number) { number = 2 * number + 1; }, kCount);
    ASSERT_EQ(results.size(), std::size_t{kCount}) << thread_count;
    for (int i = 0; i < kCount; ++i) {
      ASSERT_EQ(results[static_cast<std::size_t>(i)], 2 * i + 1) << thread_count;
    }
  }
}

TEST(Workers, EachTaskIsDoneOnce) {
  for (const std::size_t thread_count : kThreadCounts) {
    std::atomic<int> done = 0;
    Results(
        thread_count, [&done](int&) { ++done; }, 1000);
    EXPECT_EQ(done, 1000) << thread_count;
  }
}

TEST(Workers, WhatATaskThrowsIsThrownToWhoTakesIt) {
  const Workers::Work work = [](int& number) {
    if (number == 700) throw std::runtime_error("700");
  };
  for (const std::size_t thread_count : kThreadCounts) {
    EXPECT_THROW(Results(thread_count, work, 1000), std::runtime_error) << thread_count;
    EXPECT_EQ(Results(thread_count, work, 700).size(), 700U) << thread_count;
  }
}

TEST(Workers, TheOthersAreThereAfterATaskHasThrown) {
  for (const std::size_t thread_count : {2U, 3U, 8U}) {
    Workers workers(std::vector<Workers::Work>(thread_count, [](int& number) {
      if (number == 1) throw std::bad_alloc();
    }));
    for (int number = 0; number < 3; ++number) workers.Give(std::make_unique<int>(number));
    EXPECT_EQ(*workers.TakeOldest(), 0);
    EXPECT_THROW(workers.TakeOldest(), std::bad_alloc);
    EXPECT_EQ(*workers.TakeOldest(), 2);
    EXPECT_TRUE(workers.IsEmpty());
  }
}

TEST(Workers, AreFullWithTwoTasksEach) {
  for (const std::size_t thread_count : kThreadCounts) {
    Workers workers(std::vector<Workers::Work>(thread_count, [](int&) {}));
    std::size_t given = 0;
    while (!workers.IsFull()) {
      workers.Give(std::make_unique<int>(0));
      ++given;
    }
    EXPECT_EQ(given, 2 * thread_count);
  }
}

TEST(Workers, EndWithTasksLeft) {
  for (const std::size_t thread_count : kThreadCounts) {
    Workers workers(std::vector<Workers::Work>(thread_count, [](int&) {}));
    while (!workers.IsFull()) workers.Give(std::make_unique<int>(0));
  }
}

}  // namespace
}  // namespace qeo::tool
