// NormalizePinyin, with any rules: text and problems are those of the reference form, no byte is
// lost, the library reads the result, and normalised again it stays as it is; the form of a digit
// makes no difference.

#include "fuzz/normalizing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qeo;
  fuzzing::Input input(data, size);
  const notation::RuleSet rules = fuzzing::ChooseRules(input, notation::kPinyinRules);
  const std::string text = input.Rest();

  const notation::Normalized result = notation::NormalizePinyin(text, rules);
  fuzzing::ExpectReference(result, sp::reference::NormalizePinyin(text, rules));
  sp::reference::ExpectSound(sp::LANGUAGE_MANDARIN, text, result, fuzzing::Expect);
  fuzzing::ExpectNothingMoreToDo(result.text, notation::NormalizePinyin(result.text, rules));

  if (fuzzing::MayHaveWideLetters(text)) return 0;
  const notation::RuleSet with_wide = rules.With(notation::Rule::kFullWidth);
  const std::string wide = fuzzing::WithFullWidthDigits(text);
  const notation::Normalized of_wide = notation::NormalizePinyin(wide, with_wide);
  const notation::Normalized of_ascii = notation::NormalizePinyin(text, with_wide);
  fuzzing::Expect(of_wide.text == of_ascii.text, "full-width digits are digits");
  fuzzing::Expect(of_wide.problems.size() == of_ascii.problems.size(),
                  "full-width digits have the same problems");
  return 0;
}
