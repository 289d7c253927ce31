#ifndef PHONEME_TESTS_EXHAUSTION_H_
#define PHONEME_TESTS_EXHAUSTION_H_

// Memory that runs out at every place of a call where it can: the n-th allocation fails, for n = 1,
// 2, ... until the call needs no more. Link allocation_counter.cc with it.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include "tests/allocation_counter.h"

namespace qeo::exhaustion {

// What became of a call.
enum class Outcome { kDone, kOutOfMemory, kOtherException };

// Calls with an allocation that fails. `has_failed` receives whether the call came that far.
template <typename Call>
Outcome CallWithout(std::size_t allocation, allocations::Failing failing, const Call& call,
                    bool& has_failed) {
  Outcome outcome = Outcome::kDone;
  allocations::FailAt(allocation, failing);
  try {
    call();
    has_failed = allocations::EndFailing();
  } catch (const std::bad_alloc&) {
    has_failed = allocations::EndFailing();
    outcome = Outcome::kOutOfMemory;
  } catch (...) {
    has_failed = allocations::EndFailing();
    outcome = Outcome::kOtherException;
  }
  return outcome;
}

// A call that fills an output, which is written as text while there is memory.
template <typename Output, typename Fill, typename Show, typename Empty>
class Exhaustion {
 public:
  Exhaustion(const Output& stale, const Fill& fill, const Show& show, const Empty& empty)
      : stale_(stale), fill_(fill), show_(show), empty_(empty) {
    Output output = stale_;
    const int result = fill_(output);
    from_stale_ = Told(result, output);
    empty_(output);
    const int second_result = fill_(output);
    from_empty_ = Told(second_result, output);
  }

  // Returns how many allocations of the call were made to fail.
  std::size_t Run() const {
    for (std::size_t n = 1;; ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n));
      bool has_failed = false;
      for (const allocations::Failing failing :
           {allocations::Failing::kOne, allocations::Failing::kFromThenOn}) {
        has_failed = TryWithout(n, failing) || has_failed;
      }
      if (!has_failed || testing::Test::HasFailure()) return n - 1;
    }
  }

 private:
  std::string Told(int result, const Output& output) const {
    return std::to_string(result) + ": " + show_(output);
  }

  bool TryWithout(std::size_t allocation, allocations::Failing failing) const {
    const std::ptrdiff_t live = allocations::CountLive();
    bool has_failed = false;
    {
      Output destroyed = stale_;
      CallWithout(
          allocation, failing, [&] { fill_(destroyed); }, has_failed);
    }
    EXPECT_EQ(allocations::CountLive(), live) << "blocks are left";
    ExpectReusable(allocation, failing);
    EXPECT_EQ(allocations::CountLive(), live) << "blocks are left after a second call";
    return has_failed;
  }

  void ExpectReusable(std::size_t allocation, allocations::Failing failing) const {
    Output output = stale_;
    int result = 0;
    bool has_failed = false;
    const Outcome outcome = CallWithout(
        allocation, failing, [&] { result = fill_(output); }, has_failed);
    EXPECT_NE(outcome, Outcome::kOtherException);
    if (outcome == Outcome::kDone) {  // with a failure that did not stop the call, or without any
      EXPECT_EQ(Told(result, output), from_stale_);
    } else {
      EXPECT_TRUE(has_failed) << "std::bad_alloc, and no allocation has failed";
    }
    empty_(output);
    result = fill_(output);
    EXPECT_EQ(Told(result, output), from_empty_);
  }

  const Output& stale_;
  const Fill& fill_;
  const Show& show_;
  const Empty& empty_;
  std::string from_stale_;
  std::string from_empty_;
};

// What `tell` returns in a child process.
template <typename Tell>
std::string TellInChild(const Tell& tell) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    const std::string text = tell();
    const ssize_t written = write(ends[1], text.data(), text.size());
    _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  close(ends[1]);
  std::string text;
  std::array<char, 4096> block{};
  for (ssize_t size = 0; (size = read(ends[0], block.data(), block.size())) > 0;) {
    text.append(block.data(), static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    text += "; the process ended with status " + std::to_string(status);
  }
  return text;
}

// The first call of a process: what it makes once and keeps, it makes whole or not at all. `call`
// returns a value, which `show` writes as text; this process has not called it yet.
template <typename Call, typename Show>
class FirstCall {
 public:
  FirstCall(const Call& call, const Show& show) : call_(call), show_(show) {}

  // `made_once`: whether the first call allocates "something" more than the second, or "nothing".
  void Run(const std::string& made_once) const {
    EXPECT_EQ(TellInChild([this] { return WhatIsMadeOnce(); }), made_once);
    const std::string undisturbed = TellInChild([this] { return KeepAndAnswer(); });
    const std::string exhausted = TellInChild([this] { return Exhaust(); });
    EXPECT_EQ(exhausted, undisturbed);
  }

 private:
  std::size_t CountAllocations() const {
    const std::size_t before = allocations::Count();
    call_();
    return allocations::Count() - before;
  }

  std::string WhatIsMadeOnce() const {
    const std::size_t first = CountAllocations();
    return first > CountAllocations() ? "something" : "nothing";
  }

  // Blocks that are live after the first call and were not before, and the second answer.
  std::string KeepAndAnswer() const {
    const std::ptrdiff_t before = allocations::CountLive();
    call_();
    const std::ptrdiff_t kept = allocations::CountLive() - before;
    return Told(kept);
  }

  std::string Exhaust() const {
    const std::ptrdiff_t before = allocations::CountLive();
    bool has_failed = true;
    for (std::size_t n = 1; has_failed; ++n) {
      const Outcome outcome = CallWithout(n, allocations::Failing::kOne, call_, has_failed);
      if (outcome == Outcome::kOtherException) return "an exception other than std::bad_alloc";
    }
    const std::ptrdiff_t kept = allocations::CountLive() - before;
    return Told(kept);
  }

  std::string Told(std::ptrdiff_t kept) const {
    return std::to_string(kept) + " blocks kept; " + show_(call_());
  }

  const Call& call_;
  const Show& show_;
};

}  // namespace qeo::exhaustion

#endif  // PHONEME_TESTS_EXHAUSTION_H_
