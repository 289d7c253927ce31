// ReadEntry: for each format the kind, the word and the pronunciation are those of a slow form that
// takes the words of the line one by one; all are views into the line.

#include "fuzz/fuzzing.h"
#include "lexicon/lexicon.h"
#include "notation/arpabet.h"
#include "xstr/xstr.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using lexicon::EntryKind;
using lexicon::Format;

constexpr char kBlanks[] = "\t\n\v\f\r ";

struct SlowEntry {
  EntryKind kind = EntryKind::kBroken;
  std::string word;
  std::string text;
};

SlowEntry Make(const std::string& word, const std::string& text) {
  return {word.empty() || text.empty() ? EntryKind::kBroken : EntryKind::kEntry, word, text};
}

std::string Trim(const std::string& text) { return xstr::trim(text, kBlanks, true); }

std::string TakeWord(std::string& line) {
  std::string word;
  while (!line.empty() && std::string(kBlanks).find(line[0]) == std::string::npos) {
    word += line[0];
    line.erase(0, 1);
  }
  line = xstr::trim(line, kBlanks, false);
  return word;
}

SlowEntry ReadTsv(const std::string& line, std::size_t column) {
  if (line.compare(0, 2, "# ") == 0) return {EntryKind::kComment, "", ""};
  const std::vector<std::string> fields = xstr::split(line, "\t", 0);
  if (column == 0 || fields.size() < column) return {};
  return {EntryKind::kEntry, "", fields[column - 1]};
}

SlowEntry ReadCedict(std::string line, lexicon::Headword headword) {
  const std::string traditional = TakeWord(line);
  const std::string simplified = TakeWord(line);
  const std::string& word = headword == lexicon::Headword::kTraditional ? traditional : simplified;
  const std::vector<std::string> parts = xstr::split(line, "]", 2);
  if (line.compare(0, 1, "[") != 0 || parts.size() < 2) return Make(word, "");
  return Make(word, Trim(parts[0].substr(1)));
}

SlowEntry ReadCmudict(const std::string& line) {
  const notation::CmudictLine parsed = notation::ParseCmudictLine(line);
  if (parsed.kind != notation::CmudictLineKind::kEntry) return {EntryKind::kComment, "", ""};
  return Make(std::string(parsed.word), std::string(parsed.phones));
}

SlowEntry ReadSlowly(const lexicon::Layout& layout, const std::string& line) {
  if (layout.format == Format::kLines) return {EntryKind::kEntry, "", line};
  if (layout.format == Format::kTsv) return ReadTsv(line, layout.column);
  std::string entry = Trim(line);
  const bool is_comment = layout.format == Format::kCedict && entry.compare(0, 1, "#") == 0;
  if (entry.empty() || is_comment) return {EntryKind::kComment, "", ""};
  if (layout.format == Format::kCedict) return ReadCedict(entry, layout.headword);
  if (layout.format == Format::kCmudict) return ReadCmudict(entry);
  const std::string word = TakeWord(entry);
  return Make(word, entry);
}

bool IsWithin(std::string_view part, const std::string& line) {
  return part.data() >= line.data() && part.data() + part.size() <= line.data() + line.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  lexicon::Layout layout;
  layout.format = lexicon::kFormats[input.Choose(std::size(lexicon::kFormats))].meaning;
  layout.headword = lexicon::kHeadwords[input.Choose(std::size(lexicon::kHeadwords))].meaning;
  layout.column = input.Choose(9);
  const std::string line = input.Rest();

  const lexicon::Entry entry = lexicon::ReadEntry(layout, line);
  const SlowEntry expected = ReadSlowly(layout, line);
  Expect(entry.kind == expected.kind, "the kind is the slow form's");
  Expect(IsWithin(entry.word, line) && IsWithin(entry.text, line), "both are views into the line");
  Expect(!lexicon::BrokenLineProblem(layout).empty(), "what is wrong has a name");
  Expect(entry.word == expected.word, "the word is the slow form's");
  Expect(entry.text == expected.text, "the pronunciation is the slow form's");
  Expect(layout.HasWords() || entry.word.empty(), "a format without words has none");
  if (entry.kind != EntryKind::kEntry) {
    Expect(entry.text.empty(), "what is not an entry has no pronunciation");
  } else if (layout.HasWords()) {
    Expect(!entry.word.empty() && !entry.text.empty(), "an entry has both");
  }
  return 0;
}
