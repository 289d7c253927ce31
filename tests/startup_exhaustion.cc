// Start-up when memory runs out, at every allocation before main: the process ends by
// std::terminate for std::bad_alloc, and never reaches main with half a registry. A static
// initialiser that catches the exception can ask again and finds the library whole.

#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"
#include "tests/allocation_counter.h"

namespace qeo::sp {
namespace {

// Exit status of a child in which an allocation has failed.
enum Ending : int {
  kRight = 10,  // main was reached, and the library answers
  kWrong,
  kBadAlloc,          // std::terminate for std::bad_alloc
  kOtherTermination,  // std::terminate for anything else
};

constexpr unsigned kSecondsToEnd = 60;            // a hang ends by a signal
constexpr std::size_t kFewestAllocations = 1000;  // as many names are kept

bool is_child = false;
bool is_first_user_to_fail = false;
std::size_t bad_allocs = 0;

bool HasPhones(int language, const std::string& text, const char* initial, const char* final) {
  std::vector<SyllableInfo> syllables;
  if (py2ph(language, text, syllables) != 0 || syllables.size() != 1) return false;
  const std::vector<const PhoneInfo*> phones = {GetPhoneInfoByDescription(language, initial),
                                                GetPhoneInfoByDescription(language, final)};
  SyllableInfo expanded;
  return code2ph(language, static_cast<unsigned short>(syllables[0].code), expanded) == 0 &&
         syllables[0].phones == phones && expanded.phones == phones;
}

// Asks everything that is made at start-up.
bool AnswersRight() {
  std::vector<unsigned short> codes;
  std::vector<SyllableInfo> syllables;
  return HasPhones(LANGUAGE_MANDARIN, "zhuang1", "zh", "uang") &&
         HasPhones(LANGUAGE_CANTONESE, "zyut6", "z", "yut") &&
         py2code(LANGUAGE_MANDARIN, "zhuang1lve4", codes) == 0 &&
         code2py(LANGUAGE_MANDARIN, codes[0], true) == "zhuang1" &&
         py2code(LANGUAGE_CANTONESE, "nei5hou2", codes) == 0 &&
         codes == std::vector<unsigned short>{4035, 2382} &&
         pr2ph(LANGUAGE_AMERICAN_ENGLISH, "hh ax 0, l ow 1", syllables) == 0 &&
         syllables[1].phones[1] == GetPhoneInfoByDescription(LANGUAGE_AMERICAN_ENGLISH, "ow");
}

[[noreturn]] void EndChild() {
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    _exit(kBadAlloc);
  } catch (...) {
    _exit(kOtherTermination);
  }
  _exit(kOtherTermination);
}

int ExitStatus(pid_t child) {
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Forks a child in which this allocation fails, and goes on when the child has ended as it must: by
// std::terminate, or in main when the library got round the failure.
bool FailInChild() {
  allocations::AskBeforeEach(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    is_child = true;
    alarm(kSecondsToEnd);
    std::set_terminate(EndChild);
    return false;
  }
  const int ending = ExitStatus(child);
  if (ending != kBadAlloc && ending != kRight) {
    std::fprintf(stderr, "allocation %zu: the process ended with %d\n", bad_allocs + 1, ending);
    _exit(EXIT_FAILURE);
  }
  if (ending == kBadAlloc) ++bad_allocs;
  allocations::AskBeforeEach(FailInChild);
  return true;
}

// Fails early allocations one by one, later ones here and there: each makes the library begin anew.
// Returns how many failed.
std::size_t FailFirstUses() {
  std::vector<unsigned short> codes;
  codes.reserve(1);
  std::size_t failures = 0;
  for (std::size_t allocation = 1;; allocation += 1 + allocation / 50) {
    allocations::FailAt(allocation);
    try {
      py2code(LANGUAGE_MANDARIN, "a1", codes);
    } catch (const std::bad_alloc&) {
      ++failures;
    }
    if (!allocations::EndFailing()) return failures;
  }
}

// The first user of a library that is linked statically.
struct FirstUser {
  FirstUser() {
    if (!is_first_user_to_fail) return;
    const std::size_t failures = FailFirstUses();
#ifdef PHONEME_STATIC_DEFINE
    _exit(failures > 0 && AnswersRight() ? EXIT_SUCCESS : EXIT_FAILURE);
#else
    _exit(failures == 0 && AnswersRight() ? EXIT_SUCCESS : EXIT_FAILURE);  // it is complete already
#endif
  }
};

[[gnu::init_priority(101)]] const FirstUser first_user;

// Before all initialisers, those of shared libraries too.
void Begin() {
  const pid_t child = fork();
  if (child == 0) {
    alarm(kSecondsToEnd);
    is_first_user_to_fail = true;
    return;
  }
  if (ExitStatus(child) != EXIT_SUCCESS) {
    std::fputs("the first user of the library cannot ask again\n", stderr);
    _exit(EXIT_FAILURE);
  }
  allocations::AskBeforeEach(FailInChild);
}

[[gnu::section(".preinit_array"), gnu::used]] void (*const begin)() = Begin;

}  // namespace
}  // namespace qeo::sp

int main() {
  using namespace qeo::sp;
  qeo::allocations::AskBeforeEach(nullptr);
  if (is_child) return AnswersRight() ? kRight : kWrong;
  std::printf("%zu allocations failed before main\n", bad_allocs);
  return bad_allocs >= kFewestAllocations && AnswersRight() ? EXIT_SUCCESS : EXIT_FAILURE;
}
