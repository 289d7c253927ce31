// Pronunciation strings: one parser, and a writer for each form of output.

#include <string_view>

#include "phoneme/phone_ids.h"
#include "phoneme/phoneme.h"
#include "phoneme/registry.h"
#include "phoneme/syllable_writer.h"
#include "phoneme/words.h"
#include "xstr/views.h"

namespace qeo::sp {

using namespace internal;

namespace {

constexpr std::string_view kBlanks = "\t\r\n ";

enum class Verdict { kGood, kSinglePiece, kBadPiece };

// Reads a pronunciation string for a writer, which takes the rows of a syllable's phones one by
// one, says false to one that it cannot write, and then takes the digit.
template <typename Writer>
class Parser {
 public:
  Parser(const NameIndex& phones, std::string_view text, Writer& writer)
      : phones_(phones), text_(text), words_(text), writer_(writer) {}

  int Parse() {
    for (std::size_t begin = 0; begin < text_.size();) {
      const std::size_t end = FindComma(begin);
      const std::string_view syllable =
          xstr::TrimView({text_.data() + begin, end - begin}, kBlanks, true);
      begin = end + 1;
      if (syllable.empty()) continue;
      const Verdict verdict = ParseSyllable(syllable);
      if (verdict == Verdict::kGood) continue;
      // A piece that stands alone leaves what was written; a wrong piece takes it all back.
      if (verdict == Verdict::kBadPiece) writer_.Discard();
      return -1;
    }
    return 0;
  }

 private:
  // The place of the first comma from `begin` on, or the text's end.
  std::size_t FindComma(std::size_t begin) const {
    while (begin < text_.size()) {
      const std::size_t skipped = FindByte(words_.From(begin), ',');
      begin += skipped;
      if (skipped < kWordBytes) return begin;
    }
    return text_.size();
  }

  // Parses a syllable that has no blanks at its ends.
  Verdict ParseSyllable(std::string_view syllable) {
    const auto begin = static_cast<std::size_t>(syllable.data() - text_.data());
    const std::size_t end = begin + syllable.size();
    std::size_t piece = begin;
    for (;;) {
      const std::uint64_t word = words_.From(piece);
      const std::size_t length = FindByte(word, ' ');
      if (piece + length >= end) break;
      if (length == kWordBytes && syllable.find(' ') == std::string_view::npos) break;
      const int row = phones_.FindFirst(word, length);
      if (row == NameIndex::kAbsent || !writer_.AddPhone(row)) return Verdict::kBadPiece;
      piece += length + 1;
    }
    if (piece == begin) return Verdict::kSinglePiece;
    if (piece + 1 != end || !IsDigit(text_[piece])) return Verdict::kBadPiece;
    writer_.EndSyllable(static_cast<unsigned char>(text_[piece] - '0'));
    return Verdict::kGood;
  }

  const NameIndex& phones_;
  std::string_view text_;
  WordReader words_;
  Writer& writer_;
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
  const Language& in_use = FindLanguage(language, LANGUAGE_AMERICAN_ENGLISH);
  SyllableWriter writer(in_use, syllables);
  return Parser(in_use.phones, pronunciation, writer).Parse();
}

int pr2ph(int language, const std::string& pronunciation, std::vector<unsigned char>& phone_ids) {
  const Language& in_use = FindLanguage(language, LANGUAGE_AMERICAN_ENGLISH);
  PhoneIdWriter writer(phone_ids);
  return Parser(in_use.phones, pronunciation, writer).Parse();
}

}  // namespace qeo::sp
