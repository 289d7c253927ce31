// Reads the notations that the library itself passes around, with places and all problems: text,
// codes, ids, pronunciations.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>
#include <vector>

#include "notation/analysis.h"
#include "notation/notation_table.h"
#include "notation/token.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation::internal {
namespace {

Range TrimmedBlanks(std::string_view text, Range range) {
  constexpr std::string_view kBlanks = "\t\r\n ";  // those that pr2ph takes off a syllable
  const std::string_view bytes = text.substr(range.offset, range.length);
  const std::size_t begin = bytes.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {range.offset, 0};
  return {range.offset + begin, bytes.find_last_not_of(kBlanks) + 1 - begin};
}

// Reads a whole text as one decimal number.
template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<std::uint16_t> ParseCode(const sp::SpMapping& set, std::string_view word) {
  const auto code = ParseNumber<std::uint16_t>(word);
  const bool is_known =
      code && static_cast<std::uint64_t>(*code / sp::kTonesPerRow) < set.pinyin_count;
  return is_known ? code : std::nullopt;
}

// Whether a byte is that of a phone of a language, or closes a syllable.
bool IsByteOf(int language, std::uint8_t byte) {
  const int id = byte - sp::kFirstPhoneByte;
  return id < 0 || sp::GetPhoneInfoById(language, id)->id == id;
}

char DigitOf(int number) { return static_cast<char>('0' + number); }

// A syllable without a row: the names of its phones, and the digit that closes it.
AnalyzedSyllable WithoutRow(sp::SyllableInfo record, Range range) {
  AnalyzedSyllable syllable;
  for (const sp::PhoneInfo* phone : record.phones) {
    if (!syllable.spelling.empty()) syllable.spelling += ' ';
    syllable.spelling += phone->name;
  }
  syllable.digit = DigitOf(record.raw_tone);
  syllable.range = range;
  syllable.syllable = std::move(record);
  return syllable;
}

// A syllable that is not read, for what is at `piece`.
Problem ProblemIn(Range syllable, ProblemKind kind, Range piece) {
  Problem problem = {kind, syllable, {}};
  problem.piece = piece;
  return problem;
}

class TextReader {
 public:
  TextReader(int language, std::string_view text, bool drops_silently)
      : language_(language), text_(text), drops_silently_(drops_silently) {}

  Analysis Read() {
    std::vector<sp::TextPiece> pieces;
    sp::FindPieces(language_, text_, pieces);
    const sp::SpMapping& set = *sp::FindPhoneSet(language_);
    for (const sp::TextPiece& piece : pieces) {
      const Range range = {piece.offset, piece.length};
      AddLost(range.offset);
      placed_ = range.end();
      if (piece.row < 0) {
        analysis_.problems.push_back({ProblemKind::kUnknownSyllable, range, {}});
        continue;
      }
      const char last = text_[placed_ - 1];
      SetSyllable(language_, set, piece.row, ascii::IsDigit(last) ? last : '\0', range,
                  analysis_.syllables.emplace_back());
    }
    AddLost(text_.size());
    return std::move(analysis_);
  }

 private:
  // What the library drops silently, from the last piece to `end`: each run of it is a problem.
  void AddLost(std::size_t end) {
    if (drops_silently_) return;
    for (std::size_t at = placed_; at < end; ++at) {
      if (sp::IsSeparator(text_[at])) continue;
      const std::size_t begin = at;
      while (at < end && !sp::IsSeparator(text_[at])) ++at;
      analysis_.problems.push_back({ProblemKind::kLettersLost, {begin, at - begin}, {}});
    }
  }

  int language_;
  std::string_view text_;
  bool drops_silently_;
  std::size_t placed_ = 0;  // up to here every byte is in a piece, or lost
  Analysis analysis_;
};

// Reads the bytes of phones, in words, which a byte below kFirstPhoneByte closes.
class IdReader {
 public:
  IdReader(int language, std::string_view text, bool drops_silently)
      : language_(language), text_(text), drops_silently_(drops_silently) {}

  Analysis Read() {
    for (Range word = NextToken(text_, 0, text_.size()); word.length != 0;
         word = NextToken(text_, word.end(), text_.size())) {
      AddWord(word);
    }
    const bool is_lost = unknown_.length != 0 || (syllable_.length != 0 && !drops_silently_);
    if (is_lost) ReportSyllable();
    return std::move(analysis_);
  }

 private:
  void AddWord(Range word) {
    if (syllable_.length == 0) syllable_.offset = word.offset;
    syllable_.length = word.end() - syllable_.offset;
    const auto byte = ParseNumber<std::uint8_t>(BytesOf(text_, word));
    const bool is_known = byte && IsByteOf(language_, *byte);
    if (!is_known && unknown_.length == 0) unknown_ = word;
    if (is_known) bytes_.push_back(*byte);
    if (is_known && *byte < sp::kFirstPhoneByte) CloseSyllable();
  }

  void CloseSyllable() {
    if (unknown_.length != 0) return ReportSyllable();
    sp::ph2ph(language_, bytes_, records_);
    analysis_.syllables.push_back(WithoutRow(std::move(records_.front()), syllable_));
    BeginSyllable();
  }

  // A syllable with a byte that is none, or that no byte closes.
  void ReportSyllable() {
    const bool has_unknown = unknown_.length != 0;
    const auto kind = has_unknown ? ProblemKind::kUnknownPhoneId : ProblemKind::kPhonesLost;
    analysis_.problems.push_back(ProblemIn(syllable_, kind, has_unknown ? unknown_ : syllable_));
    BeginSyllable();
  }

  void BeginSyllable() {
    bytes_.clear();
    syllable_ = {};
    unknown_ = {};
  }

  int language_;
  std::string_view text_;
  bool drops_silently_;
  std::vector<unsigned char> bytes_;  // of the syllable that is not closed
  Range syllable_;                    // where it is, of length 0 before its first word
  Range unknown_;                     // its first word that is not a byte of the language
  std::vector<sp::SyllableInfo> records_;
  Analysis analysis_;
};

// Reads syllables between commas, by way of the ids, because only phones that have one have a name
// to write.
class PronunciationReader {
 public:
  PronunciationReader(int language, std::string_view text) : language_(language), text_(text) {}

  Analysis Read() {
    for (std::size_t begin = 0; begin < text_.size();) {
      const std::size_t end = std::min(text_.find(',', begin), text_.size());
      const Range syllable = TrimmedBlanks(text_, {begin, end - begin});
      if (syllable.length != 0) ReadSyllable(syllable);
      begin = end + 1;
    }
    return std::move(analysis_);
  }

 private:
  void ReadSyllable(Range range) {
    if (!Parse(std::string(text_.substr(range.offset, range.length)))) {
      return analysis_.problems.push_back(FindProblem(range));
    }
    sp::ph2ph(language_, bytes_, records_);
    analysis_.syllables.push_back(WithoutRow(std::move(records_.front()), range));
  }

  bool Parse(const std::string& syllable) {
    bytes_.clear();
    return sp::pr2ph(language_, syllable, bytes_) == 0;
  }

  // What is wrong with a syllable: the first name that is not a phone, else its end, which is not
  // a digit. The names are between single blanks.
  Problem FindProblem(Range syllable) {
    const std::size_t last_blank = BytesOf(text_, syllable).rfind(' ');
    if (last_blank == std::string_view::npos) {
      return ProblemIn(syllable, ProblemKind::kBadTone, syllable);
    }
    const std::size_t last = syllable.offset + last_blank;
    for (std::size_t begin = syllable.offset; begin <= last;) {
      const std::size_t end = text_.find(' ', begin);
      const std::string name(text_.substr(begin, end - begin));
      if (!Parse("sil " + name + " 0")) {
        const std::size_t length = std::max<std::size_t>(name.size(), 1);  // a blank too many
        return ProblemIn(syllable, ProblemKind::kUnknownPhone, {begin, length});
      }
      begin = end + 1;
    }
    return ProblemIn(syllable, ProblemKind::kBadTone, {last + 1, syllable.end() - last - 1});
  }

  int language_;
  std::string_view text_;
  std::vector<unsigned char> bytes_;
  std::vector<sp::SyllableInfo> records_;
  Analysis analysis_;
};

}  // namespace

Analysis ReadNothing(int /*language*/, std::string_view text, const AnalysisOptions& /*options*/) {
  Analysis analysis;
  if (!text.empty()) analysis.problems.push_back({ProblemKind::kForeignText, {0, text.size()}, {}});
  return analysis;
}

Analysis ReadText(int language, std::string_view text, const AnalysisOptions& options) {
  return TextReader(language, text, options.drops_silently).Read();
}

Analysis ReadCodes(int language, std::string_view text, const AnalysisOptions& /*options*/) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  Analysis analysis;
  for (Range word = NextToken(text, 0, text.size()); word.length != 0;
       word = NextToken(text, word.end(), text.size())) {
    const auto code = ParseCode(set, BytesOf(text, word));
    if (!code) {
      analysis.problems.push_back({ProblemKind::kUnknownCode, word, {}});
      continue;
    }
    const int row = *code / sp::kTonesPerRow;
    const int tone = *code % sp::kTonesPerRow;
    AnalyzedSyllable& syllable = analysis.syllables.emplace_back();
    SetSyllable(language, set, row, DigitOf(tone), word, syllable);
    syllable.syllable.tone = static_cast<std::int8_t>(tone);  // any digit
    syllable.syllable.code = *code;
  }
  return analysis;
}

bool ParseCodes(int language, std::string_view text, std::vector<unsigned short>& codes) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  codes.clear();
  for (Range word = NextToken(text, 0, text.size()); word.length != 0;
       word = NextToken(text, word.end(), text.size())) {
    const auto code = ParseCode(set, BytesOf(text, word));
    if (!code) return false;
    codes.push_back(*code);
  }
  return true;
}

bool ParseIds(std::string_view text, std::vector<unsigned char>& phone_ids) {
  phone_ids.clear();
  for (Range word = NextToken(text, 0, text.size()); word.length != 0;
       word = NextToken(text, word.end(), text.size())) {
    const auto byte = ParseNumber<std::uint8_t>(BytesOf(text, word));
    if (!byte) return false;
    phone_ids.push_back(*byte);
  }
  return true;
}

Analysis ReadIds(int language, std::string_view text, const AnalysisOptions& options) {
  return IdReader(language, text, options.drops_silently).Read();
}

Analysis ReadPronunciation(int language, std::string_view text,
                           const AnalysisOptions& /*options*/) {
  return PronunciationReader(language, text).Read();
}

}  // namespace qeo::notation::internal
