#ifndef PHONEME_RECORDS_H_
#define PHONEME_RECORDS_H_

/// The records that every function of phoneme speaks in, the language ids and the phone types.
/// Callers include phoneme/phoneme.h.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace qeo::sp {

/// Language ids. Chinese languages count up from 10000, English variants from 20000.
inline constexpr std::int32_t LANGUAGE_MANDARIN = 10000;          ///< Pinyin syllables
inline constexpr std::int32_t LANGUAGE_CANTONESE = 10001;         ///< Jyutping syllables
inline constexpr std::int32_t LANGUAGE_AMERICAN_ENGLISH = 20000;  ///< no syllable table

/// Phone types, the values of `PhoneInfo::type`.
inline constexpr std::int32_t PHONE_TYPE_SILENCE = 0;  ///< "sil", row 0 of every phone table
inline constexpr std::int32_t PHONE_TYPE_INITIAL = 1;  ///< consonant; a Chinese initial
inline constexpr std::int32_t PHONE_TYPE_FINAL = 2;    ///< vowel; a Chinese final

/// One phone. Rows are constant static data, so a pointer to one is valid until the shared library
/// is unloaded.
struct PhoneInfo {
  std::int32_t id;        ///< number within the language, equal to the row's index
  std::int32_t language;  ///< language id of the table
  std::int32_t type;      ///< one of the phone types
  char name[16];          ///< lower-case ASCII, NUL-padded: "sil", "zh", "iou", "hh"
  char feature[16];       ///< English: 8 articulatory characters, NUL-padded; Chinese: all NUL
};

/// One toneless syllable of a Chinese language. The two pointers are filled at start-up and fixed
/// from then on.
struct PinyinInfo {
  std::int32_t id;                 ///< equal to the row's index; a syllable code is id * 10 + tone
  char pinyin[16];                 ///< spelling without tone, NUL-padded: "zhuang", "lv", "gwaang"
  char initial[16];                ///< name of the initial phone, "" for none
  char final[16];                  ///< name of the final phone, "" for none
  const PhoneInfo* initial_phone;  ///< the phone named by `initial`, null when there is none
  const PhoneInfo* final_phone;    ///< the phone named by `final`, null when there is none
};

/// All data of one language. It points into the static tables and owns its two maps.
struct SpMapping {
  const PhoneInfo* phone_list = nullptr;  ///< first row of the phone table
  std::uint64_t phone_count = 0;          ///< rows of `phone_list`
  /// Phone name to row, the first row of a name. The value is null for a name that a syllable
  /// uses and no row carries (Mandarin "E" and "ng").
  std::map<std::string, const PhoneInfo*> phone_map;
  PinyinInfo* pinyin_list = nullptr;  ///< first row of the syllable table, null when there is none
  std::uint64_t pinyin_count = 0;     ///< rows of `pinyin_list`
  std::map<std::string, const PinyinInfo*> pinyin_map;  ///< spelling to row
  std::uint64_t max_pinyin_length = 0;                  ///< bytes of the longest spelling
};

/// One syllable of output.
struct SyllableInfo {
  std::int32_t language = 0;             ///< language of the syllable, after any fallback
  std::vector<const PhoneInfo*> phones;  ///< in spoken order, not owned: static rows
  std::uint32_t code = 0;                ///< syllable code in the low 16 bits, 0 where not made
  std::int8_t tone = 0;                  ///< tone as `py2ph` folds it and `code2ph` reads it
  std::uint8_t raw_tone = 0;             ///< tone digit as `ph2ph` and `pr2ph` read it, unfolded
};

/// The digits that are tones of a language, or for English stresses.
struct Tones {
  std::int8_t first = 0;
  std::int8_t last = 0;
  std::int8_t none = -1;  ///< the digit of a syllable without a tone that it needs; -1 for none
};

}  // namespace qeo::sp

#endif  // PHONEME_RECORDS_H_
