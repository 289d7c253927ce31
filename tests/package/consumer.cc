// Uses the installed library alone; exits with 0 when the answers are right.

#include <phoneme/phoneme.h>

#include <iostream>

#include "early.h"

int main() {
  using namespace qeo::sp;
  std::vector<unsigned short> codes;
  const bool converts = py2code(LANGUAGE_CANTONESE, "nei5hou2", codes) == 0 &&
                        codes == std::vector<unsigned short>{4035, 2382};
  const bool looks_up = GetPhoneInfoByDescription(LANGUAGE_AMERICAN_ENGLISH, "ax")->id == 6;
  const bool starts_early = EarlySyllableCount() == 2;
  std::cout << "converts " << converts << ", looks up " << looks_up << ", starts early "
            << starts_early << '\n';
  return converts && looks_up && starts_early ? 0 : 1;
}
