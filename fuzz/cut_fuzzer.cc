// CutWhole and CutLetters: the best cut and the count are those of a slow form that keeps every
// best cut as a list, what is listed is in order, the longest matches are pyw2py's, and without
// cutting each word is looked up.

#include <algorithm>
#include <map>
#include <set>

#include "fuzz/conversions.h"
#include "notation/cutting.h"
#include "notation/rarities.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::Cutting;
using Syllables = std::vector<notation::CutSyllable>;
using Strings = std::vector<std::string>;

constexpr std::size_t kMostBytes = 100;  // the slow form is slow
constexpr std::size_t kLongest = sizeof(sp::PinyinInfo::pinyin) - 1;

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
bool IsSmall(char c) { return c >= 'a' && c <= 'z'; }
bool IsLetter(char c) { return IsCapital(c) || IsSmall(c); }

std::string Small(std::string text) {
  for (char& c : text) c = IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

using Rows = std::map<std::string, const sp::PinyinInfo*>;

// A cut as the lengths of its syllables, below 0, and 0 for a letter left out: the least is best.
struct Candidate {
  std::size_t left_out = 0;
  std::size_t syllables = 0;
  std::size_t cost = 0;
  std::vector<int> steps;

  bool operator<(const Candidate& other) const {
    return std::tie(left_out, syllables, cost, steps) <
           std::tie(other.left_out, other.syllables, other.cost, other.steps);
  }
};

struct Slow {
  Candidate best;
  std::uint64_t count = 0;
};

// A text in a language.
class Text {
 public:
  Text(int language, std::string text)
      : is_mandarin_(language != sp::LANGUAGE_CANTONESE &&
                     language != sp::LANGUAGE_AMERICAN_ENGLISH),
        rows_(sp::FindPhoneSet(is_mandarin_ ? sp::LANGUAGE_MANDARIN : language)->pinyin_map),
        text_(std::move(text)) {}

  const std::string& text() const { return text_; }

  std::string Piece(const notation::Range& range) const {
    return Small(text_.substr(range.offset, range.length));
  }

  // The row of a syllable of the language, or -1. A capital opens it.
  int RowAt(const notation::Range& range) const {
    for (std::size_t i = range.offset + 1; i < range.end(); ++i) {
      if (IsCapital(text_[i])) return -1;
    }
    const auto row = rows_.find(Piece(range));
    return row == rows_.end() ? -1 : row->second->id;
  }

  // As above, but for what is cut off a word.
  int RowInCut(const notation::Range& range) const {
    const bool is_nasal = std::set<std::string>{"m", "n", "ng", "hm", "hng"}.count(Piece(range));
    return is_mandarin_ && is_nasal && !IsWord(range) ? -1 : RowAt(range);
  }

  // What a syllable costs in its place. A Mandarin text would have to be 255 times as long for
  // rarities to outweigh an apostrophe.
  std::size_t CostOf(const notation::Range& range) const {
    const std::string piece = Piece(range);
    const auto row = static_cast<std::size_t>(RowAt(range));
    const bool takes_apostrophe = piece[0] == 'a' || piece[0] == 'e' || piece[0] == 'o' ||
                                  piece == "m" || piece == "n" || piece == "ng";
    const std::size_t penalty = is_mandarin_ ? 255 * kMostBytes + 1 : 32;
    const std::size_t rarity = is_mandarin_ ? notation::internal::kMandarinRarities[row]
                                            : notation::internal::kCantoneseRarities[row];
    return rarity + (takes_apostrophe && !BeginsWord(range.offset) ? penalty : 0);
  }

  bool IsWord(const notation::Range& range) const {
    return IsLetter(text_[range.offset]) && BeginsWord(range.offset) &&
           (range.end() == text_.size() || !IsSmall(text_[range.end()]));
  }

  Slow CutSlowly() const;

 private:
  bool BeginsWord(std::size_t at) const {
    return at == 0 || IsCapital(text_[at]) || !IsLetter(text_[at - 1]);
  }

  bool is_mandarin_;
  const Rows& rows_;
  std::string text_;
};

Candidate WithLetterLeftOut(Candidate rest) {
  ++rest.left_out;
  rest.steps.insert(rest.steps.begin(), 0);
  return rest;
}

Candidate WithSyllable(Candidate rest, std::size_t length, std::size_t cost) {
  ++rest.syllables;
  rest.cost += cost;
  rest.steps.insert(rest.steps.begin(), -static_cast<int>(length));
  return rest;
}

Slow Text::CutSlowly() const {
  std::vector<Slow> from(text_.size() + 1);
  from[text_.size()].count = 1;
  for (std::size_t begin = text_.size(); begin-- > 0;) {
    Slow& here = from[begin];
    here.best = WithLetterLeftOut(from[begin + 1].best);
    for (std::size_t length = 1; length <= kLongest && begin + length <= text_.size(); ++length) {
      const notation::Range range = {begin, length};
      if (RowInCut(range) < 0) continue;
      const Slow& after = from[begin + length];
      here.best = std::min(here.best, WithSyllable(after.best, length, CostOf(range)));
      here.count += std::min(after.count, notation::kUncountedCuts - here.count);
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

void ExpectRows(const Text& text, const Syllables& syllables) {
  for (const notation::CutSyllable& syllable : syllables) {
    Expect(syllable.row >= 0 && text.RowAt(syllable.range) == syllable.row,
           "a syllable has its row");
  }
}

void ExpectListed(const notation::Cut& cut, const Text& text, std::size_t max_cuts) {
  const std::size_t size = text.text().size();
  Expect(cut.cuts.size() == std::min<std::uint64_t>(cut.count, max_cuts),
         "as many are listed as asked for");
  Expect(cut.cuts.empty() || StepsOf(cut.cuts[0], size) == StepsOf(cut.syllables, size),
         "the first is the best");
  Candidate last;
  for (const Syllables& listed : cut.cuts) {
    Candidate next = {0, listed.size(), 0, StepsOf(listed, size)};
    for (const notation::CutSyllable& syllable : listed) {
      Expect(text.RowInCut(syllable.range) == syllable.row,
             "a listed syllable is one in its place");
      next.cost += text.CostOf(syllable.range);
    }
    Expect(std::find(next.steps.begin(), next.steps.end(), 0) == next.steps.end(),
           "a listed cut covers the text");
    Expect(&listed == &cut.cuts[0] || last < next, "they are in order, and none comes twice");
    last = next;
  }
}

void ExpectWords(const Text& text, const Syllables& words) {
  std::size_t found = 0;
  for (std::size_t begin = 0; begin < text.text().size(); ++begin) {
    for (std::size_t length = 1; length <= kLongest; ++length) {
      const notation::Range range = {begin, length};
      if (range.end() > text.text().size() || !text.IsWord(range) || text.RowAt(range) < 0)
        continue;
      const bool is_found = found < words.size() && words[found].range.offset == begin &&
                            words[found].range.length == length;
      Expect(is_found, "a word that is a syllable is one");
      ++found;
    }
  }
  Expect(found == words.size(), "nothing else is");
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
  const std::string letters = input.Rest().substr(0, kMostBytes);
  const Text text(language, letters);

  const notation::Cut cut = notation::CutWhole(language, letters, max_cuts);
  const Slow slow = text.CutSlowly();
  Expect(StepsOf(cut.syllables, letters.size()) == slow.best.steps,
         "the best cut is the slow form's");
  Expect(cut.count == slow.count, "the count is the slow form's");
  Expect(cut.covers == (cut.count > 0), "there is a cut just when one covers the text");
  ExpectListed(cut, text, max_cuts);
  for (const Cutting cutting :
       {Cutting::kWhole, Cutting::kForward, Cutting::kBackward, Cutting::kNone}) {
    ExpectRows(text, CutLetters(language, letters, cutting));
  }
  Expect(TextsOf(letters, CutLetters(language, letters, Cutting::kWhole)) ==
             TextsOf(letters, cut.syllables),
         "both functions cut alike");
  ExpectLongestMatches(language, letters, cut.directions_differ);
  ExpectWords(text, CutLetters(language, letters, Cutting::kNone));
  return 0;
}
