// Pronunciation strings: one parser, and a writer for each form of output.

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "phoneme/ascii.h"
#include "phoneme/eight_bytes.h"
#include "phoneme/phoneme.h"
#include "phoneme/registry.h"

namespace qeo::sp {

using namespace internal;

namespace {

constexpr bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

enum class Verdict { kGood, kSinglePiece, kBadPiece };

// Reads a pronunciation string for a writer, which takes the rows of a syllable's phones one by
// one, returns false for one that it cannot write, and then takes the digit.
template <typename Writer>
class Parser {
 public:
  Parser(const NameIndex& phones, std::string_view text, Writer& writer)
      : phones_(phones), text_(text), words_(text), writer_(writer) {}

  int Parse() {
    while (SkipToSyllable()) {
      const Verdict verdict = ParseSyllable();
      if (verdict == Verdict::kGood) continue;
      // A syllable of a single piece keeps what was written; another wrong piece discards it.
      if (verdict == Verdict::kBadPiece) writer_.Discard();
      return -1;
    }
    return 0;
  }

 private:
  // Passes blanks and empty syllables; false at the end of the text.
  bool SkipToSyllable() {
    while (place_ < text_.size() && (IsBlank(text_[place_]) || text_[place_] == ',')) ++place_;
    return place_ < text_.size();
  }

  Verdict ParseSyllable() {
    const std::size_t begin = place_;
    std::size_t end = 0;
    for (;; place_ = end + 1) {
      const std::uint64_t word = words_.From(place_);
      end = FindPieceEnd(word);
      if (IsLastPiece(end)) break;
      const int row = phones_.FindFirst(word, end - place_);
      if (row == NameIndex::kAbsent || !writer_.AddPhone(row)) return Verdict::kBadPiece;
    }
    const char digit = text_[place_];
    const bool stands_alone = place_ == begin;
    const bool is_digit = ascii::IsDigit(digit) && AreBlanks(place_ + 1, end);
    place_ = end;
    if (stands_alone) return Verdict::kSinglePiece;
    if (!is_digit) return Verdict::kBadPiece;
    writer_.EndSyllable(static_cast<unsigned char>(digit - '0'));
    return Verdict::kGood;
  }

  // The end of the piece that begins with `word`: a space, a comma or the text's end.
  std::size_t FindPieceEnd(std::uint64_t word) const {
    const std::size_t length = std::min(FindByte(word, ' '), FindByte(word, ','));
    if (length < kWordBytes) return place_ + length;
    return std::min(text_.find_first_of(" ,", place_), text_.size());
  }

  // Whether there are only blanks between the end of a piece and the end of its syllable.
  bool IsLastPiece(std::size_t end) const {
    while (end < text_.size() && IsBlank(text_[end])) ++end;
    return end == text_.size() || text_[end] == ',';
  }

  bool AreBlanks(std::size_t begin, std::size_t end) const {
    return std::all_of(text_.begin() + begin, text_.begin() + end, IsBlank);
  }

  const NameIndex& phones_;
  std::string_view text_;
  EightByteReader words_;
  Writer& writer_;
  std::size_t place_ = 0;
};

/// Appends to `syllables` in the language it is made for. Phones wait in a buffer until their
/// number is known, so that each syllable's list is allocated once.
class SyllableInfoWriter {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the buffer is written before it is read
  SyllableInfoWriter(const Language& language, std::vector<SyllableInfo>& syllables)
      : language_(language.id), phone_list_(language.mapping->phone_list), syllables_(syllables) {}

  /// Adds the phone of a row to the syllable; a null pointer for NameIndex::kNoRow.
  bool AddPhone(int row) {
    if (buffered_ == kBufferSize) Spill();
    buffer_[buffered_++] = row != NameIndex::kNoRow ? phone_list_ + row : nullptr;
    return true;
  }

  /// Closes the syllable, which may have no phones, and begins the next.
  void EndSyllable(unsigned char digit) {
    SyllableInfo& syllable = syllables_.emplace_back();
    syllable.language = language_;
    syllable.raw_tone = digit;
    if (!spilled_.empty()) {
      Spill();
      syllable.phones = std::exchange(spilled_, {});
      return;
    }
    syllable.phones.assign(buffer_, buffer_ + buffered_);
    buffered_ = 0;
  }

  /// Takes back everything.
  void Discard() { syllables_.clear(); }

 private:
  static constexpr std::size_t kBufferSize = 16;  // far above the phones of any real syllable

  void Spill() {
    spilled_.insert(spilled_.end(), buffer_, buffer_ + buffered_);
    buffered_ = 0;
  }

  int language_;
  const PhoneInfo* phone_list_;
  std::vector<SyllableInfo>& syllables_;
  const PhoneInfo* buffer_[kBufferSize];
  std::size_t buffered_ = 0;
  std::vector<const PhoneInfo*> spilled_;  // what a longer syllable holds before the buffer
};

class PhoneIdWriter {
 public:
  explicit PhoneIdWriter(std::vector<unsigned char>& phone_ids) : phone_ids_(phone_ids) {}

  bool AddPhone(int row) {
    if (row == NameIndex::kNoRow) return false;
    phone_ids_.push_back(static_cast<unsigned char>(row + kFirstPhoneByte));
    return true;
  }

  void EndSyllable(unsigned char digit) { phone_ids_.push_back(digit); }

  void Discard() { phone_ids_.clear(); }

 private:
  std::vector<unsigned char>& phone_ids_;
};

}  // namespace

int pr2ph(int language, const std::string& pronunciation, std::vector<SyllableInfo>& syllables) {
  syllables.clear();
  const Language& in_use = PronunciationLanguage(language);
  SyllableInfoWriter writer(in_use, syllables);
  return Parser(in_use.phones, pronunciation, writer).Parse();
}

int pr2ph(int language, const std::string& pronunciation, std::vector<unsigned char>& phone_ids) {
  const Language& in_use = PronunciationLanguage(language);
  PhoneIdWriter writer(phone_ids);
  return Parser(in_use.phones, pronunciation, writer).Parse();
}

}  // namespace qeo::sp
