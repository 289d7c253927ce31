// The words that the fuzzing engine puts into inputs, from the library's tables.
//
//   make_dictionary NAME         prints the dictionary
//   make_dictionary NAME FILE    fails when FILE is not that dictionary

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace {

using namespace qeo;
using Words = std::vector<std::string>;

void Append(Words& words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
}

Words Spellings(int language) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  Words words;
  for (std::size_t row = 0; row < set.pinyin_count; ++row) {
    words.emplace_back(set.pinyin_list[row].pinyin);
  }
  return words;
}

Words PhoneNames(int language) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  Words words;
  for (std::size_t id = 0; id < set.phone_count; ++id) {
    words.emplace_back(set.phone_list[id].name);
  }
  return words;
}

Words UpperCase(Words words) {
  for (std::string& word : words) {
    for (char& c : word) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return words;
}

Words Chinese() {
  Words words = Spellings(sp::LANGUAGE_MANDARIN);
  Append(words, Spellings(sp::LANGUAGE_CANTONESE));
  return words;
}

// With what the rules of NormalizePinyin look for.
Words Pinyin() {
  Words words = Spellings(sp::LANGUAGE_MANDARIN);
  for (const char* const vowel : {"a", "e", "i", "o", "u", "\u00FC", "v", "m", "n", "\u00EA"}) {
    for (const char* const mark : {"\u0304", "\u0301", "\u030C", "\u0306", "\u0300", "\u0308"}) {
      words.push_back(std::string(vowel) + mark);
    }
  }
  // clang-format off
  Append(words, {"\u0101", "\u00E1", "\u01CE", "\u00E0", "\u0113", "\u00E9", "\u011B", "\u00E8",
                 "\u012B", "\u00ED", "\u01D0", "\u00EC", "\u014D", "\u00F3", "\u01D2", "\u00F2",
                 "\u016B", "\u00FA", "\u01D4", "\u00F9", "\u01D6", "\u01D8", "\u01DA", "\u01DC",
                 "\u0144", "\u0148", "\u01F9", "\u1E3F", "\u1EBF", "\u1EC1", "\u0251", "\u0261",
                 "u:", "U:", "lue", "nue", "r5", "r", "dianr3", "MP3", "PK", "0", "6", "33",
                 "\u00B7", "\u2019", "'", "\uFF0C", "\uFF1A", "\uFF4E", "\uFF21", "\uFF13",
                 "\u00B3", "\u2083", "\u200B", "\u4F60", "\u00F1", "\u00DF"});
  // clang-format on
  return words;
}

Words Jyutping() {
  Words words = Spellings(sp::LANGUAGE_CANTONESE);
  Append(words, {"1",      "7",      "0",      "8",      "VQ6",    "M4",    "wan2gung1",
                 "ai",     "gwu",    "#",      "\t",     "\n",     "\r\n",  "\uFEFF",
                 "\uFF0C", "\uFF4E", "\uFF13", "\u00B7", "\u4F60", "\u0301"});
  return words;
}

Words English() {
  const Words names = UpperCase(PhoneNames(sp::LANGUAGE_AMERICAN_ENGLISH));
  Words words = names;
  for (const std::string& name : names) {
    const bool is_vowel = std::string("AEIOU").find(name.front()) != std::string::npos;
    for (const char* const stress : {"0", "1", "2"}) {
      if (is_vowel) words.push_back(name + stress);
    }
  }
  Append(words, PhoneNames(sp::LANGUAGE_AMERICAN_ENGLISH));
  Append(words,
         {"(2)", "(02)", "(1000000000)", " # ", "#", ";;;", ", ", " 0,", " 3", "\t", "\r\n"});
  return words;
}

Words Pronunciation() {
  Words words;
  for (const int language :
       {sp::LANGUAGE_MANDARIN, sp::LANGUAGE_CANTONESE, sp::LANGUAGE_AMERICAN_ENGLISH}) {
    for (const std::string& name : PhoneNames(language)) words.push_back(name + ' ');
  }
  Append(words, {"E ", "ng ", "sil", "ssil", ",", ", ", "0", "1, ", "3,", "9", "\t", "\r\n"});
  return words;
}

Words Lines() {
  return {"\n",  "\r\n", "\r",  "\xEF\xBB\xBF", "\t",   "# ",       "#",     ";;;",
          "(2)", " [",   "] /", "[ni3 hao3]",   "A B ", "HH AH0 L", " \v\f", "\x80"};
}

// As the engine's format has it: a quoted word a line, all but plain text as \xAB.
std::string Quoted(const std::string& word) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char c : word) {
    const auto byte = static_cast<unsigned char>(c);
    if (c > ' ' && c < '\x7F' && c != '"' && c != '\\') {
      quoted += c;
    } else {
      quoted += std::string("\\x") + kDigits[byte / 16] + kDigits[byte % 16];
    }
  }
  return quoted + "\"\n";
}

std::string Written(Words words) {
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  std::string written;
  for (const std::string& word : words) written += Quoted(word);
  return written;
}

struct Dictionary {
  const char* name;
  Words (*words)();
};
constexpr Dictionary kDictionaries[] = {
    {"chinese", Chinese}, {"english", English}, {"jyutping", Jyutping},
    {"lines", Lines},     {"pinyin", Pinyin},   {"pronunciation", Pronunciation},
};

bool IsWrittenIn(const std::string& path, const std::string& expected) {
  std::ifstream file(path, std::ios::binary);
  const std::string found{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (found == expected) return true;
  std::cerr << path << " is not what the tables give\n";
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string name = argc > 1 ? argv[1] : "";
  const auto* const dictionary =
      std::find_if(std::begin(kDictionaries), std::end(kDictionaries),
                   [&name](const Dictionary& candidate) { return candidate.name == name; });
  if (dictionary == std::end(kDictionaries)) {
    std::cerr << "usage: make_dictionary NAME [FILE]\n";
    return 2;
  }
  const std::string written = Written(dictionary->words());
  if (argc > 2) return IsWrittenIn(argv[2], written) ? 0 : 1;
  std::cout << written;
  return 0;
}
