#include "tools/conversion/lexicon_lines.h"

#include <string>

#include "tools/conversion/white_space.h"

namespace qeo::tool {
namespace {

bool BeginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

Entry MakeEntry(std::string_view word, std::string_view text) {
  return {word.empty() || text.empty() ? EntryKind::kBroken : EntryKind::kEntry, word, text};
}

// Field `column`, counted from 1.
Entry ReadTsv(std::string_view line, std::size_t column) {
  if (BeginsWith(line, "# ")) return {EntryKind::kComment, {}, {}};
  for (; column > 1; --column) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) return {EntryKind::kBroken, {}, {}};
    line.remove_prefix(tab + 1);
  }
  return {EntryKind::kEntry, {}, line.substr(0, line.find('\t'))};
}

Entry ReadCedict(std::string_view line, Headword headword) {
  const std::string_view traditional = TakeWord(line);
  const std::string_view simplified = TakeWord(line);
  const std::string_view word = headword == Headword::kSimplified ? simplified : traditional;
  const std::size_t close = line.find(']');
  if (!BeginsWith(line, "[") || close == std::string_view::npos) return MakeEntry(word, {});
  return MakeEntry(word, Trim(line.substr(1, close - 1)));
}

Entry ReadCmudict(std::string_view line) {
  const notation::CmudictLine parsed = notation::ParseCmudictLine(line);
  if (parsed.kind != notation::CmudictLineKind::kEntry) return {EntryKind::kComment, {}, {}};
  return MakeEntry(parsed.word, parsed.phones);
}

}  // namespace

Entry ReadEntry(const Layout& layout, std::string_view line) {
  if (layout.format == Format::kLines) return {EntryKind::kEntry, {}, line};
  if (layout.format == Format::kTsv) return ReadTsv(line, layout.column);
  std::string_view entry = Trim(line);
  if (entry.empty() || (layout.format == Format::kCedict && entry.front() == '#')) {
    return {EntryKind::kComment, {}, {}};
  }
  switch (layout.format) {
    case Format::kCedict:
      return ReadCedict(entry, layout.headword);
    case Format::kCmudict:
      return ReadCmudict(entry);
    default:
      const std::string_view word = TakeWord(entry);
      return MakeEntry(word, entry);
  }
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

}  // namespace qeo::tool
