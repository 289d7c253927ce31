// Results of the notation library as tuples: ranges as two positions in the caller's own text,
// rules and kinds of problems by name.

#include "bindings/notation.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/languages.h"
#include "bindings/objects.h"
#include "bindings/positions.h"
#include "bindings/syllables.h"
#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::python {

namespace {

py::tuple Applications(const Source& source, const std::vector<notation::Application>& applied) {
  return TupleOf(applied, [&](const notation::Application& application) {
    return py::make_tuple(notation::RuleName(application.rule),
                          source.Positions(application.range));
  });
}

py::tuple Problems(const Source& source, const std::vector<notation::Problem>& problems) {
  return TupleOf(problems, [&](const notation::Problem& problem) {
    return py::make_tuple(notation::ProblemName(problem.kind), source.Positions(problem.range),
                          problem.suggestion, notation::HintName(problem.hint),
                          source.Positions(problem.piece), problem.initial, problem.final);
  });
}

py::tuple NormalizedTuple(const Source& source, const notation::Normalized& normalized) {
  const py::tuple origins = TupleOf(
      normalized.origins, [&](std::size_t origin) { return py::int_(source.Position(origin)); });
  return py::make_tuple(normalized.text, origins, Applications(source, normalized.applied),
                        Problems(source, normalized.problems));
}

using RuleBits = std::optional<std::uint32_t>;

py::tuple NormalizePinyin(py::handle text, RuleBits rules) {
  const Source source(text);
  const auto in_use = rules ? Rules(*rules) : notation::kPinyinRules;
  return NormalizedTuple(source, notation::NormalizePinyin(source.text(), in_use));
}

py::tuple NormalizeJyutping(py::handle text, RuleBits rules, const notation::AliasTable* aliases) {
  const Source source(text);
  const auto in_use = rules ? Rules(*rules) : notation::kJyutpingRules;
  return NormalizedTuple(source, notation::NormalizeJyutping(source.text(), in_use, aliases));
}

py::tuple ArpabetToPronunciation(py::handle text, RuleBits rules) {
  const Source source(text);
  const auto in_use = rules ? Rules(*rules) : notation::kArpabetRules;
  return NormalizedTuple(source, notation::ArpabetToPronunciation(source.text(), in_use));
}

py::tuple PronunciationToArpabet(py::handle text) {
  const Source source(text);
  return NormalizedTuple(source, notation::PronunciationToArpabet(source.text()));
}

// The aliases of a table in the order of its lines, which are those of `text`.
py::dict AliasPairs(const notation::AliasTable& table, std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  py::dict pairs;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    const std::string_view spelling = line.substr(0, line.find('\t'));
    const std::string_view syllable = table.Find(spelling);
    if (!syllable.empty()) pairs[py::str(spelling)] = py::str(syllable);
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return pairs;
}

// A message that may quote bytes that are not UTF-8.
py::object Message(const std::string& message) {
  const auto size = static_cast<Py_ssize_t>(message.size());
  auto text = py::reinterpret_steal<py::object>(
      PyUnicode_DecodeUTF8(message.data(), size, "backslashreplace"));
  if (!text) throw py::error_already_set();
  return text;
}

// (aliases, their pairs as a dict, errors as pairs of line and message)
py::tuple ParseAliases(py::handle object) {
  const std::string text = TextArgument(object.ptr());
  notation::ParsedAliases parsed = notation::AliasTable::Parse(text);
  const py::tuple errors = TupleOf(parsed.errors, [](const notation::AliasError& error) {
    return py::make_tuple(error.line, Message(error.message));
  });
  const py::dict pairs = AliasPairs(parsed.table, text);
  return py::make_tuple(std::move(parsed.table), pairs, errors);
}

// Refuses a notation of another language, which the library would read as that one.
notation::Notation NotationOf(int number, int language) {
  const auto notation = static_cast<notation::Notation>(number);
  const notation::NotationFacts& facts = notation::FactsOf(notation);
  if (facts.language == 0 || facts.language == language) return notation;
  std::string owner;
  for (const sp::LanguageNames& names : sp::Languages()) {
    if (names.id == facts.language) owner = names.name;
  }
  throw py::value_error(std::string(facts.title) + " is a notation of " + owner + " alone");
}

py::tuple Analyze(py::handle text, py::handle language, RuleBits rules,
                  const notation::AliasTable* aliases, int cutting, py::handle fallback,
                  std::optional<int> notation) {
  const Source source(text);
  notation::AnalysisOptions options;
  if (rules) options.rules = Rules(*rules);
  options.aliases = aliases;
  options.cutting = static_cast<notation::Cutting>(cutting);
  const int id = LanguageArgument(language.ptr(), fallback.ptr());
  if (notation) options.notation = NotationOf(*notation, id);
  const notation::Analysis analysis = notation::Analyze(id, source.text(), options);
  const py::tuple syllables =
      TupleOf(analysis.syllables, [&](const notation::AnalyzedSyllable& syllable) {
        const std::string digit(syllable.digit == '\0' ? 0 : 1, syllable.digit);
        const py::object row = syllable.row < 0 ? py::object(py::none()) : py::int_(syllable.row);
        return py::make_tuple(syllable.spelling, digit, source.Positions(syllable.range), row,
                              MakeSyllable(syllable.syllable));
      });
  const py::tuple separators = TupleOf(
      analysis.separators, [&](const notation::Range& range) { return source.Positions(range); });
  return py::make_tuple(syllables, separators, Applications(source, analysis.applied),
                        Problems(source, analysis.problems));
}

py::tuple CutTuple(const Source& source, const std::vector<notation::CutSyllable>& syllables) {
  return TupleOf(syllables, [&](const notation::CutSyllable& syllable) {
    return py::make_tuple(source.Positions(syllable.range), syllable.row);
  });
}

py::tuple CutWhole(py::handle letters, py::handle language, py::handle max_cuts,
                   py::handle fallback) {
  const Source source(letters);
  const int id = LanguageArgument(language.ptr(), fallback.ptr());
  const long most = IntegerArgument(max_cuts.ptr(), 0, LONG_MAX, "max_cuts");
  const notation::Cut cut = notation::CutWhole(id, source.text(), static_cast<std::size_t>(most));
  const bool is_counted = cut.count != notation::kUncountedCuts;
  const py::object count = is_counted ? py::object(py::int_(cut.count)) : py::none();
  const py::tuple cuts =
      TupleOf(cut.cuts, [&](const auto& syllables) { return CutTuple(source, syllables); });
  return py::make_tuple(cut.covers, CutTuple(source, cut.syllables), count, cuts,
                        cut.directions_differ);
}

// Spelling takes all codes or all syllables, and gives the text or the index of what cannot be
// written.

using Codes = std::vector<unsigned short>;
using Syllables = std::vector<sp::SyllableInfo>;

py::object SpellingOrIndex(const notation::Spelling& spelling) {
  if (spelling.unwritable) return py::int_(*spelling.unwritable);
  return py::str(spelling.text);
}

Syllables SyllablesOf(const py::tuple& items) {
  Syllables syllables;
  for (const py::handle item : items) syllables.push_back(SyllableArgument(item.ptr()));
  return syllables;
}

Codes CodesOf(const py::tuple& items) {
  Codes codes;
  for (const py::handle item : items) {
    const long code = IntegerArgument(item.ptr(), 0, UINT16_MAX, "a syllable code");
    codes.push_back(static_cast<unsigned short>(code));
  }
  return codes;
}

template <notation::Spelling (*kFromCodes)(const Codes&, notation::Spacing),
          notation::Spelling (*kFromSyllables)(const Syllables&, notation::Spacing)>
py::object Spell(const py::tuple& items, bool with_spaces) {
  const auto spacing = with_spaces ? notation::Spacing::kSpace : notation::Spacing::kWord;
  if (!items.empty() && IsSyllable(py::object(items[0]).ptr())) {
    return SpellingOrIndex(kFromSyllables(SyllablesOf(items), spacing));
  }
  return SpellingOrIndex(kFromCodes(CodesOf(items), spacing));
}

py::object PronunciationString(const py::tuple& items) {
  return SpellingOrIndex(notation::PronunciationString(SyllablesOf(items)));
}

py::tuple RuleNames() {
  py::tuple names(notation::kRuleCount);
  for (int i = 0; i < notation::kRuleCount; ++i) {
    names[static_cast<std::size_t>(i)] = notation::RuleName(static_cast<notation::Rule>(i));
  }
  return names;
}

// The notations that are read, by name.
py::dict Notations() {
  py::dict notations;
  for (const notation::Notation notation : notation::AllNotations()) {
    const notation::NotationFacts& facts = notation::FactsOf(notation);
    if (facts.is_read) notations[py::str(facts.name)] = static_cast<int>(notation);
  }
  return notations;
}

std::uint32_t DefaultRules() {
  std::uint32_t bits = 0;
  for (int i = 0; i < notation::kRuleCount; ++i) {
    const bool has_rule = notation::AnalysisOptions().rules.Has(static_cast<notation::Rule>(i));
    bits |= std::uint32_t{has_rule} << i;
  }
  return bits;
}

}  // namespace

notation::RuleSet Rules(std::uint32_t bits) {
  notation::RuleSet rules;
  for (int i = 0; i < notation::kRuleCount; ++i) {
    if ((bits >> i & 1U) != 0) rules = rules.With(static_cast<notation::Rule>(i));
  }
  return rules;
}

void AddNotation(py::module_& module) {
  py::class_<notation::AliasTable>(module, "AliasTable")
      .def("__len__", &notation::AliasTable::size);
  module.attr("RULE_NAMES") = RuleNames();
  module.attr("NOTATIONS") = Notations();
  module.attr("DEFAULT_RULES") = DefaultRules();
  module.def("normalize_pinyin", NormalizePinyin);
  module.def("normalize_jyutping", NormalizeJyutping);
  module.def("arpabet_to_pronunciation", ArpabetToPronunciation);
  module.def("pronunciation_to_arpabet", PronunciationToArpabet);
  module.def("parse_aliases", ParseAliases);
  module.def("analyze", Analyze);
  module.def("cut_whole", CutWhole);
  module.def("marked_pinyin", Spell<notation::MarkedPinyin, notation::MarkedPinyin>);
  module.def("jyutping", Spell<notation::Jyutping, notation::Jyutping>);
  module.def("pronunciation_string", PronunciationString);
}

}  // namespace qeo::python
