#include "tools/reader.h"

#include <algorithm>
#include <optional>

#include "tools/messages.h"
#include "tools/numbers.h"
#include "xstr/xstr.h"

namespace qeo::tool {
namespace {

// Takes the next word of `text` off its front; an empty word when there is none.
std::string_view TakeWord(std::string_view& text) {
  constexpr std::string_view kBlanks = "\t\n\v\f\r ";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

}  // namespace

bool Reader::Read(const std::string& text) {
  codes_.clear();
  syllables_.clear();
  switch (from_) {
    case Source::kText:
      return ReadText(text);
    case Source::kCodes:
      return ReadCodes(text);
    case Source::kIds:
      return ReadIds(text);
    case Source::kPronunciation:
      return ReadPronunciation(text);
  }
  return false;
}

std::size_t Reader::syllable_count() const {
  return HasCodes(from_) ? codes_.size() : syllables_.size();
}

const sp::SyllableInfo& Reader::Syllable(std::size_t index) {
  if (!HasCodes(from_)) {
    return syllables_[index];
  }
  Decode(codes_[index]);
  return decoded_;
}

bool Reader::ReadText(const std::string& text) {
  if (sp::py2code(language_, text, codes_) == 0) {
    return true;
  }
  std::vector<std::string> pieces;
  sp::pyw2py(language_, text, pieces, false);
  const auto unknown = std::find_if(pieces.begin(), pieces.end(), [&](const std::string& piece) {
    return sp::py2code(language_, piece + ' ', codes_) != 0;  // the blank keeps it in one piece
  });
  return Unknown("syllable", unknown == pieces.end() ? text : *unknown);
}

bool Reader::ReadCodes(std::string_view text) {
  for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text)) {
    const std::optional<unsigned short> code = ParseNumber<unsigned short>(word);
    if (!code || !Decode(*code)) {
      return Unknown("syllable code", word);
    }
    codes_.push_back(*code);
  }
  return true;
}

// Leaves the syllable of a code in decoded_.
bool Reader::Decode(unsigned short code) {
  decoded_.phones.clear();
  return sp::code2ph(language_, code, decoded_) == 0;
}

bool Reader::ReadIds(std::string_view text) {
  if (ParseIds(text) && RegroupIds()) {
    return true;
  }
  std::string_view word = TakeWord(text);
  while (ParseIds(word) && RegroupIds()) {
    word = TakeWord(text);
  }
  return Unknown("phone-id byte", word);
}

// Leaves the numbers of a text in phone_ids_.
bool Reader::ParseIds(std::string_view text) {
  phone_ids_.clear();
  for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text)) {
    const std::optional<unsigned char> phone_id = ParseNumber<unsigned char>(word);
    if (!phone_id) {
      return false;
    }
    phone_ids_.push_back(*phone_id);
  }
  return true;
}

bool Reader::RegroupIds() { return sp::ph2ph(language_, phone_ids_, syllables_) == 0; }

// By way of the ids, because only phones that have one have a name to write.
bool Reader::ReadPronunciation(const std::string& text) {
  if (ParsePronunciation(text)) {
    return RegroupIds();
  }
  for (const std::string& token : xstr::split(text, ",", -1)) {
    if (!ParsePronunciation(token)) {
      problem_ = SyllableProblem(xstr::trim(token, "\t\r\n ", true));
      break;
    }
  }
  return false;
}

// Leaves the phone ids of a pronunciation in phone_ids_.
bool Reader::ParsePronunciation(const std::string& text) {
  phone_ids_.clear();
  return sp::pr2ph(language_, text, phone_ids_) == 0;
}

// What is wrong with one syllable of a pronunciation.
std::string Reader::SyllableProblem(const std::string& token) {
  const std::vector<std::string> pieces = xstr::split(token, " ", -1);
  if (pieces.size() < 2) {
    return "not phones and a digit " + Quoted(token);
  }
  for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
    if (!ParsePronunciation("sil " + pieces[i] + " 0")) {
      return "unknown phone " + Quoted(pieces[i]);
    }
  }
  return "not one digit " + Quoted(pieces.back());
}

bool Reader::Unknown(const char* kind, std::string_view piece) {
  problem_ = std::string("unknown ") + kind + ' ' + Quoted(piece);
  codes_.clear();
  syllables_.clear();
  return false;
}

}  // namespace qeo::tool
