#include "tools/commands/lexicon_check.h"

#include <algorithm>

#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"
#include "tools/conversion/white_space.h"
#include "tools/report/messages.h"

namespace qeo::tool {
namespace {

constexpr std::string_view kDigitsAndComma = "0123456789,";

}  // namespace

LexiconCheck::LexiconCheck(int language, bool ignores_case, FindingWriter& findings)
    : findings_(findings), ignores_case_(ignores_case) {
  const sp::SpMapping& set = *sp::FindPhoneSet(language);
  for (std::size_t id = 0; id < set.phone_count; ++id) {
    const sp::PhoneInfo& phone = set.phone_list[id];
    const bool is_silence = phone.type == sp::PHONE_TYPE_SILENCE;
    const bool is_new = seen_.emplace(phone.name, is_silence).second;
    if (is_new) names_.emplace_back(phone.name);
  }
}

void LexiconCheck::Add(std::uint64_t line, std::size_t offset, const lexicon::Entry& entry) {
  std::string key(entry.word);
  bool has_phones = false;
  std::string_view rest = entry.text;
  for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
    const std::string piece = Known(word);
    const std::string name = piece.substr(0, piece.find_last_not_of(kDigitsAndComma) + 1);
    has_phones = has_phones || !name.empty();
    const std::size_t place = PlaceOf(word, entry.text).offset;
    CheckPhone(line, offset + place, name, word.substr(0, name.size()));
    key += ' ' + piece.substr(0, piece.find_last_not_of(',') + 1);
  }
  if (!has_phones) {
    findings_.Write({line, offset, entry.text.size(), "not an entry", "no phones", "", true});
  }
  const auto [first, is_new] = entries_.emplace(std::move(key), line);
  if (!is_new) {
    findings_.Write({line, 0, 0, "duplicate entry",
                     Quoted(entry.word) + " as in line " + std::to_string(first->second), "",
                     true});
  }
}

// A piece in the case that the phones have.
std::string LexiconCheck::Known(std::string_view piece) const {
  std::string known(piece);
  if (ignores_case_) std::transform(known.begin(), known.end(), known.begin(), ascii::ToSmall);
  return known;
}

void LexiconCheck::CheckPhone(std::uint64_t line, std::size_t offset, const std::string& name,
                              std::string_view written) {
  const auto found = seen_.find(name);
  if (found != seen_.end()) {
    found->second = true;
  } else if (!name.empty()) {
    findings_.Write({line, offset, name.size(), "unknown phone", Quoted(written), "", true});
  }
}

void LexiconCheck::Finish(std::uint64_t line_count) {
  std::string unused;
  for (const std::string& name : names_) {
    if (!seen_.at(name)) {
      unused += unused.empty() ? "" : " ";
      unused += name;
    }
  }
  if (!unused.empty()) {
    findings_.Write({std::max<std::uint64_t>(line_count, 1), 0, 0, "phones that never occur",
                     unused, "", false});
  }
}

}  // namespace qeo::tool
