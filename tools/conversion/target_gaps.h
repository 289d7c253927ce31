#ifndef TOOLS_CONVERSION_TARGET_GAPS_H_
#define TOOLS_CONVERSION_TARGET_GAPS_H_

// What a target notation cannot express of a syllable. Such a syllable fails its line: a result
// never has a gap where a phone or a tone belongs.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "phoneme/phoneme.h"
#include "tools/conversion/notations.h"

namespace qeo::tool {

enum class Gap {
  kNone,
  kNoPhones,          ///< a syllable of ids or of a pronunciation without any
  kMissingPhone,      ///< its row names an initial or final that the phone set does not have
  kNoTone,            ///< it was read without a tone, which its language needs
  kBadTone,           ///< its digit is not a tone of its language
  kToneWithoutFinal,  ///< it has no final or vowel to carry the tone
  kManyFinals,        ///< it has more than one, of which only the first would have the tone
  kNoSpelling,        ///< the name of its row is not read back, as "E" of mandarin
};

/// The tone digit of a syllable, wherever it was read from.
int ToneDigit(const sp::SyllableInfo& syllable);

/// Finds gaps in the syllables of a conversion.
class Gaps {
 public:
  explicit Gaps(const Conversion& conversion);

  /// What `to` cannot express of a syllable as Reader makes it.
  ///
  /// Codes can express every syllable, and so can the records of kJson and kTsv, which show what
  /// is missing. Phones and ids need a phone for each name of the row; ids take any digit.
  /// Syllables need a name and a digit that their text reads back, marks, toned phones,
  /// pronunciations and ARPAbet a tone of the language, and toned phones and ARPAbet one final or
  /// vowel for it. In a strict conversion, syllables and pronunciations take any digit, as code2py
  /// and pr2ph do.
  Gap Find(Target to, const sp::SyllableInfo& syllable) const;

  /// Returns whether the digit of a syllable is a tone, or a stress, of its language.
  static bool HasTone(const sp::SyllableInfo& syllable);

  /// The kind of failure that a gap is, as findings name it.
  static std::string_view KindOf(Gap gap);

  /// More about a gap, to follow the syllable in a message: ": mandarin has the tones 1 to 5".
  std::string DetailOf(Gap gap, const sp::SyllableInfo& syllable) const;

 private:
  bool HasSpelling(const sp::SyllableInfo& syllable) const;
  const char* MissingName(const sp::SyllableInfo& syllable) const;
  Gap FindPhoneGap(const sp::SyllableInfo& syllable) const;
  static std::ptrdiff_t CountFinals(const sp::SyllableInfo& syllable);
  bool CanCarryTone(const sp::SyllableInfo& syllable) const;

  bool has_codes_;
  bool is_strict_;
  std::vector<const char*> missing_names_;             // by row; null where nothing is missing
  std::vector<bool> has_spelling_;                     // by row; false where text does not read it
  std::vector<const sp::PhoneInfo*> syllabic_phones_;  // initials that end a row, as in "m4"
};

}  // namespace qeo::tool

#endif  // TOOLS_CONVERSION_TARGET_GAPS_H_
