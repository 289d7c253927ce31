// CutWhole and CutLetters: the best cut and the count are those of a slow form that keeps every
// best cut as a list, what is listed is in order, and the longest matches are pyw2py's.

#include <algorithm>
#include <map>
#include <set>

#include "fuzz/conversions.h"
#include "notation/cutting.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::Cutting;
using Syllables = std::vector<notation::CutSyllable>;
using Strings = std::vector<std::string>;

constexpr std::size_t kMostBytes = 100;  // the slow form is slow
constexpr std::size_t kLongest = sizeof(sp::PinyinInfo::pinyin) - 1;

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
bool IsLetter(char c) { return IsCapital(c) || (c >= 'a' && c <= 'z'); }

std::string Small(std::string text) {
  for (char& c : text) c = IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

const std::map<std::string, int>& RowsOf(int language) {
  static std::map<int, std::map<std::string, int>> languages;
  std::map<std::string, int>& rows = languages[language];
  sp::SyllableInfo syllable;
  for (int row = 0; rows.empty() || row > 0; ++row) {
    const auto code = static_cast<unsigned short>(row * 10);
    if (sp::code2ph(language, code, syllable) != 0) break;
    rows.emplace(sp::code2py(language, code, false), row);
  }
  return rows;
}

// A cut as the lengths of its syllables, below 0, and 0 for a letter left out: the least is best.
struct Candidate {
  std::size_t left_out = 0;
  std::size_t syllables = 0;
  std::vector<int> steps;

  bool operator<(const Candidate& other) const {
    return std::tie(left_out, syllables, steps) <
           std::tie(other.left_out, other.syllables, other.steps);
  }
};

struct Slow {
  Candidate best;
  std::uint64_t count = 0;
};

Candidate Before(const Candidate& rest, std::size_t length) {
  Candidate longer = rest;
  longer.left_out += length == 0 ? 1 : 0;
  longer.syllables += length == 0 ? 0 : 1;
  longer.steps.insert(longer.steps.begin(), -static_cast<int>(length));
  return longer;
}

Slow CutSlowly(const std::map<std::string, int>& rows, const std::string& text) {
  std::vector<Slow> from(text.size() + 1);
  from[text.size()].count = 1;
  for (std::size_t begin = text.size(); begin-- > 0;) {
    Slow& here = from[begin];
    here.best = Before(from[begin + 1].best, 0);
    for (std::size_t length = 1; length <= kLongest && begin + length <= text.size(); ++length) {
      if (length > 1 && IsCapital(text[begin + length - 1])) break;
      if (rows.count(Small(text.substr(begin, length))) == 0) continue;
      const Slow& behind = from[begin + length];
      here.best = std::min(here.best, Before(behind.best, length));
      here.count += std::min(behind.count, notation::kUncountedCuts - here.count);
    }
  }
  return from[0];
}

std::vector<int> StepsOf(const Syllables& syllables, std::size_t size) {
  std::vector<int> steps;
  std::size_t end = 0;
  for (const notation::CutSyllable& syllable : syllables) {
    Expect(syllable.range.offset >= end, "syllables are in text order");
    steps.insert(steps.end(), syllable.range.offset - end, 0);
    steps.push_back(-static_cast<int>(syllable.range.length));
    end = syllable.range.end();
  }
  Expect(end <= size, "syllables are in the text");
  steps.insert(steps.end(), size - end, 0);
  return steps;
}

void ExpectRows(const std::map<std::string, int>& rows, const std::string& text,
                const Syllables& syllables) {
  for (const notation::CutSyllable& syllable : syllables) {
    const auto row = rows.find(Small(text.substr(syllable.range.offset, syllable.range.length)));
    Expect(row != rows.end() && row->second == syllable.row, "a syllable has its row");
  }
}

void ExpectListed(const notation::Cut& cut, const std::string& text, std::size_t max_cuts) {
  Expect(cut.cuts.size() == std::min<std::uint64_t>(cut.count, max_cuts),
         "as many are listed as asked for");
  Expect(
      cut.cuts.empty() || StepsOf(cut.cuts[0], text.size()) == StepsOf(cut.syllables, text.size()),
      "the first is the best");
  Candidate last;
  for (const Syllables& listed : cut.cuts) {
    const Candidate next = {0, listed.size(), StepsOf(listed, text.size())};
    Expect(std::find(next.steps.begin(), next.steps.end(), 0) == next.steps.end(),
           "a listed cut covers the text");
    Expect(&listed == &cut.cuts[0] || last < next, "they are in order, and none comes twice");
    last = next;
  }
}

Strings TextsOf(const std::string& text, const Syllables& syllables) {
  Strings texts;
  for (const notation::CutSyllable& syllable : syllables) {
    texts.push_back(Small(text.substr(syllable.range.offset, syllable.range.length)));
  }
  return texts;
}

// In text order: pyw2py reverses only within a run, so each run is asked alone.
Strings LongestMatch(int language, const std::string& text, bool backward) {
  Strings pieces;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin + 1;
    while (end < text.size() && !IsCapital(text[end])) ++end;
    Strings of_run = fuzzing::StaleTexts();
    sp::pyw2py(language, text.substr(begin, end - begin), of_run, backward);
    if (backward) std::reverse(of_run.begin(), of_run.end());
    pieces.insert(pieces.end(), of_run.begin(), of_run.end());
    begin = end;
  }
  return pieces;
}

void ExpectLongestMatches(int language, const std::string& text, bool directions_differ) {
  if (!std::all_of(text.begin(), text.end(), IsLetter)) {
    Expect(!directions_differ, "directions are compared for letters alone");
    return;
  }
  const Strings forward = LongestMatch(language, text, false);
  const Strings backward = LongestMatch(language, text, true);
  Expect(TextsOf(text, CutLetters(language, text, Cutting::kForward)) == forward,
         "the cut from the front is pyw2py's");
  Expect(TextsOf(text, CutLetters(language, text, Cutting::kBackward)) == backward,
         "the cut from the end is pyw2py's");
  Expect(directions_differ == (forward != backward), "the directions are compared");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::size_t max_cuts = input.Choose(20);
  const std::string text = input.Rest().substr(0, kMostBytes);
  const bool is_registered =
      language == sp::LANGUAGE_CANTONESE || language == sp::LANGUAGE_AMERICAN_ENGLISH;
  const auto& rows = RowsOf(is_registered ? language : sp::LANGUAGE_MANDARIN);

  const notation::Cut cut = notation::CutWhole(language, text, max_cuts);
  const Slow slow = CutSlowly(rows, text);
  Expect(StepsOf(cut.syllables, text.size()) == slow.best.steps, "the best cut is the slow form's");
  Expect(cut.count == slow.count, "the count is the slow form's");
  Expect(cut.covers == (cut.count > 0), "there is a cut just when one covers the text");
  ExpectRows(rows, text, cut.syllables);
  ExpectListed(cut, text, max_cuts);
  ExpectRows(rows, text, CutLetters(language, text, Cutting::kForward));
  ExpectRows(rows, text, CutLetters(language, text, Cutting::kBackward));
  Expect(TextsOf(text, CutLetters(language, text, Cutting::kWhole)) == TextsOf(text, cut.syllables),
         "both functions cut alike");
  ExpectLongestMatches(language, text, cut.directions_differ);
  return 0;
}
