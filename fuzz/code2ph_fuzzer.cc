// code2ph and code2py: both give what the reference form gives, on a record that holds something
// already; a code that py2code can make is spelled so that py2ph reads it as the same record.

#include "fuzz/conversions.h"
#include "tests/reference/compare.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using sp::reference::Same;

void ExpectExpanded(int language, unsigned short code) {
  sp::SyllableInfo syllable = sp::StaleSyllable();
  sp::SyllableInfo expected = sp::StaleSyllable();
  Expect(sp::code2ph(language, code, syllable) == sp::reference::code2ph(language, code, expected),
         "the result is the reference's");
  Expect(Same(syllable, expected), "the record is the reference's");
}

void ExpectReadBack(int language, unsigned short code) {
  sp::SyllableInfo syllable;
  if (sp::code2ph(language, code, syllable) != 0) return;
  if (sp::ToneAdaptation(syllable.language, syllable.tone) != syllable.tone) return;
  const std::string spelled = sp::code2py(language, code, true);
  if (spelled == "E" + std::to_string(syllable.tone)) return;  // a capital, never found in a text
  std::vector<sp::SyllableInfo> read = fuzzing::StaleSyllables();
  Expect(sp::py2ph(language, spelled, read) == 0, "py2ph reads the spelling");
  Expect(Same(read, {syllable}), "py2ph reads the same record");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  while (!input.IsAtEnd()) {
    const std::size_t high_byte = input.Choose(256);
    const auto code = static_cast<unsigned short>(high_byte << 8U | input.Choose(256));
    ExpectExpanded(language, code);
    for (const bool with_tone : {true, false}) {
      Expect(sp::code2py(language, code, with_tone) ==
                 sp::reference::code2py(language, code, with_tone),
             "the spelling is the reference's");
    }
    ExpectReadBack(language, code);
  }
  return 0;
}
