#ifndef NOTATION_WRITER_H_
#define NOTATION_WRITER_H_

/// Syllables to text in any notation that is written, or the first syllable that it cannot express:
/// a result never has a gap where a phone or a tone belongs.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "notation/export.h"
#include "notation/notations.h"
#include "notation/records.h"
#include "phoneme/records.h"

namespace qeo::notation {

namespace internal {
struct NotationRow;
}

/// The tone digit of a syllable, or for English its stress, wherever it was read from; 0 when it
/// has none.
NOTATION_EXPORT int ToneDigit(const sp::SyllableInfo& syllable);

/// Returns whether that digit is a tone, or a stress, of the syllable's language.
NOTATION_EXPORT bool HasTone(const sp::SyllableInfo& syllable);

/// Writes syllables of one language in one notation, and keeps what a syllable code looks like from
/// one text to the next. A writer is for one thread at a time.
///
///   Writer writer(Notation::kMarkedPinyin, sp::LANGUAGE_MANDARIN, true);
///   writer.Write({2243, 1173}, out);  // nothing, and "nǐ hǎo" is appended
///   writer.Write({2243, 2249}, out);  // 1: 9 is not a tone
class Writer {
 public:
  /// `to` is a notation that is written. `have_codes`: the syllables have codes, as those that a
  /// notation with codes is read into; a notation with codes (FactsOf) is only for such. With
  /// `takes_any_digit` kText and kPronunciation write also a digit that is not a tone, as code2py
  /// does.
  NOTATION_EXPORT Writer(Notation to, int language, bool have_codes, bool takes_any_digit = false);

  /// What the notation cannot express of a syllable.
  ///
  /// Codes can express every syllable. Phones and ids need a phone for each name of the row; ids
  /// take any digit. Text needs a name and a digit that are read back, marks, toned phones,
  /// pronunciations and ARPAbet a tone of the language, and toned phones and ARPAbet one final or
  /// vowel for it.
  NOTATION_EXPORT Gap FindGap(const sp::SyllableInfo& syllable) const;

  /// The name that is not a phone in the row of a syllable with Gap::kMissingPhone, in static
  /// storage; null for any other.
  NOTATION_EXPORT const char* MissingName(const sp::SyllableInfo& syllable) const;

  /// Appends one syllable. Returns false when it has a gap, with `out` as it was.
  NOTATION_EXPORT bool Append(const sp::SyllableInfo& syllable, std::string& out) const;

  /// Appends syllables with what separates them, and nothing after the last. Returns the index of
  /// the first that has a gap, with `out` as it was; nothing when all was written. A code outside
  /// the table has a gap too, kNoSpelling.
  NOTATION_EXPORT std::optional<std::size_t> Write(const std::vector<unsigned short>& codes,
                                                   std::string& out);
  NOTATION_EXPORT std::optional<std::size_t> Write(const std::vector<sp::SyllableInfo>& syllables,
                                                   std::string& out) const;

 private:
  // A syllable as text, with what follows it.
  struct CodeText {
    std::uint8_t size = 0;  // 0 where there is none
    std::array<char, 31> bytes = {};
  };

  const CodeText& TextOf(std::size_t code);

  const internal::NotationRow& row_;
  int language_;
  bool have_codes_;
  bool takes_any_digit_;
  std::vector<const char*> missing_names_;             // by row; null where nothing is missing
  std::vector<bool> has_spelling_;                     // by row; false where text does not read it
  std::vector<const sp::PhoneInfo*> syllabic_phones_;  // initials that end a row, as in "m4"
  std::vector<CodeText> by_code_;
};

}  // namespace qeo::notation

#endif  // NOTATION_WRITER_H_
