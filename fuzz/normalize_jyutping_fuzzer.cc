// NormalizeJyutping, with any rules and an alias table from the input: text and problems are those
// of the reference form, no byte is lost, the library reads the result, and normalised again
// without aliases it stays as it is; an empty table is none.

#include "fuzz/normalizing.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::NormalizeJyutping;

void ExpectSame(const notation::Normalized& a, const notation::Normalized& b) {
  Expect(a.text == b.text, "the text is the same");
  Expect(a.origins == b.origins, "the origins are the same");
  Expect(a.applied.size() == b.applied.size(), "the same rules are applied");
  Expect(a.problems.size() == b.problems.size(), "the problems are the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const notation::RuleSet rules = fuzzing::ChooseRules(input, notation::kJyutpingRules);
  const notation::AliasTable aliases = notation::AliasTable::Parse(input.TakePart()).table;
  const std::string text = input.Rest();

  const notation::Normalized result = NormalizeJyutping(text, rules, &aliases);
  fuzzing::ExpectReference(result, sp::reference::NormalizeJyutping(text, rules, &aliases));
  sp::reference::ExpectSound(sp::LANGUAGE_CANTONESE, text, result, fuzzing::Expect);
  fuzzing::ExpectNothingMoreToDo(result.text, NormalizeJyutping(result.text, rules));

  const notation::AliasTable no_aliases;
  const notation::Normalized without = NormalizeJyutping(text, rules);
  ExpectSame(NormalizeJyutping(text, rules, &no_aliases), without);
  ExpectSame(NormalizeJyutping(text, rules.Without(notation::Rule::kAlias), &aliases), without);

  if (fuzzing::MayHaveWideLetters(text)) return 0;
  const notation::RuleSet with_wide = rules.With(notation::Rule::kFullWidth);
  const std::string wide = fuzzing::WithFullWidthDigits(text);
  Expect(NormalizeJyutping(wide, with_wide).text == NormalizeJyutping(text, with_wide).text,
         "full-width digits are digits");
  return 0;
}
