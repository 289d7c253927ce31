// The cuts themselves are made by the notation library; here they are compared and written down.

#include "tools/commands/cut_comparison.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "tools/conversion/notations.h"
#include "tools/report/terminal_table.h"
#include "tools/report/terminal_text.h"

namespace qeo::tool {
namespace {

// Of a text; an ordinary word has fewer cuts.
constexpr std::size_t kMaxWords = 2;
constexpr std::size_t kMaxCuts = 3;

struct WordsToCut {
  std::vector<std::string_view> ambiguous;  // in the order in which they are shown
  std::size_t plain_count = 0;              // the others, which can be cut in one way only
};

// A cut as its syllables, what it leaves out in brackets.
std::string ShowCut(std::string_view word, const std::vector<notation::CutSyllable>& cut) {
  std::string shown;
  std::size_t placed = 0;
  const auto show = [&shown](std::string_view piece, const char* before, const char* after) {
    if (!piece.empty()) {
      shown += shown.empty() ? "" : " ";
      shown.append(before).append(piece).append(after);
    }
  };
  for (const notation::CutSyllable& syllable : cut) {
    const notation::Range range = syllable.range;
    show(word.substr(placed, range.offset - placed), "[", "]");
    show(word.substr(range.offset, range.length), "", "");
    placed = range.end();
  }
  show(word.substr(placed), "[", "]");
  return shown;
}

// How many cuts leave no letter out, and the first of them, as many as fit.
std::string ShowPossibleCuts(std::string_view word, const notation::Cut& cut) {
  constexpr std::string_view kRest = " | ...";
  if (cut.count == 0) return "none that leaves no letter out";
  std::string shown = std::to_string(cut.count);
  if (cut.count == notation::kUncountedCuts) shown += " or more";
  std::size_t shown_count = 0;
  for (const std::vector<notation::CutSyllable>& syllables : cut.cuts) {
    const std::string next = (shown_count == 0 ? ": " : " | ") + ShowCut(word, syllables);
    if (shown.size() + next.size() + kRest.size() > kValueWidth) break;
    shown += next;
    ++shown_count;
  }
  if (shown_count > 0 && shown_count < cut.count) shown += kRest;
  return shown;
}

// Whether the cuttings that cut give the same for a word.
bool IsCutAlike(int language, std::string_view word) {
  const std::string first = ShowCut(word, CutLetters(language, word, kCuttings[0].meaning));
  return std::all_of(std::begin(kCuttings), std::end(kCuttings), [&](const auto& entry) {
    return entry.meaning == notation::Cutting::kNone ||
           ShowCut(word, CutLetters(language, word, entry.meaning)) == first;
  });
}

// The runs of letters that no digit closes.
std::vector<std::string_view> WordsWithoutTones(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" 0123456789", begin), text.size());
    const bool has_tone = end < text.size() && text[end] != ' ';
    if (end > begin && !has_tone) words.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

WordsToCut FindWordsToCut(int language, std::string_view text) {
  WordsToCut words;
  std::vector<std::string_view> cut_alike;
  for (const std::string_view word : WordsWithoutTones(text)) {
    if (!IsCutAlike(language, word)) {
      words.ambiguous.push_back(word);
    } else if (notation::CutWhole(language, word).count != 1) {
      cut_alike.push_back(word);
    } else {
      ++words.plain_count;
    }
  }
  words.ambiguous.insert(words.ambiguous.end(), cut_alike.begin(), cut_alike.end());
  return words;
}

void AppendCut(int language, std::string_view word, notation::Cutting used, std::string& out) {
  const notation::Cut cut = notation::CutWhole(language, word, kMaxCuts);
  out += "\ncuts of " + Quote(word, 40) + ": forward and backward ";
  out += cut.directions_differ ? "differ\n" : "agree\n";
  for (const auto& [name, cutting] : kCuttings) {
    if (cutting == notation::Cutting::kNone && used != cutting) continue;
    const char* mark = cutting == used ? ", used" : "";
    const std::string shown = ShowCut(word, notation::CutLetters(language, word, cutting));
    AppendLine(std::string(name) + mark, shown, " ", out);
  }
  AppendLine("possible", ShowPossibleCuts(word, cut), " ", out);
}

}  // namespace

void AppendCutsOfWords(int language, std::string_view text, notation::Cutting used,
                       std::string& out) {
  const WordsToCut words = FindWordsToCut(language, text);
  const std::size_t shown = std::min(words.ambiguous.size(), kMaxWords);
  for (std::size_t i = 0; i < shown; ++i) AppendCut(language, words.ambiguous[i], used, out);
  const std::size_t rest = words.ambiguous.size() - shown;
  if (rest + words.plain_count != 0) out += '\n';
  if (rest != 0) out += "cut in several ways or in none: " + Counted(rest, "more word") + '\n';
  if (words.plain_count != 0) {
    out += "cut in one way only: " + Counted(words.plain_count, "word") + '\n';
  }
}

}  // namespace qeo::tool
