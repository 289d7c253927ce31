// pyw2py, both ways: the pieces are those of the reference form; a piece by itself is that
// piece again; and from the front they are what py2code reads, one code a piece.

#include "fuzz/conversions.h"
#include "phoneme/ascii.h"
#include "tests/reference/reference.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Strings = std::vector<std::string>;

void ExpectWhole(int language, const std::string& piece, bool backward) {
  Strings again = fuzzing::StaleTexts();
  sp::pyw2py(language, piece + ' ', again, backward);
  Expect(again == Strings{piece}, "a piece is cut no further");
}

// The codes of the pieces, each read alone, are those of the whole.
void ExpectCodes(int language, const std::string& word, const Strings& pieces) {
  std::vector<unsigned short> codes = fuzzing::StaleCodes();
  const int result = sp::py2code(language, word, codes);
  std::vector<unsigned short> joined;
  bool all_known = true;
  for (const std::string& piece : pieces) {
    std::vector<unsigned short> code = fuzzing::StaleCodes();
    all_known = sp::py2code(language, piece + ' ', code) == 0 && all_known;
    joined.insert(joined.end(), code.begin(), code.end());
  }
  Expect(all_known == (result == 0), "py2code fails when one of the pieces fails");
  Expect(result != 0 || codes == joined, "py2code reads the pieces");
}

// The places are those of the pieces, and their rows and tones are what py2code makes codes of.
void ExpectPlaces(int language, const std::string& word, bool backward, const Strings& pieces) {
  std::vector<sp::TextPiece> places(1);
  sp::FindPieces(language, word, places, backward);
  Expect(places.size() == pieces.size(), "a place a piece");
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    std::string piece = word.substr(places[i].offset, places[i].length);
    piece[0] = ascii::ToSmall(piece[0]);
    Expect(piece == pieces[i], "the piece is at its place");
    std::vector<unsigned short> code;
    const bool is_known = sp::py2code(language, piece + ' ', code) == 0;
    Expect(is_known == (places[i].row >= 0), "what is not a syllable has no row");
    const auto tone = sp::ToneAdaptation(language, places[i].raw_tone);
    Expect(!is_known || code.at(0) == places[i].row * sp::kTonesPerRow + tone,
           "row and tone are those of the code");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int language = fuzzing::ChooseLanguage(input);
  const bool backward = input.ChooseBool();
  const std::string word = input.Rest();

  Strings pieces = fuzzing::StaleTexts();
  Strings expected;
  Expect(sp::pyw2py(language, word, pieces, backward) == 0, "the result is 0");
  sp::reference::pyw2py(language, word, expected, backward);
  Expect(pieces == expected, "the pieces are the reference's");
  for (const std::string& piece : pieces) ExpectWhole(language, piece, backward);
  ExpectPlaces(language, word, backward, pieces);
  if (!backward) ExpectCodes(language, word, pieces);
  return 0;
}
