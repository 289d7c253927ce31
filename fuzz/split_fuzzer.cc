// split: the pieces with separators between them are the text again; none but a last one that was
// limited holds a separator; and the limit keeps the first pieces as they are without it.

#include <algorithm>

#include "fuzz/fuzzing.h"
#include "xstr/xstr.h"

namespace {

using namespace qeo;
using fuzzing::Expect;
using Strings = std::vector<std::string>;

std::string Join(const Strings& pieces, const std::string& separator) {
  std::string joined = pieces.front();
  for (std::size_t i = 1; i < pieces.size(); ++i) joined += separator + pieces[i];
  return joined;
}

// Looks at every place of the text.
Strings SplitSlowly(const std::string& text, const std::string& separator, int max_parts) {
  Strings pieces(1);
  for (std::size_t at = 0; at < text.size();) {
    const bool is_full = max_parts > 0 && pieces.size() == static_cast<std::size_t>(max_parts);
    const bool is_cut = !separator.empty() && text.substr(at, separator.size()) == separator;
    if (is_cut && !is_full) {
      pieces.emplace_back();
      at += separator.size();
    } else {
      pieces.back() += text[at];
      ++at;
    }
  }
  return pieces;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::Input input(data, size);
  const int max_parts =
      input.ChooseBool() ? input.TakeInt() : static_cast<int>(input.Choose(16)) - 2;
  const std::string separator = input.TakePart();
  const std::string text = input.Rest();
  const Strings pieces = xstr::split(text, separator, max_parts);
  const Strings unlimited = xstr::split(text, separator, 0);

  Expect(!pieces.empty(), "there is always a piece");
  Expect(pieces == SplitSlowly(text, separator, max_parts), "the pieces are the slow form's");
  Expect(Join(pieces, separator) == text, "the pieces are the text again");
  Expect(max_parts <= 0 || pieces.size() <= static_cast<std::size_t>(max_parts),
         "there are not more pieces than asked for");
  Expect(max_parts > 0 || pieces == unlimited, "0 and below mean no limit");
  Expect(std::equal(pieces.begin(), pieces.end() - 1, unlimited.begin()),
         "the limit changes the last piece alone");
  return 0;
}
