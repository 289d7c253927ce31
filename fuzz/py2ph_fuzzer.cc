// py2ph: the records are those of the reference form; their codes are py2code's, and code2ph
// expands each code to the same language, tone and phones.

#include "fuzz/conversions.h"
#include "tests/reference/compare.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;

void ExpectExpanded(const sp::SyllableInfo& syllable) {
  sp::SyllableInfo expanded;
  const auto code = static_cast<unsigned short>(syllable.code);
  Expect(sp::code2ph(syllable.language, code, expanded) == 0, "code2ph knows the code");
  Expect(sp::reference::Same(expanded, syllable), "code2ph gives the record");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::string text = input.Rest();

  std::vector<sp::SyllableInfo> syllables = fuzzing::StaleSyllables();
  std::vector<sp::SyllableInfo> expected;
  const int result = sp::py2ph(language, text, syllables);
  Expect(result == sp::reference::py2ph(language, text, expected), "the result is the reference's");
  Expect(sp::reference::Same(syllables, expected), "the records are the reference's");

  std::vector<unsigned short> codes = fuzzing::StaleCodes();
  Expect(sp::py2code(language, text, codes) == result, "py2code succeeds where py2ph does");
  Expect(codes == fuzzing::CodesOf(syllables), "the codes are py2code's");
  for (const sp::SyllableInfo& syllable : syllables) ExpectExpanded(syllable);
  return 0;
}
