#include "benchmarks/corpus.h"

#include <cstdint>
#include <random>
#include <string_view>

namespace qeo::sp::benchmarks {
namespace {

constexpr std::uint64_t kSeed = 20240601;
constexpr unsigned kTonesInUse = 5;

// English has no syllable table: a consonant and a vowel are taken as one of its syllables.
constexpr unsigned kEnglishVowels = 16;
constexpr unsigned kFirstEnglishConsonant = 17;
constexpr unsigned kEnglishConsonants = 24;

class WordMaker {
 public:
  WordMaker(const SpMapping& mapping, Corpus& corpus) : mapping_(mapping), corpus_(corpus) {}

  void Add(std::size_t syllable_count) {
    toned_.clear();
    toneless_.clear();
    pronunciation_.clear();
    phone_ids_.clear();
    codes_.clear();
    for (std::size_t i = 0; i < syllable_count; ++i) AddSyllable();
    corpus_.toned.push_back(toned_);
    corpus_.toneless.push_back(toneless_);
    corpus_.pronunciations.push_back(pronunciation_);
    corpus_.phone_ids.push_back(phone_ids_);
    corpus_.codes.push_back(codes_);
    corpus_.syllable_count += syllable_count;
  }

  std::size_t Draw(std::size_t count) { return random_() % count; }

 private:
  void AddSyllable() {
    const auto tone = static_cast<unsigned char>(1 + Draw(kTonesInUse));
    if (!pronunciation_.empty()) pronunciation_ += ", ";
    if (mapping_.pinyin_count > 0) {
      AddRow(mapping_.pinyin_list[Draw(mapping_.pinyin_count)], tone);
    } else {
      AddPhone(mapping_.phone_list[kFirstEnglishConsonant + Draw(kEnglishConsonants)]);
      AddPhone(mapping_.phone_list[1 + Draw(kEnglishVowels)]);
    }
    pronunciation_ += std::to_string(tone);
    phone_ids_.push_back(tone);
  }

  void AddRow(const PinyinInfo& row, unsigned tone) {
    std::string spelling = row.pinyin;
    if (spelling == "E") spelling = "e";  // text is read in lower case
    toned_ += spelling + std::to_string(tone);
    toneless_ += spelling;
    codes_.push_back(static_cast<unsigned short>(row.id * 10 + static_cast<int>(tone)));
    if (row.initial_phone != nullptr) AddPhone(*row.initial_phone);
    if (row.final_phone != nullptr) AddPhone(*row.final_phone);
    // "ng" is a syllable without any phone in Mandarin; silence takes its place.
    if (row.initial_phone == nullptr && row.final_phone == nullptr) AddPhone(*mapping_.phone_list);
  }

  void AddPhone(const PhoneInfo& phone) {
    pronunciation_ += phone.name;
    pronunciation_ += ' ';
    phone_ids_.push_back(static_cast<unsigned char>(phone.id + 10));
  }

  const SpMapping& mapping_;
  Corpus& corpus_;
  std::mt19937_64 random_{kSeed};
  std::string toned_;
  std::string toneless_;
  std::string pronunciation_;
  std::vector<unsigned char> phone_ids_;
  std::vector<unsigned short> codes_;
};

// No syllable ends in one of these letters or goes on with it after a final.
constexpr std::string_view kLettersThatOnlyBegin = "bpfdtzcsjqxkl";

}  // namespace

Corpus MakeCorpus(int language, std::size_t word_count, std::size_t max_syllables) {
  Corpus corpus;
  corpus.language = language;
  WordMaker words(*FindPhoneSet(language), corpus);
  for (std::size_t i = 0; i < word_count; ++i) words.Add(1 + words.Draw(max_syllables));
  return corpus;
}

std::vector<std::string> MakePlainWords(std::size_t byte_count) {
  std::vector<std::string> syllables;
  for (const auto& [spelling, row] : FindPhoneSet(LANGUAGE_MANDARIN)->pinyin_map) {
    const bool is_plain = kLettersThatOnlyBegin.find(spelling.front()) != std::string_view::npos;
    if (is_plain) syllables.push_back(spelling);
  }
  std::mt19937_64 random(kSeed);
  std::vector<std::string> words;
  for (std::size_t bytes = 0; bytes < byte_count; bytes += words.back().size()) {
    std::string& word = words.emplace_back();
    for (int i = 0; i < 3; ++i) word += syllables[random() % syllables.size()];
  }
  return words;
}

}  // namespace qeo::sp::benchmarks
