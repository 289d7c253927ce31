// Asks the library and notation/ all they know about a text, and lays the answers out in tables
// that fit a terminal. One function a section, in the order of the screen.

#include "tools/commands/explain.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "notation/notation.h"
#include "phoneme/phoneme.h"
#include "tools/commands/cut_comparison.h"
#include "tools/commands/language_tables.h"
#include "tools/commands/phone_features.h"
#include "tools/conversion/failures.h"
#include "tools/conversion/languages.h"
#include "tools/conversion/notations.h"
#include "tools/report/messages.h"
#include "tools/report/terminal_table.h"
#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

// Rows of a list that are shown; an ordinary word has fewer.
constexpr std::size_t kMaxRules = 6;
constexpr std::size_t kMaxSyllables = 6;
constexpr std::size_t kMaxPhones = 6;
constexpr std::size_t kMaxProblems = 4;

std::string OrDash(std::string_view text) { return text.empty() ? "-" : std::string(text); }

// Appends a section: the first `max_rows` items of a list, each as the row that `row_of` makes.
template <typename List, typename RowOf>
void AppendSection(const char* title, const std::vector<Column>& columns, const List& list,
                   std::size_t max_rows, RowOf row_of, std::string& out) {
  out.append("\n").append(title);
  if (list.empty()) {
    out += ": none\n";
    return;
  }
  out += '\n';
  const std::size_t row_count = std::min(list.size(), max_rows);
  std::vector<Row> rows;
  for (std::size_t i = 0; i < row_count; ++i) rows.push_back(row_of(list[i]));
  AppendTable(columns, rows, list.size() - row_count, out);
}

// The columns of what has a place in the text.
std::vector<Column> PlacedColumns(std::vector<Column> columns) {
  columns.insert(columns.begin(), {{"offset", true}, {"bytes", true}, {"text", false}});
  return columns;
}

using Syllables = std::vector<sp::SyllableInfo>;

// What AppendExplanation shows, section by section.
class Explanation {
 public:
  Explanation(int language, const std::string& text, const notation::AnalysisOptions& options)
      : language_(language),
        tables_(*sp::FindPhoneSet(language)),
        text_(text),
        options_(options),
        analysis_(notation::Analyze(language, text, options)),
        ids_(WriterOf(Notation::kIds)) {
    for (const notation::AnalyzedSyllable& syllable : analysis_.syllables) {
      records_.push_back(syllable.syllable);
    }
  }

  void Append(std::string& out) const {
    AppendText(out);
    AppendRules(out);
    AppendSyllables(out);
    AppendPhones(out);
    AppendWholeText(out);
    AppendCuts(out);
    AppendProblems(out);
    AppendHints(out);
    AppendWithoutRules(out);
  }

  bool HasProblems() const { return !analysis_.problems.empty(); }

 private:
  bool HasSyllableTable() const { return tables_.pinyin_count != 0; }
  Row Placed(notation::Range range, std::size_t cells, Row facts) const;

  void AppendText(std::string& out) const;
  void AppendRules(std::string& out) const;
  void AppendSyllables(std::string& out) const;
  void AppendEnglishSyllables(std::string& out) const;
  void AppendPhones(std::string& out) const;
  void AppendWholeText(std::string& out) const;
  notation::Writer WriterOf(Notation to) const;
  void AppendNotation(const char* label, Notation to, const char* separator,
                      std::string& out) const;
  std::string Ids(const sp::SyllableInfo& syllable) const;
  void AppendCuts(std::string& out) const;
  void AppendProblems(std::string& out) const;
  void AppendHints(std::string& out) const;
  void AppendWithoutRules(std::string& out) const;
  std::string InLibraryNotation(const Syllables& records) const;

  int language_;
  const sp::SpMapping& tables_;
  const std::string& text_;
  const notation::AnalysisOptions& options_;
  notation::Analysis analysis_;
  notation::Writer ids_;
  Syllables records_;  // of the syllables of analysis_
};

// Puts the place of something, and its bytes fitted into `cells`, before what is known of it.
Row Explanation::Placed(notation::Range range, std::size_t cells, Row facts) const {
  const std::string_view bytes = std::string_view(text_).substr(range.offset, range.length);
  facts.insert(facts.begin(),
               {std::to_string(range.offset), std::to_string(range.length), Quote(bytes, cells)});
  return facts;
}

void Explanation::AppendText(std::string& out) const {
  const std::string facts = LanguageName(language_) + ", " + Counted(text_.size(), "byte") + ": ";
  out += facts + Quote(text_, kScreenWidth - facts.size()) + '\n';
}

void Explanation::AppendRules(std::string& out) const {
  AppendSection(
      "rules applied", PlacedColumns({{"rule", false}}), analysis_.applied, kMaxRules,
      [this](const notation::Application& application) -> Row {
        return Placed(application.range, 30, {std::string(notation::RuleName(application.rule))});
      },
      out);
}

void Explanation::AppendSyllables(std::string& out) const {
  if (!HasSyllableTable()) return AppendEnglishSyllables(out);
  const std::vector<Column> columns = PlacedColumns({{"syllable", false},
                                                     {"tone", false},
                                                     {"row", true},
                                                     {"code", true},
                                                     {"initial", false},
                                                     {"final", false},
                                                     {"phone ids", false}});
  AppendSection(
      "syllables", columns, analysis_.syllables, kMaxSyllables,
      [this](const notation::AnalyzedSyllable& syllable) -> Row {
        const sp::PinyinInfo& row = tables_.pinyin_list[syllable.row];
        const std::string digit(syllable.digit == '\0' ? "-" : std::string(1, syllable.digit));
        return Placed(syllable.range, 16,
                      {syllable.spelling, digit + " -> " + std::to_string(syllable.syllable.tone),
                       std::to_string(syllable.row), std::to_string(syllable.syllable.code),
                       OrDash(row.initial), OrDash(row.final), Ids(syllable.syllable)});
      },
      out);
}

void Explanation::AppendEnglishSyllables(std::string& out) const {
  AppendSection(
      "syllables", PlacedColumns({{"phones", false}, {"stress", true}, {"phone ids", false}}),
      analysis_.syllables, kMaxSyllables,
      [this](const notation::AnalyzedSyllable& syllable) -> Row {
        return Placed(syllable.range, 24,
                      {Fitted(syllable.spelling, 20), std::to_string(syllable.syllable.raw_tone),
                       Fitted(Ids(syllable.syllable), 20)});
      },
      out);
}

// The phones of the text, each once.
void Explanation::AppendPhones(std::string& out) const {
  if (records_.empty()) return;
  std::vector<const sp::PhoneInfo*> phones;
  for (const sp::SyllableInfo& record : records_) {
    for (const sp::PhoneInfo* phone : record.phones) {
      if (std::find(phones.begin(), phones.end(), phone) == phones.end()) phones.push_back(phone);
    }
  }
  std::vector<Column> columns = {
      {"phone", false}, {"id", true}, {"byte", true}, {"type", false}, {"features", false}};
  if (HasSyllableTable()) columns.pop_back();
  AppendSection(
      "phones", columns, phones, kMaxPhones,
      [this](const sp::PhoneInfo* phone) -> Row {
        return {phone->name, std::to_string(phone->id),
                std::to_string(phone->id + sp::kFirstPhoneByte),
                TypeName(phone->type, HasSyllableTable()), OrDash(FeatureWords(*phone))};
      },
      out);
}

void Explanation::AppendWholeText(std::string& out) const {
  if (records_.empty()) return;
  out += "\nthe whole text\n";
  if (HasSyllableTable()) AppendNotation("codes", Notation::kCodes, " ", out);
  AppendNotation("phone ids", Notation::kIds, " ", out);
  AppendNotation("pronunciation", Notation::kPronunciation, ", ", out);
  if (language_ == sp::LANGUAGE_MANDARIN)
    AppendNotation("marks", Notation::kMarkedPinyin, " ", out);
}

notation::Writer Explanation::WriterOf(Notation to) const {
  return notation::Writer(to, language_, HasSyllableTable());
}

// The text in a notation, or the first syllable that it cannot express.
void Explanation::AppendNotation(const char* label, Notation to, const char* separator,
                                 std::string& out) const {
  const notation::Writer writer = WriterOf(to);
  std::string written;
  if (const auto gap = writer.Write(records_, written)) {
    const std::string kind(notation::GapName(writer.FindGap(records_[*gap])));
    written = "none: " + kind + " in syllable " + std::to_string(*gap + 1) + ", " +
              Quote(analysis_.syllables[*gap].spelling, 24);
    separator = "\n";
  }
  AppendLine(label, written, separator, out);
}

std::string Explanation::Ids(const sp::SyllableInfo& syllable) const {
  std::string ids;
  return ids_.Append(syllable, ids) ? ids : "-";
}

void Explanation::AppendCuts(std::string& out) const {
  if (!HasSyllableTable()) return;
  const notation::Normalized normalized =
      language_ == sp::LANGUAGE_CANTONESE
          ? notation::NormalizeJyutping(text_, options_.rules, options_.aliases)
          : notation::NormalizePinyin(text_, options_.rules);
  AppendCutsOfWords(language_, normalized.text, options_.cutting, out);
}

void Explanation::AppendProblems(std::string& out) const {
  AppendSection(
      "problems", PlacedColumns({{"problem", false}}), analysis_.problems, kMaxProblems,
      [this](const notation::Problem& problem) -> Row {
        return Placed(problem.range, 30, {std::string(notation::ProblemName(problem.kind))});
      },
      out);
}

// The hints of the problems, each with the place of the piece that it is about, which its words
// need not repeat.
void Explanation::AppendHints(std::string& out) const {
  std::vector<notation::Problem> hinted;
  for (const notation::Problem& problem : analysis_.problems) {
    if (problem.hint != notation::Hint::kNone) {
      hinted.push_back(problem);
      hinted.back().range = problem.piece;
    }
  }
  if (hinted.empty()) return;
  AppendSection(
      "hints", PlacedColumns({{"hint", false}}), hinted, kMaxProblems,
      [this](const notation::Problem& problem) -> Row {
        return Placed(problem.range, 16, {HintText(problem, text_)});
      },
      out);
}

// What the library drops of a text that it reads: "uo" at 6, "P" at 12.
std::string ShowLost(int language, const std::string& text) {
  notation::AnalysisOptions options;
  options.notation = Notation::kText;
  std::string shown;
  for (const notation::Problem& lost : notation::Analyze(language, text, options).problems) {
    const auto [offset, length] = lost.range;
    shown += shown.empty() ? "" : ", ";
    shown += Quote(std::string_view(text).substr(offset, length), 24);
    shown += " at " + std::to_string(offset);
  }
  return shown.empty() ? "nothing" : shown;
}

bool IsSame(const sp::SyllableInfo& a, const sp::SyllableInfo& b) {
  return a.phones == b.phones && a.code == b.code && a.tone == b.tone && a.raw_tone == b.raw_tone;
}

// How the library itself reads the text, and what it drops without a failure.
void Explanation::AppendWithoutRules(std::string& out) const {
  out += "\nwithout rules\n";
  notation::AnalysisOptions options;
  options.notation = DefaultSource(language_, true);
  options.drops_silently = true;
  notation::Reader reader(language_, options);
  if (!reader.Read(text_)) {
    const Failure failure = FailureOf(*options.notation, reader.problems(), text_);
    return AppendLine("fails", failure.message, "\n", out);
  }
  Syllables records;
  for (std::size_t i = 0; i < reader.size(); ++i) records.push_back(reader.Syllable(i));
  AppendLine("reads", InLibraryNotation(records), " ", out);
  // A pronunciation that is read at all is read whole.
  AppendLine("loses", HasSyllableTable() ? ShowLost(language_, text_) : "nothing", ", ", out);
}

// What the library reads without rules, in its own notation.
std::string Explanation::InLibraryNotation(const Syllables& records) const {
  if (records.empty()) return "nothing";
  if (std::equal(records.begin(), records.end(), records_.begin(), records_.end(), IsSame)) {
    return "the same";
  }
  if (!HasSyllableTable()) return notation::PronunciationString(records).text;
  std::string text;
  notation::Writer(Notation::kText, language_, true, true).Write(records, text);
  return text;
}

}  // namespace

bool AppendExplanation(int language, const std::string& text,
                       const notation::AnalysisOptions& options, std::string& out) {
  const Explanation explanation(language, text, options);
  explanation.Append(out);
  return !explanation.HasProblems();
}

}  // namespace qeo::tool
