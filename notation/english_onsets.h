#ifndef NOTATION_ENGLISH_ONSETS_H_
#define NOTATION_ENGLISH_ONSETS_H_

// The consonants that may begin an English syllable, and the lookup on which syllables are cut.
// docs/arpabet.md describes how the table was made and how well it cuts.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qeo::notation::internal {

enum class OnsetSource : std::uint8_t {
  kEnglish,  // begins words of American English: what any account of its sounds lists
  kLexicon,  // further onsets of data/english.tsv, most from names, loans and compounds
  kLoan,     // begins borrowed words: Sri Lanka, schnapps, svelte; not in data/english.tsv
};

struct EnglishOnset {
  std::string_view phones;  // one space between them
  OnsetSource source;
  int syllables;  // how many syllables of data/english.tsv begin with it
};

// clang-format off

// One onset a row: single consonants, obstruent and approximant, s-clusters, consonant and y, other
// onsets of the lexicon, and loans. "ng" is left out: it begins no syllable.
inline constexpr EnglishOnset english_onsets[] = {
    { "b",     OnsetSource::kEnglish, 228 },
    { "ch",    OnsetSource::kEnglish,  52 },
    { "d",     OnsetSource::kEnglish, 355 },
    { "dh",    OnsetSource::kEnglish,   7 },
    { "f",     OnsetSource::kEnglish, 131 },
    { "g",     OnsetSource::kEnglish, 121 },
    { "hh",    OnsetSource::kEnglish, 130 },
    { "jh",    OnsetSource::kEnglish, 118 },
    { "k",     OnsetSource::kEnglish, 408 },
    { "l",     OnsetSource::kEnglish, 393 },
    { "m",     OnsetSource::kEnglish, 320 },
    { "n",     OnsetSource::kEnglish, 345 },
    { "p",     OnsetSource::kEnglish, 198 },
    { "r",     OnsetSource::kEnglish, 277 },
    { "s",     OnsetSource::kEnglish, 421 },
    { "sh",    OnsetSource::kEnglish, 114 },
    { "t",     OnsetSource::kEnglish, 378 },
    { "th",    OnsetSource::kEnglish,  24 },
    { "v",     OnsetSource::kEnglish, 171 },
    { "w",     OnsetSource::kEnglish, 115 },
    { "y",     OnsetSource::kEnglish,  53 },
    { "z",     OnsetSource::kEnglish, 121 },
    { "zh",    OnsetSource::kEnglish,   7 },

    { "p l",   OnsetSource::kEnglish,  30 },
    { "b l",   OnsetSource::kEnglish,  16 },
    { "k l",   OnsetSource::kEnglish,  38 },
    { "g l",   OnsetSource::kEnglish,  13 },
    { "f l",   OnsetSource::kEnglish,  12 },
    { "p r",   OnsetSource::kEnglish,  93 },
    { "b r",   OnsetSource::kEnglish,  31 },
    { "t r",   OnsetSource::kEnglish,  68 },
    { "d r",   OnsetSource::kEnglish,  18 },
    { "k r",   OnsetSource::kEnglish,  38 },
    { "g r",   OnsetSource::kEnglish,  35 },
    { "f r",   OnsetSource::kEnglish,  22 },
    { "th r",  OnsetSource::kEnglish,   3 },
    { "sh r",  OnsetSource::kEnglish,   2 },
    { "t w",   OnsetSource::kEnglish,   4 },
    { "d w",   OnsetSource::kEnglish,   1 },
    { "k w",   OnsetSource::kEnglish,  15 },
    { "g w",   OnsetSource::kEnglish,   3 },
    { "th w",  OnsetSource::kEnglish,   0 },
    { "hh w",  OnsetSource::kEnglish,   0 },

    { "s p",   OnsetSource::kEnglish,  35 },
    { "s t",   OnsetSource::kEnglish,  92 },
    { "s k",   OnsetSource::kEnglish,  50 },
    { "s f",   OnsetSource::kEnglish,   5 },
    { "s m",   OnsetSource::kEnglish,  10 },
    { "s n",   OnsetSource::kEnglish,   4 },
    { "s l",   OnsetSource::kEnglish,  22 },
    { "s w",   OnsetSource::kEnglish,  10 },
    { "s p l", OnsetSource::kEnglish,   5 },
    { "s p r", OnsetSource::kEnglish,   6 },
    { "s t r", OnsetSource::kEnglish,  29 },
    { "s k r", OnsetSource::kEnglish,  13 },
    { "s k w", OnsetSource::kEnglish,   1 },

    { "p y",   OnsetSource::kEnglish,   8 },
    { "b y",   OnsetSource::kEnglish,  10 },
    { "m y",   OnsetSource::kEnglish,  11 },
    { "f y",   OnsetSource::kEnglish,   7 },
    { "v y",   OnsetSource::kEnglish,   4 },
    { "k y",   OnsetSource::kEnglish,  14 },
    { "g y",   OnsetSource::kEnglish,   4 },
    { "hh y",  OnsetSource::kEnglish,   0 },
    { "s p y", OnsetSource::kEnglish,   0 },
    { "s k y", OnsetSource::kEnglish,   6 },

    { "t y",   OnsetSource::kLexicon,   2 },
    { "d y",   OnsetSource::kLexicon,   5 },
    { "n y",   OnsetSource::kLexicon,  10 },
    { "l y",   OnsetSource::kLexicon,   7 },
    { "p w",   OnsetSource::kLexicon,   1 },
    { "b w",   OnsetSource::kLexicon,   1 },
    { "z w",   OnsetSource::kLexicon,   4 },
    { "sh w",  OnsetSource::kLexicon,   1 },
    { "sh l",  OnsetSource::kLexicon,   4 },
    { "sh m",  OnsetSource::kLexicon,   1 },
    { "v l",   OnsetSource::kLexicon,   1 },
    { "z l",   OnsetSource::kLexicon,   2 },
    { "v r",   OnsetSource::kLexicon,   1 },
    { "m r",   OnsetSource::kLexicon,   2 },
    { "s k l", OnsetSource::kLexicon,   1 },

    { "s r",   OnsetSource::kLoan,      0 },
    { "sh n",  OnsetSource::kLoan,      0 },
    { "s v",   OnsetSource::kLoan,      0 },
};
// clang-format on

// An onset as a number, 16 bits a phone, so that a consonant is prepended by one shift.
using OnsetKey = std::uint64_t;
inline constexpr std::size_t kMaxOnsetPhones = 3;

// `phone` is a name of one or two letters.
constexpr OnsetKey PhoneKey(std::string_view phone) {
  const auto byte = [phone](std::size_t i) {
    return i < phone.size() ? static_cast<OnsetKey>(static_cast<unsigned char>(phone[i])) : 0;
  };
  return byte(0) << 8U | byte(1);
}

// The key of a phone before an onset of `count` phones: the two together are the key of all.
constexpr OnsetKey InFrontOf(std::size_t count, OnsetKey phone) { return phone << (16 * count); }

constexpr OnsetKey KeyOf(std::string_view phones) {
  OnsetKey key = 0;
  while (!phones.empty()) {
    const std::size_t length = std::min(phones.find(' '), phones.size());
    key = key << 16U | PhoneKey(phones.substr(0, length));
    phones.remove_prefix(std::min(length + 1, phones.size()));
  }
  return key;
}

// The keys of all rows in a hash table, 0 where free.
class OnsetTable {
 public:
  constexpr OnsetTable() {
    for (const EnglishOnset& row : english_onsets) {
      const OnsetKey key = KeyOf(row.phones);
      slots_[Find(key)] = key;
    }
  }

  constexpr bool Has(OnsetKey key) const { return slots_[Find(key)] == key; }

 private:
  static constexpr unsigned kSlotBits = 8;  // about a third of the slots are taken
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;

  // Where a key is, or would be.
  constexpr std::size_t Find(OnsetKey key) const {
    std::size_t slot = static_cast<std::size_t>(key * 0x9e3779b97f4a7c15U >> (64 - kSlotBits));
    while (slots_[slot] != 0 && slots_[slot] != key) slot = (slot + 1) % kSlots;
    return slot;
  }

  std::array<OnsetKey, kSlots> slots_ = {};
};

inline constexpr OnsetTable kOnsetTable;

// `key` is of one phone at least.
constexpr bool IsEnglishOnset(OnsetKey key) { return kOnsetTable.Has(key); }

}  // namespace qeo::notation::internal

#endif  // NOTATION_ENGLISH_ONSETS_H_
