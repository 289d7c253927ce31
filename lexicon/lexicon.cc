#include "lexicon/lexicon.h"

#include "notation/arpabet.h"
#include "phoneme/ascii.h"

namespace qeo::lexicon {
namespace {

template <typename Meaning, std::size_t kCount>
std::optional<Meaning> Find(const Named<Meaning> (&table)[kCount], std::string_view name) {
  for (const Named<Meaning>& row : table) {
    if (row.name == name) return row.meaning;
  }
  return std::nullopt;
}

std::string_view EndOf(std::string_view text) { return text.substr(text.size()); }

Entry Comment(std::string_view line) { return {EntryKind::kComment, EndOf(line), EndOf(line)}; }

// What has a pronunciation has a word before it.
Entry MakeEntry(std::string_view word, std::string_view text) {
  return {text.empty() ? EntryKind::kBroken : EntryKind::kEntry, word, text};
}

Entry ReadTsv(std::string_view line, std::size_t column) {
  if (line.substr(0, 2) == "# ") return Comment(line);
  for (std::size_t field = 1; field != column; ++field) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) return {EntryKind::kBroken, EndOf(line), EndOf(line)};
    line.remove_prefix(tab + 1);
  }
  return {EntryKind::kEntry, EndOf(line), line.substr(0, line.find('\t'))};
}

// From here on lines are not empty, and without white space at their ends.

Entry ReadCedict(std::string_view line, Headword headword) {
  if (line.front() == '#') return Comment(line);
  const std::string_view traditional = ascii::TakeWord(line);
  const std::string_view simplified = ascii::TakeWord(line);
  const std::string_view word = headword == Headword::kSimplified ? simplified : traditional;
  const std::size_t close = line.find(']');
  const bool has_brackets = close != std::string_view::npos && line.front() == '[';
  return MakeEntry(word, has_brackets ? ascii::Trim(line.substr(1, close - 1)) : EndOf(line));
}

Entry ReadCmudict(std::string_view line) {
  const notation::CmudictLine parsed = notation::ParseCmudictLine(line);
  if (parsed.kind != notation::CmudictLineKind::kEntry) return Comment(line);
  return MakeEntry(parsed.word, parsed.phones);
}

Entry ReadKaldi(std::string_view line) {
  const std::string_view word = ascii::TakeWord(line);
  return MakeEntry(word, line);
}

}  // namespace

std::optional<Format> FormatOfName(std::string_view name) { return Find(kFormats, name); }

std::optional<Headword> HeadwordOfName(std::string_view name) { return Find(kHeadwords, name); }

Entry ReadEntry(const Layout& layout, std::string_view line) {
  if (layout.format == Format::kLines) return {EntryKind::kEntry, EndOf(line), line};
  if (layout.format == Format::kTsv) return ReadTsv(line, layout.column);
  line = ascii::Trim(line);
  if (line.empty()) return Comment(line);
  if (layout.format == Format::kCedict) return ReadCedict(line, layout.headword);
  if (layout.format == Format::kCmudict) return ReadCmudict(line);
  return ReadKaldi(line);
}

std::string BrokenLineProblem(const Layout& layout) {
  switch (layout.format) {
    case Format::kTsv:
      return "no column " + std::to_string(layout.column);
    case Format::kCedict:
      return "expected \"TRADITIONAL SIMPLIFIED [pronunciation]\"";
    default:
      return "no pronunciation";
  }
}

Line TakeLine(std::string_view& text) {
  const std::size_t newline = text.find('\n');
  if (newline == std::string_view::npos) {
    const Line line = {text, "\n"};
    text = EndOf(text);
    return line;
  }
  const bool after_return = newline > 0 && text[newline - 1] == '\r';
  const std::size_t size = newline - (after_return ? 1 : 0);
  const Line line = {text.substr(0, size), text.substr(size, newline + 1 - size)};
  text.remove_prefix(newline + 1);
  return line;
}

std::string_view WithoutByteOrderMark(std::string_view content) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  const bool has_mark = content.substr(0, kMark.size()) == kMark;
  return content.substr(has_mark ? kMark.size() : 0);
}

}  // namespace qeo::lexicon
