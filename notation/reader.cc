#include "notation/reader.h"

#include <algorithm>
#include <utility>

#include "notation/notation_table.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

bool HasDigit(std::string_view text) {
  return std::any_of(text.begin(), text.end(), ascii::IsDigit);
}

}  // namespace

Reader::Reader(int language, const AnalysisOptions& options, bool with_places)
    : language_(language),
      options_(options),
      with_places_(with_places),
      notation_(options.notation.value_or(OwnNotation(language).value_or(Notation::kPinyin))),
      has_codes_(FactsOf(notation_).has_codes) {}

bool Reader::Read(const std::string& text) {
  codes_.clear();
  syllables_.clear();
  places_.clear();
  applied_.clear();
  problems_.clear();
  if (with_places_ || !ReadPlainly(text)) return Analyse(text);
  if (options_.default_tone != 0) SetTones();
  return true;
}

// Most texts have no problem and need no cutting. Returns false for any other.
bool Reader::ReadPlainly(const std::string& text) {
  switch (notation_) {
    case Notation::kPinyin:
      return ReadNormalized(NormalizePinyin(text, options_.rules));
    case Notation::kJyutping:
      return ReadNormalized(NormalizeJyutping(text, options_.rules, options_.aliases));
    case Notation::kArpabet:
      return ReadNormalized(ArpabetToPronunciation(text, options_.rules));
    case Notation::kText:
      return ReadCodes(text) && (options_.drops_silently || LosesNothing(text));
    case Notation::kCodes:
      return internal::ParseCodes(ServingLanguage(notation_, language_), text, codes_);
    case Notation::kIds:
      return ReadIds(text);
    case Notation::kPronunciation:
      return ReadPronunciation(text);
    default:
      return false;
  }
}

bool Reader::ReadNormalized(Normalized normalized) {
  if (!normalized.problems.empty() || !HasDigit(normalized.text)) return false;
  applied_ = std::move(normalized.applied);
  return has_codes_ ? ReadCodes(normalized.text) : ReadPronunciation(normalized.text);
}

bool Reader::ReadCodes(const std::string& text) {
  return sp::py2code(language_, text, codes_) == 0;
}

bool Reader::ReadIds(const std::string& text) {
  if (!internal::ParseIds(text, phone_ids_)) return false;
  if (sp::ph2ph(language_, phone_ids_, syllables_) != 0) return false;
  const bool is_closed = phone_ids_.empty() || phone_ids_.back() < sp::kFirstPhoneByte;
  return is_closed || options_.drops_silently;
}

// By way of the ids, because only phones that have one have a name to write.
bool Reader::ReadPronunciation(const std::string& text) {
  phone_ids_.clear();
  if (sp::pr2ph(language_, text, phone_ids_) != 0) return false;
  sp::ph2ph(language_, phone_ids_, syllables_);
  return true;
}

// What the library drops is between its syllables, which are shorter than the text then.
bool Reader::LosesNothing(const std::string& text) const {
  const int serving = ServingLanguage(notation_, language_);
  std::size_t spelled = 0;
  for (const unsigned short code : codes_) spelled += sp::code2py(serving, code, false).size();
  const auto is_letter = [](char c) { return !sp::IsSeparator(c) && !ascii::IsDigit(c); };
  return spelled == static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_letter));
}

bool Reader::Analyse(const std::string& text) {
  codes_.clear();
  syllables_.clear();
  applied_.clear();
  Analysis analysis = Analyze(language_, text, options_);
  problems_ = std::move(analysis.problems);
  if (!problems_.empty()) return false;
  applied_ = std::move(analysis.applied);
  for (AnalyzedSyllable& syllable : analysis.syllables) {
    if (with_places_) places_.push_back(syllable.range);
    if (has_codes_) {
      codes_.push_back(static_cast<unsigned short>(syllable.syllable.code));
    } else {
      syllables_.push_back(std::move(syllable.syllable));
    }
  }
  return true;
}

void Reader::SetTones() {
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    Syllable(i);
    internal::TakeDefaultTone(options_.default_tone, decoded_);
    codes_[i] = static_cast<unsigned short>(decoded_.code);
  }
  for (sp::SyllableInfo& syllable : syllables_) {
    internal::TakeDefaultTone(options_.default_tone, syllable);
  }
}

const sp::SyllableInfo& Reader::Syllable(std::size_t index) {
  if (!has_codes_) return syllables_[index];
  decoded_.phones.clear();
  sp::code2ph(ServingLanguage(notation_, language_), codes_[index], decoded_);
  return decoded_;
}

}  // namespace qeo::notation
