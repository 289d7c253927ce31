#include "tools/conversion/notations.h"

#include <optional>

#include "tools/base/decimal.h"
#include "tools/base/usage_error.h"
#include "tools/conversion/languages.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

using notation::FactsOf;
using notation::NotationFacts;

std::vector<Named<Notation>> MakeSources() {
  std::vector<Named<Notation>> sources;
  for (const Notation notation : notation::AllNotations()) {
    const NotationFacts& facts = FactsOf(notation);
    if (facts.is_read) sources.push_back({facts.name.data(), notation});
  }
  return sources;
}

std::vector<Named<Target>> MakeTargets() {
  std::vector<Named<Target>> targets;
  std::vector<Named<Target>> own;  // of one language
  for (const Notation notation : notation::AllNotations()) {
    const NotationFacts& facts = FactsOf(notation);
    if (!facts.is_written) continue;
    // What is written of the library's text is its syllables.
    const char* name = notation == Notation::kText ? "syllables" : facts.name.data();
    (facts.language == 0 ? targets : own).push_back({name, {notation, Records::kNone}});
  }
  targets.insert(targets.end(), own.begin(), own.end());
  targets.push_back({"json", {Notation::kText, Records::kJson}});
  targets.push_back({"tsv", {Notation::kText, Records::kTsv}});
  return targets;
}

// Throws for a notation of another language alone.
void CheckOwner(int language, Notation notation) {
  const NotationFacts& facts = FactsOf(notation);
  if (facts.language != 0 && facts.language != language) {
    throw UsageError(std::string(facts.title) + " is a notation of " +
                     LanguageName(facts.language) + ", not of " + LanguageName(language));
  }
}

}  // namespace

const std::vector<Named<Notation>>& Sources() {
  static const std::vector<Named<Notation>> sources = MakeSources();
  return sources;
}

const std::vector<Named<Target>>& Targets() {
  static const std::vector<Named<Target>> targets = MakeTargets();
  return targets;
}

notation::Writer WriterOf(const Conversion& conversion, Notation to) {
  return notation::Writer(to, conversion.language, HasCodes(conversion.from()),
                          conversion.reading.drops_silently);
}

std::string DescribeTones(int language) {
  const sp::Tones tones = sp::TonesOf(language);
  const char* name = tones.first == 0 ? " stresses are " : " tones are ";
  return LanguageName(language) + name + std::to_string(tones.first) + " to " +
         std::to_string(tones.last);
}

int ParseDefaultTone(int language, std::string_view tone) {
  if (language == sp::LANGUAGE_MANDARIN) {
    throw UsageError(
        "--default-tone does not apply to mandarin: a syllable without a tone has the neutral "
        "tone, 5");
  }
  const sp::Tones tones = sp::TonesOf(language);
  if (tones.none < 0) {
    throw UsageError("--default-tone does not apply to " + LanguageName(language));
  }
  const std::optional<int> digit = ParseNumber<int>(tone);
  if (!digit || *digit < tones.first || *digit > tones.last) {
    throw UsageError("--default-tone: " + Quoted(tone) +
                     " is not a tone: " + DescribeTones(language));
  }
  return *digit;
}

Notation DefaultSource(int language, bool strict) {
  const std::optional<Notation> own = notation::OwnNotation(language);
  if (own && !strict) return *own;
  return SyllableLanguage(language) ? Notation::kText : Notation::kPronunciation;
}

void CheckSource(int language, Notation from) {
  CheckOwner(language, from);
  if (HasCodes(from) && !SyllableLanguage(language)) {
    throw UsageError(LanguageName(language) +
                     " has no syllable table: use --from arpabet, pronunciation or ids");
  }
}

void CheckConversion(const Conversion& conversion) {
  CheckSource(conversion.language, conversion.from());
  if (conversion.to.records != Records::kNone) return;
  CheckOwner(conversion.language, conversion.to.notation);
  if (!FactsOf(conversion.to.notation).has_codes) return;
  if (!SyllableLanguage(conversion.language)) {
    throw UsageError(
        LanguageName(conversion.language) +
        " has no syllable table: use --to phones, toned-phones, ids, pronunciation or arpabet");
  }
  if (!HasCodes(conversion.from())) {
    throw UsageError(
        "phones do not determine their syllable (Mandarin \"yo\" and \"you\" sound alike): use "
        "--from pinyin, jyutping, text or codes");
  }
}

int ServingLanguage(const Conversion& conversion) {
  return notation::ServingLanguage(conversion.from(), conversion.language);
}

}  // namespace qeo::tool
