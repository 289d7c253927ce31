#ifndef PHONEME_TESTS_LOCALES_H_
#define PHONEME_TESTS_LOCALES_H_

// Process locales under which other bytes are letters, capitals, digits or white space, or where
// "I" has another lower case; and the making of those that a machine lacks.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>
#include <system_error>

namespace qeo::sp {

// What localedef makes a locale of.
struct LocaleSource {
  const char* name;
  const char* language;
  const char* charset;
};

inline constexpr LocaleSource kLocaleSources[] = {
    {"tr_TR.UTF-8", "tr_TR", "UTF-8"},
    {"tr_TR.ISO-8859-9", "tr_TR", "ISO-8859-9"},
    {"de_DE.ISO-8859-1", "de_DE", "ISO-8859-1"},
    {"zh_CN.GBK", "zh_CN", "GBK"},
};

// Digits written one by one, with a dot between them.
class GroupedDigits : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\1"; }
};

// Puts the process back into the classic locale of C and C++.
class Locales : public testing::Test {
 protected:
  void TearDown() override {
    unsetenv("LC_ALL");
    std::locale::global(std::locale::classic());
  }
};

// What a program does at its start to follow its environment, here LC_ALL. False when the machine
// does not have the locale.
inline bool StartIn(const std::string& locale) {
  EXPECT_EQ(setenv("LC_ALL", locale.c_str(), 1), 0);
  const char* started = std::setlocale(LC_ALL, "");
  return started != nullptr && started == locale;
}

// A directory of locales made for one test. While it exists the C library looks there alone.
class MadeLocales {
 public:
  MadeLocales() : directory_(testing::TempDir() + "phoneme_locales_XXXXXX") {
    EXPECT_NE(mkdtemp(directory_.data()), nullptr);
    EXPECT_EQ(setenv("LOCPATH", directory_.c_str(), 1), 0);
  }
  MadeLocales(const MadeLocales&) = delete;
  MadeLocales& operator=(const MadeLocales&) = delete;
  ~MadeLocales() {
    unsetenv("LOCPATH");
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }

  // False when localedef is missing: in Debian it is in the package locales.
  bool Make(const LocaleSource& source) const {
    const std::string command = std::string("localedef -i ") + source.language + " -f " +
                                source.charset + " --no-archive '" + directory_ + "/" +
                                source.name + "' >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
  }

 private:
  std::string directory_;
};

// Calls `check` in each of the locales, made here.
template <typename Check>
void InMadeLocales(const Check& check) {
  const MadeLocales made;
  for (const LocaleSource& source : kLocaleSources) {
    SCOPED_TRACE(source.name);
    ASSERT_TRUE(made.Make(source)) << "localedef cannot make the locale";
    ASSERT_TRUE(StartIn(source.name));
    check();
  }
}

}  // namespace qeo::sp

#endif  // PHONEME_TESTS_LOCALES_H_
