// py2code: the codes are those of the reference form and of py2ph's records; spelled by code2py,
// with or without spaces between them, they are read as the same codes.

#include "fuzz/conversions.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Codes = std::vector<unsigned short>;

void ExpectReadBack(int language, const Codes& codes, const char* gap) {
  std::string spelled;
  for (const unsigned short code : codes) spelled += sp::code2py(language, code, true) + gap;
  Codes read = fuzzing::StaleCodes();
  Expect(sp::py2code(language, spelled, read) == 0, "what code2py spells is read");
  Expect(read == codes, "what code2py spells is read as the same codes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const std::string text = input.Rest();

  Codes codes = fuzzing::StaleCodes();
  Codes expected;
  const int result = sp::py2code(language, text, codes);
  Expect(result == sp::reference::py2code(language, text, expected),
         "the result is the reference's");
  Expect(codes == expected, "the codes are the reference's");

  std::vector<sp::SyllableInfo> syllables = fuzzing::StaleSyllables();
  Expect(sp::py2ph(language, text, syllables) == result, "py2ph succeeds where py2code does");
  Expect(fuzzing::CodesOf(syllables) == codes, "py2ph's records have the same codes");
  ExpectReadBack(language, codes, "");
  ExpectReadBack(language, codes, " ");
  return 0;
}
