// The type of a phone shows what position 0 of its features shows; vowels and consonants use the
// letters of the other positions differently.

#include "tools/commands/phone_features.h"

namespace qeo::tool {
namespace {

struct FeatureWord {
  int type;
  int position;
  char letter;
  const char* word;
};

// clang-format off

// One letter a row, in the order of the words.
constexpr FeatureWord feature_words[] = {
    // type                position  letter  word
    { sp::PHONE_TYPE_FINAL,   1,        'l',    "long" },
    { sp::PHONE_TYPE_FINAL,   1,        's',    "short" },
    { sp::PHONE_TYPE_FINAL,   1,        'd',    "diphthong" },
    { sp::PHONE_TYPE_FINAL,   1,        'a',    "reduced" },
    { sp::PHONE_TYPE_FINAL,   2,        '1',    "high" },
    { sp::PHONE_TYPE_FINAL,   2,        '2',    "mid" },
    { sp::PHONE_TYPE_FINAL,   2,        '3',    "low" },
    { sp::PHONE_TYPE_FINAL,   3,        '1',    "front" },
    { sp::PHONE_TYPE_FINAL,   3,        '2',    "central" },
    { sp::PHONE_TYPE_FINAL,   3,        '3',    "back" },
    { sp::PHONE_TYPE_FINAL,   4,        '+',    "rounded" },
    { sp::PHONE_TYPE_FINAL,   4,        '-',    "unrounded" },
    { sp::PHONE_TYPE_FINAL,   5,        'r',    "r-coloured" },
    { sp::PHONE_TYPE_INITIAL, 5,        's',    "stop" },
    { sp::PHONE_TYPE_INITIAL, 5,        'a',    "affricate" },
    { sp::PHONE_TYPE_INITIAL, 5,        'f',    "fricative" },
    { sp::PHONE_TYPE_INITIAL, 5,        'l',    "lateral" },
    { sp::PHONE_TYPE_INITIAL, 5,        'n',    "nasal" },
    { sp::PHONE_TYPE_INITIAL, 5,        'r',    "approximant" },
    { sp::PHONE_TYPE_INITIAL, 6,        'l',    "labial" },
    { sp::PHONE_TYPE_INITIAL, 6,        'b',    "labiodental" },
    { sp::PHONE_TYPE_INITIAL, 6,        'd',    "dental" },
    { sp::PHONE_TYPE_INITIAL, 6,        'a',    "alveolar" },
    { sp::PHONE_TYPE_INITIAL, 6,        'p',    "palatal" },
    { sp::PHONE_TYPE_INITIAL, 6,        'v',    "velar" },
    { sp::PHONE_TYPE_INITIAL, 6,        'g',    "glottal" },
    { sp::PHONE_TYPE_INITIAL, 7,        '+',    "voiced" },
    { sp::PHONE_TYPE_INITIAL, 7,        '-',    "voiceless" },
};
// clang-format on

}  // namespace

std::string FeatureWords(const sp::PhoneInfo& phone) {
  std::string words;
  for (const FeatureWord& feature : feature_words) {
    const bool has_feature = phone.type == feature.type &&
                             sp::GetPhoneFeature(&phone, feature.position) == feature.letter;
    if (has_feature) {
      words += words.empty() ? "" : ", ";
      words += feature.word;
    }
  }
  return words;
}

}  // namespace qeo::tool
