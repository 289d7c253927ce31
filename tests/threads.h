#ifndef PHONEME_TESTS_THREADS_H_
#define PHONEME_TESTS_THREADS_H_

// The same question asked from many threads at once.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace qeo::threads {

// Asks from eight threads, `rounds` times and once, and expects the answers of a single thread.
// The threads' first answers should be the first of the process, with nothing prepared for them.
inline void ExpectOneAnswer(int rounds, std::string (*ask)()) {
  constexpr int kThreads = 8;
  std::vector<std::string> first_answers(kThreads);
  std::atomic<int> waiting = kThreads;
  std::atomic<int> equal_rounds = 0;
  const auto ask_often = [&](std::string& first_answer) {
    --waiting;
    while (waiting > 0) std::this_thread::yield();  // all begin together
    first_answer = ask();
    for (int round = 0; round < rounds; ++round) {
      if (ask() == first_answer) ++equal_rounds;
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (std::string& answer : first_answers) threads.emplace_back(ask_often, std::ref(answer));
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(equal_rounds, kThreads * rounds);

  const std::string alone = ask();
  EXPECT_GT(alone.size(), 10'000U);
  for (const std::string& answer : first_answers) EXPECT_EQ(answer, alone);
}

}  // namespace qeo::threads

#endif  // PHONEME_TESTS_THREADS_H_
