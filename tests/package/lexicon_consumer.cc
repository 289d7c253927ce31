// Uses the installed lexicon library; exits with 0 when the answer is right.

#include <lexicon/lexicon.h>

int main() {
  using namespace qeo::lexicon;
  const Entry entry = ReadEntry({Format::kCmudict}, "hello(2) HH EH0 L OW1 # old");
  return entry.word == "hello" && entry.text == "HH EH0 L OW1" ? 0 : 1;
}
