#include "tools/conversion/reader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "tools/base/decimal.h"
#include "tools/conversion/library_reading.h"
#include "tools/conversion/white_space.h"
#include "tools/report/messages.h"
#include "xstr/xstr.h"

namespace qeo::tool {
namespace {

constexpr char kDigits[] = "0123456789";

// The places of syllables that are each some words, the last of which `is_last` finds.
template <typename IsLast>
std::vector<notation::Range> PlacesOfWords(std::string_view text, IsLast is_last) {
  std::vector<notation::Range> places;
  std::size_t begin = 0;
  bool is_first = true;
  std::string_view rest = text;
  for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
    const notation::Range place = PlaceOf(word, text);
    begin = is_first ? place.offset : begin;
    is_first = is_last(word);
    if (is_first) places.push_back({begin, place.end() - begin});
  }
  return places;
}

// The places of the syllables that a byte closes.
std::vector<notation::Range> PlacesOfIds(std::string_view text) {
  return PlacesOfWords(text, [](std::string_view word) {
    return ParseNumber<int>(word).value_or(0) < sp::kFirstPhoneByte;
  });
}

// The places of the syllables of a pronunciation, between commas, without the blanks that the
// library takes off.
std::vector<notation::Range> PlacesOfSyllables(std::string_view text) {
  std::vector<notation::Range> places;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    const std::string syllable =
        xstr::trim(std::string(text.substr(begin, end - begin)), "\t\r\n ", true);
    if (!syllable.empty()) places.push_back({text.find(syllable, begin), syllable.size()});
    begin = end + 1;
  }
  return places;
}

}  // namespace

void TakeDefaultTone(const Conversion& conversion, sp::SyllableInfo& syllable) {
  const int tone = conversion.default_tone;
  const int none = TonesOf(conversion.language).none;
  if (tone == 0) return;
  if (syllable.tone == none) {
    syllable.tone = static_cast<std::int8_t>(tone);
    syllable.code += static_cast<std::uint32_t>(tone - none);
  } else if (syllable.raw_tone == none) {
    syllable.raw_tone = static_cast<std::uint8_t>(tone);
  }
}

bool Reader::Read(const std::string& text) {
  codes_.clear();
  syllables_.clear();
  places_.clear();
  applied_.clear();
  if (!ReadAs(conversion_.from, text)) return false;
  if (conversion_.default_tone != 0) SetTones();
  return true;
}

void Reader::SetTones() {
  for (unsigned short& code : codes_) {
    Decode(code);
    TakeDefaultTone(conversion_, decoded_);
    code = static_cast<unsigned short>(decoded_.code);
  }
  for (sp::SyllableInfo& syllable : syllables_) TakeDefaultTone(conversion_, syllable);
}

bool Reader::ReadAs(Source from, const std::string& text) {
  switch (from) {
    case Source::kPinyin:
    case Source::kJyutping:
    case Source::kArpabet:
      return ReadWritten(text);
    case Source::kText:
      return ReadText(text) && (conversion_.is_strict || LosesNothing(text));
    case Source::kCodes:
      return ReadCodes(text);
    case Source::kIds:
      return ReadIds(text);
    case Source::kPronunciation:
      return ReadPronunciation(text);
  }
  return false;
}

std::size_t Reader::syllable_count() const {
  return HasCodes(conversion_.from) ? codes_.size() : syllables_.size();
}

const sp::SyllableInfo& Reader::Syllable(std::size_t index) {
  if (!HasCodes(conversion_.from)) return syllables_[index];
  Decode(codes_[index]);
  return decoded_;
}

bool Reader::ReadWritten(const std::string& text) {
  return (!with_places_ && ReadPlainly(text)) || ReadWithPlaces(text);
}

// Most texts have no problem and need no cutting, and then it is enough to normalise them.
bool Reader::ReadPlainly(const std::string& text) {
  const notation::AnalysisOptions& options = conversion_.reading;
  notation::Normalized normalized;
  switch (conversion_.from) {
    case Source::kPinyin:
      normalized = notation::NormalizePinyin(text, options.rules);
      break;
    case Source::kJyutping:
      normalized = notation::NormalizeJyutping(text, options.rules, options.aliases);
      break;
    default:
      normalized = notation::ArpabetToPronunciation(text, options.rules);
  }
  const bool has_tones = normalized.text.find_first_of(kDigits) != std::string::npos;
  if (!normalized.problems.empty() || !has_tones) return false;
  applied_ = std::move(normalized.applied);
  return HasCodes(conversion_.from) ? ReadText(normalized.text)
                                    : ReadPronunciation(normalized.text);
}

bool Reader::ReadWithPlaces(const std::string& text) {
  notation::Analysis analysis = notation::Analyze(conversion_.language, text, conversion_.reading);
  if (!analysis.problems.empty()) {
    const notation::Problem& first = analysis.problems.front();
    const std::string_view kind = notation::ProblemName(first.kind);
    std::string message = std::string(kind) + ' ' + Described(first, text);
    if (analysis.problems.size() > 1) {
      message += ", and " + std::to_string(analysis.problems.size() - 1) + " more";
    }
    Fail(kind, std::move(message));
    failure_.place = first.range;
    return false;
  }
  applied_ = std::move(analysis.applied);
  for (notation::AnalyzedSyllable& syllable : analysis.syllables) {
    places_.push_back(syllable.range);
    if (HasCodes(conversion_.from)) {
      codes_.push_back(static_cast<unsigned short>(syllable.syllable.code));
    } else {
      syllables_.push_back(std::move(syllable.syllable));
    }
  }
  return true;
}

bool Reader::ReadText(const std::string& text) {
  if (sp::py2code(conversion_.language, text, codes_) == 0) return true;
  const notation::Range piece =
      UnknownPiece(conversion_.language, text).value_or(notation::Range{0, text.size()});
  return Unknown("unknown syllable", text, piece);
}

// What the library drops is looked for only where its syllables are shorter than the text.
bool Reader::LosesNothing(const std::string& text) {
  std::size_t spelled = 0;
  for (const unsigned short code : codes_) {
    spelled += sp::code2py(serving_language_, code, false).size();
  }
  if (spelled == CountLetters(text)) return true;
  const std::vector<notation::Range> lost = LettersLost(conversion_.language, text);
  if (lost.empty()) return true;
  Unknown(notation::ProblemName(notation::ProblemKind::kLettersLost), text, lost.front());
  if (lost.size() > 1) failure_.message += ", and " + std::to_string(lost.size() - 1) + " more";
  return false;
}

bool Reader::ReadCodes(std::string_view text) {
  std::string_view rest = text;
  for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
    const std::optional<unsigned short> code = ParseNumber<unsigned short>(word);
    if (!code || !Decode(*code)) return Unknown("unknown syllable code", text, PlaceOf(word, text));
    codes_.push_back(*code);
  }
  return true;
}

// Leaves the syllable of a code in decoded_.
bool Reader::Decode(unsigned short code) {
  decoded_.phones.clear();
  return sp::code2ph(conversion_.language, code, decoded_) == 0;
}

bool Reader::ReadIds(std::string_view text) {
  std::string_view rest = text;
  if (ParseIds(text) && RegroupIds()) {
    const bool is_closed = phone_ids_.empty() || phone_ids_.back() < sp::kFirstPhoneByte;
    return is_closed || conversion_.is_strict || LosePhones(text);
  }
  std::string_view word = TakeWord(rest);
  while (ParseIds(word) && RegroupIds()) word = TakeWord(rest);
  return Unknown("unknown phone-id byte", text, PlaceOf(word, text));
}

// Fails for the phones at the end that no byte closes.
bool Reader::LosePhones(std::string_view text) {
  const std::vector<notation::Range> closed = PlacesOfIds(text);
  const std::size_t end = closed.empty() ? 0 : closed.back().end();
  Fail("phones lost", "phones lost after the last closing byte");
  failure_.place = PlaceOf(Trim(text.substr(end)), text);
  return false;
}

// Leaves the numbers of a text in phone_ids_.
bool Reader::ParseIds(std::string_view text) {
  phone_ids_.clear();
  for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text)) {
    const std::optional<unsigned char> phone_id = ParseNumber<unsigned char>(word);
    if (!phone_id) return false;
    phone_ids_.push_back(*phone_id);
  }
  return true;
}

bool Reader::RegroupIds() { return sp::ph2ph(conversion_.language, phone_ids_, syllables_) == 0; }

// By way of the ids, because only phones that have one have a name to write.
bool Reader::ReadPronunciation(const std::string& text) {
  if (ParsePronunciation(text)) return RegroupIds();
  std::size_t number = 0;
  for (const notation::Range& syllable : PlacesOfSyllables(text)) {
    ++number;
    if (!ParsePronunciation(text.substr(syllable.offset, syllable.length))) {
      FailSyllable(text, syllable, number);
      break;
    }
  }
  return false;
}

// Leaves the phone ids of a pronunciation in phone_ids_.
bool Reader::ParsePronunciation(const std::string& text) {
  phone_ids_.clear();
  return sp::pr2ph(conversion_.language, text, phone_ids_) == 0;
}

// Describes what is wrong with one syllable of a pronunciation, and where.
void Reader::FailSyllable(const std::string& text, notation::Range syllable, std::size_t number) {
  const std::string place = " (syllable " + std::to_string(number) + ')';
  const std::string token = text.substr(syllable.offset, syllable.length);
  const std::vector<std::string> pieces = xstr::split(token, " ", -1);
  if (pieces.size() < 2) {
    Fail("bad tone", "expected phones and a tone digit, found " + Quoted(token) + place);
    failure_.place = syllable;
    return;
  }
  std::size_t offset = syllable.offset;
  for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
    if (!ParsePronunciation("sil " + pieces[i] + " 0")) {
      Fail("unknown phone", "unknown phone " + Quoted(pieces[i]) + place);
      failure_.place = {offset, std::max<std::size_t>(pieces[i].size(), 1)};  // a blank too many
      return;
    }
    offset += pieces[i].size() + 1;
  }
  Fail("bad tone", "expected a tone digit, found " + Quoted(pieces.back()) + place);
  failure_.place = {offset, pieces.back().size()};
}

std::vector<notation::Range> Reader::FindPlaces(const std::string& text) const {
  switch (conversion_.from) {
    case Source::kText:
      return PlacesOfPieces(conversion_.language, text);
    case Source::kCodes:
      return PlacesOfWords(text, [](std::string_view) { return true; });
    case Source::kIds:
      return PlacesOfIds(text);
    case Source::kPronunciation:
      return PlacesOfSyllables(text);
    default:
      Reader reader(conversion_, true);
      reader.Read(text);
      return reader.places();
  }
}

bool Reader::Unknown(std::string_view kind, std::string_view text, notation::Range place) {
  Fail(kind, std::string(kind) + ' ' + Quoted(text.substr(place.offset, place.length)));
  failure_.place = place;
  return false;
}

bool Reader::Fail(std::string_view kind, std::string message) {
  failure_ = {kind, std::move(message), {}};
  codes_.clear();
  syllables_.clear();
  return false;
}

}  // namespace qeo::tool
