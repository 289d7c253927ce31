// ParseCmudictLine: the parts are views into the line, in order and trimmed; put together again
// they are read as the same parts; and the line is an entry just when it has a word.

#include <string_view>

#include "fuzz/fuzzing.h"
#include "notation/arpabet.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using notation::CmudictLine;
using notation::CmudictLineKind;

constexpr std::string_view kBlanks = " \t\n\v\f\r";

void ExpectPartsInOrder(const std::string& line, const CmudictLine& parsed) {
  const char* place = line.data();
  for (const std::string_view part : {parsed.word, parsed.phones, parsed.comment}) {
    Expect(part.data() >= place || part.empty(), "the parts are in order");
    Expect(part.data() >= line.data() && part.data() + part.size() <= line.data() + line.size(),
           "a part is a view into the line");
    if (part.empty()) continue;
    Expect(kBlanks.find(part.front()) == kBlanks.npos && kBlanks.find(part.back()) == kBlanks.npos,
           "a part is trimmed");
    place = part.data() + part.size();
  }
  Expect(parsed.word.find_first_of(kBlanks) == std::string_view::npos, "a word has no blanks");
}

CmudictLineKind KindOf(std::string_view line) {
  const std::size_t begin = line.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return CmudictLineKind::kBlank;
  line.remove_prefix(begin);
  const bool is_lone_hash =
      line[0] == '#' && (line.size() == 1 || kBlanks.find(line[1]) != std::string_view::npos);
  const bool is_comment = is_lone_hash || line.substr(0, 3) == ";;;";
  return is_comment ? CmudictLineKind::kComment : CmudictLineKind::kEntry;
}

std::string Written(const CmudictLine& parsed) {
  std::string line(parsed.word);
  if (parsed.variant != 0) line += '(' + std::to_string(parsed.variant) + ')';
  line.append("  ").append(parsed.phones).append(" ").append(parsed.comment);
  return line + "\r\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const std::string line = input.Rest();
  const CmudictLine parsed = notation::ParseCmudictLine(line);
  ExpectPartsInOrder(line, parsed);
  Expect(parsed.kind == KindOf(line), "the kind is that of the line's beginning");
  Expect(parsed.word.empty() == (parsed.kind != CmudictLineKind::kEntry), "an entry has a word");
  Expect(parsed.variant >= 0 && parsed.variant <= 999999999, "a variant has nine digits at most");

  const std::string written = Written(parsed);
  const CmudictLine again = notation::ParseCmudictLine(written);
  Expect(again.kind == parsed.kind && again.variant == parsed.variant, "it is read again");
  Expect(
      again.word == parsed.word && again.phones == parsed.phones && again.comment == parsed.comment,
      "its parts are read again");
  return 0;
}
