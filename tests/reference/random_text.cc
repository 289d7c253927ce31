// Random input for the conversions. Each kind of text starts well-formed, and tables and switches
// say how often it is spoilt and in which ways.

#include "tests/reference/random_text.h"

#include <map>
#include <numeric>
#include <string_view>
#include <utility>

#include "tests/reference/reference.h"

namespace qeo::sp::reference {

/// One way to write a romanised text. Chances are percentages for each word.
struct RandomText::Style {
  unsigned weight;      ///< how often this style is used, relative to the others
  unsigned most_words;  ///< a text has 1 to this many
  unsigned toned;       ///< the word ends in a digit, sometimes two
  unsigned apart;       ///< white space, "'" or "`" follows
  unsigned capital;     ///< the word begins with a capital, sometimes all of it is capitals
  unsigned edited;      ///< one byte is changed
  unsigned foreign;     ///< the word is from another language
  unsigned noisy;       ///< bytes that belong to no syllable are in it or in its place
};

namespace {

using namespace std::string_view_literals;

// What a language is written with, from the rows of its tables.
struct Inventory {
  std::vector<std::string> syllables;
  std::vector<std::string> phones;  // the two Mandarin names without a phone included
};

Inventory MakeInventory(const SpMapping& mapping) {
  Inventory inventory;
  for (const auto& [spelling, row] : mapping.pinyin_map) {
    // Text is lower-cased before it is looked up, so nobody can write this row.
    if (spelling != "E") inventory.syllables.push_back(spelling);
  }
  for (const auto& [name, phone] : mapping.phone_map) inventory.phones.push_back(name);
  return inventory;
}

const Inventory& InventoryOf(int language) {
  static const std::map<int, Inventory> inventories = [] {
    std::map<int, Inventory> made;
    for (const auto& [id, mapping] : PhoneSets()) made[id] = MakeInventory(mapping);
    return made;
  }();
  return inventories.at(language);
}

constexpr int kRegisteredIds[] = {LANGUAGE_MANDARIN, LANGUAGE_CANTONESE, LANGUAGE_AMERICAN_ENGLISH};

// The language whose romanised text a request is served with; English has none.
int ChineseServing(int language) {
  return language == LANGUAGE_CANTONESE ? LANGUAGE_CANTONESE : LANGUAGE_MANDARIN;
}

// The language whose phones a pronunciation is read with.
int PhonesServing(int language) {
  return PhoneSets().count(language) != 0 ? language : LANGUAGE_AMERICAN_ENGLISH;
}

int OtherChinese(int language) {
  return language == LANGUAGE_CANTONESE ? LANGUAGE_MANDARIN : LANGUAGE_CANTONESE;
}

constexpr std::string_view kSeparators = " \t\n\v\f\r`'"sv;
constexpr std::string_view kPunctuation = "-.,;:!?_@#$%&*()[]{}<>/\\|~^+=\""sv;
constexpr std::string_view kOddBytes =
    "\0\1 \t\v\x1f-_@[`'{\x7f\x80\xa0\xc3\xff\x30\x39\x2f:AZaz"sv;
constexpr std::string_view kBlankRuns[] = {"", "", " ", " ", "\t", "  ", "\r\n", " \t\n "};

// Vowels with a tone mark, umlauts, blanks and a comma, none of them ASCII.
constexpr std::string_view kUtf8[] = {
    "\xc4\x81", "\xc7\x90",     "\xc3\xa9",     "\xc3\xbc",     "\xc7\x9a",
    "\xc2\xa0", "\xe3\x80\x80", "\xef\xbc\x8c", "\xe2\x80\x99", "\xf0\x9f\x98\x80",
};

// Around the longest syllable and around one and two 64-bit words.
constexpr std::size_t kPieceLengths[] = {5, 6, 7, 8, 9, 15, 16, 17};

char ToUpper(char c) { return 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string UpperCase(std::string text) {
  for (char& c : text) c = ToUpper(c);
  return text;
}

}  // namespace

std::size_t RandomText::Below(std::size_t bound) {
  // Not std::uniform_int_distribution, whose results are each library's own.
  return static_cast<std::size_t>(engine_() % bound);
}

bool RandomText::Chance(unsigned percent) { return Below(100) < percent; }

int RandomText::LanguageId() { return Chance(60) ? Pick(kRegisteredIds) : Pick(kLanguageIds); }

std::string RandomText::Syllable(int language) {
  const std::vector<std::string>& syllables = InventoryOf(language).syllables;
  return syllables[Below(syllables.size())];
}

std::string RandomText::PlainText(int language, std::size_t syllable_count, bool toned) {
  const std::size_t top_tone = language == LANGUAGE_CANTONESE ? 7 : 5;
  std::string text;
  for (std::size_t i = 0; i < syllable_count; ++i) {
    text += Syllable(language);
    if (toned) text += static_cast<char>('1' + Below(top_tone));
  }
  return text;
}

// Romanised text

const RandomText::Style& RandomText::PickStyle() {
  // clang-format off
  static constexpr Style kStyles[] = {
      // weight words  toned apart capital edited foreign noisy
      {  12,    6,     100,    0,    0,      0,     0,      0 },  // "ni3hao3ma5"
      {  12,    6,     100,   40,   20,      0,     0,      0 },  // "ni3 Hao3'ma5"
      {  12,    6,       0,    0,    0,      0,     0,      0 },  // "nihaoma"
      {  10,    6,       0,    0,    0,     15,     5,      0 },  // "nihapma"
      {  12,    6,       0,   50,   30,      0,     0,      0 },  // "nihao maMa"
      {  10,    5,      90,   20,   10,      8,     5,      0 },  // "ni3 hoa3"
      {  10,    3,      60,   20,   10,     10,    10,     40 },  // "ni3-\xff hao\0"
      {   8,    3,       0,   40,    0,      5,     5,     60 },  // "n-ihao\xc3\xbc"
      {   4,    3,      10,   60,   10,    100,     0,      0 },  // hardly a syllable
      {   3,   30,       0,    0,    0,      1,     1,      0 },  // a long run
  };
  // clang-format on
  constexpr auto kAddWeight = [](std::size_t sum, const Style& style) {
    return sum + style.weight;
  };
  static const std::size_t total =
      std::accumulate(std::begin(kStyles), std::end(kStyles), std::size_t{0}, kAddWeight);

  std::size_t draw = Below(total);
  const Style* style = kStyles;
  for (; draw >= style->weight; ++style) draw -= style->weight;
  return *style;
}

std::string RandomText::Romanised(int language) {
  if (Chance(2)) return Chance(50) ? "" : Gap();
  const Style& style = PickStyle();
  const std::size_t word_count = 1 + Below(style.most_words);
  std::string text = Chance(style.apart / 4) ? Gap() : "";
  for (std::size_t i = 0; i < word_count; ++i) {
    text += Word(style, ChineseServing(language));
    if (Chance(style.apart)) text += Gap();
  }
  return text;
}

std::string RandomText::Word(const Style& style, int language) {
  std::string word = Syllable(Chance(style.foreign) ? OtherChinese(language) : language);
  if (Chance(style.edited)) word = Edited(word);
  if (Chance(style.noisy)) word = Noisy(word, language);
  if (Chance(style.capital)) word = Capitalised(word);
  if (Chance(style.toned)) word += Digits();
  return word;
}

std::string RandomText::Digits() {
  std::string digits;
  do {
    digits += static_cast<char>('0' + Below(10));
  } while (Chance(2));
  return digits;
}

std::string RandomText::Gap() {
  std::string gap;
  do {
    gap += kSeparators[Below(kSeparators.size())];
  } while (Chance(15));
  return gap;
}

std::string RandomText::Noisy(const std::string& word, int language) {
  std::string noise = Noise(language);
  switch (Below(3)) {
    case 0:
      return noise + word;
    case 1:
      return word + noise;
    default:
      return noise;
  }
}

std::string RandomText::Noise(int language) {
  switch (Below(6)) {
    case 0:
      return std::string(1, static_cast<char>(Below(256)));
    case 1:
      return std::string(1, kPunctuation[Below(kPunctuation.size())]);
    case 2:
      return std::string(1 + Below(3), '\0');
    case 3:
      return std::string(Pick(kUtf8));
    case 4: {  // a run of an awkward length
      const std::size_t byte_count = Pick(kPieceLengths);
      return PlainText(language, byte_count, false).substr(0, byte_count);
    }
    default: {  // a syllable filled up with NUL
      std::string padded = Syllable(language);
      padded.resize(Pick(kPieceLengths));
      return padded;
    }
  }
}

std::string RandomText::Edited(std::string text) {
  if (text.empty()) return std::string(1, Byte());
  const std::size_t at = Below(text.size());
  switch (Below(4)) {
    case 0:
      text.insert(at, 1, Byte());
      break;
    case 1:
      text.erase(at, 1);
      break;
    case 2:
      text[at] = Byte();
      break;
    default:
      std::swap(text[at], text[text.size() / 2]);
      break;
  }
  return text;
}

std::string RandomText::Capitalised(std::string word) {
  if (Chance(20)) return UpperCase(std::move(word));
  if (!word.empty()) word[0] = ToUpper(word[0]);
  return word;
}

char RandomText::Byte() {
  switch (Below(4)) {
    case 0:
      return kOddBytes[Below(kOddBytes.size())];
    case 1:
      return static_cast<char>(Below(256));
    default:
      return static_cast<char>('a' + Below(26));
  }
}

// Pronunciations and phones

std::string RandomText::Pronunciation(int language) {
  const bool blank = Chance(2);
  const unsigned spoilt = blank || Chance(50) ? 0 : 25;
  const std::size_t token_count = 1 + Below(5);
  const int phones_of = PhonesServing(language);
  std::string text;
  for (std::size_t i = 0; i < token_count; ++i) {
    std::string token = blank ? "" : PronunciationToken(phones_of);
    if (Chance(spoilt)) token = Spoilt(std::move(token), phones_of);
    if (i != 0) text += ',';
    text += Pick(kBlankRuns);
    text += token;
    text += Pick(kBlankRuns);
  }
  return text;
}

std::string RandomText::PronunciationToken(int language) {
  const std::vector<std::string>& phones = InventoryOf(language).phones;
  const std::size_t phone_count = 1 + Below(Chance(5) ? 12 : 3);
  std::string token;
  for (std::size_t i = 0; i < phone_count; ++i) {
    token += phones[Below(phones.size())];
    token += ' ';
  }
  return token += static_cast<char>('0' + Below(10));
}

std::string RandomText::Spoilt(std::string token, int language) {
  const std::size_t space = token.find(' ');
  switch (Below(14)) {
    case 0:
      return token.insert(space, 1, ' ');
    case 1:
      return token.substr(0, token.size() - 2);  // no digit
    case 2:
      return token += static_cast<char>('0' + Below(10));
    case 3:
      return token += " 3";
    case 4:
      token[space] = '\t';
      return token;
    case 5:
      return (Chance(50) ? "E " : "ng ") + token;
    case 6:
      return UpperCase(std::move(token));
    case 7:
      return token.insert(Below(token.size() + 1), 1, '\0');
    case 8:
      return PhoneName(language) + ' ' + token;
    case 9:
      return token.substr(0, space);  // one piece
    case 10:
      return token.erase(space, 1);  // one piece, or two run together
    case 11:
      return Chance(50) ? "" : " ";
    case 12:
      return token += '\v';  // white space, but none that is trimmed
    default:
      return Edited(std::move(token));
  }
}

std::vector<unsigned char> RandomText::PhoneIds(int language) {
  const std::size_t phone_count = PhoneSets().at(PhonesServing(language)).phone_count;
  const std::size_t syllable_count = Below(6);
  std::vector<unsigned char> phone_ids;
  for (std::size_t i = 0; i < syllable_count; ++i) {
    for (std::size_t phones = Below(4); phones > 0; --phones) {
      phone_ids.push_back(static_cast<unsigned char>(10 + Below(phone_count)));
    }
    phone_ids.push_back(static_cast<unsigned char>(Below(10)));
  }
  if (Chance(15)) phone_ids.push_back(static_cast<unsigned char>(Below(256)));
  if (Chance(15) && !phone_ids.empty()) phone_ids.pop_back();
  if (Chance(15) && !phone_ids.empty()) {
    phone_ids[Below(phone_ids.size())] = static_cast<unsigned char>(Below(256));
  }
  return phone_ids;
}

std::string RandomText::PhoneName(int language) {
  const std::vector<std::string>& own = InventoryOf(PhonesServing(language)).phones;
  const std::vector<std::string>& any = InventoryOf(Pick(kRegisteredIds)).phones;
  static constexpr std::string_view kOdd[] = {"E", "ng", "ssil", "sil", "SIL", "", "s"};
  switch (Below(6)) {
    case 0:
      return any[Below(any.size())];
    case 1:
      return Edited(own[Below(own.size())]);
    case 2:
      return UpperCase(own[Below(own.size())]);
    case 3:
      return std::string(Pick(kOdd));
    case 4:
      return Syllable(ChineseServing(language));
    default:
      return own[Below(own.size())];
  }
}

}  // namespace qeo::sp::reference
