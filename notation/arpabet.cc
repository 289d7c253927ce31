#include "notation/arpabet.h"

// ARPAbet both ways, in one pass over the tokens and one over the syllables, which are cut by
// maximal onset. Names are looked up through the library; english_onsets.h lists the legal onsets.

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "notation/bounded_vector.h"
#include "notation/english_onsets.h"
#include "notation/nearest_name.h"
#include "notation/token.h"
#include "phoneme/ascii.h"
#include "phoneme/phoneme.h"

namespace qeo::notation {
namespace {

constexpr int kEnglish = sp::LANGUAGE_AMERICAN_ENGLISH;
constexpr std::size_t kMaxNameLength = sizeof(sp::PhoneInfo::name) - 1;
constexpr std::size_t kUsualPhones = 32;  // room that hardly a word outgrows
constexpr std::size_t kUsualBytes = 4;    // of a pronunciation string, for each phone
constexpr std::string_view kUnreduced = "ah";
constexpr std::string_view kReduced = "ax";
constexpr std::string_view kReducedInArpabet = "AH";

constexpr bool IsStress(char digit) { return digit <= '2'; }
constexpr char SmallToUpper(char c) { return static_cast<char>(c - 32); }

bool IsValidUtf8(std::string_view text) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  auto left = static_cast<utf8proc_ssize_t>(text.size());
  while (left > 0) {
    utf8proc_int32_t code_point = 0;
    const utf8proc_ssize_t length = utf8proc_iterate(bytes, left, &code_point);
    if (length <= 0) return false;
    bytes += length;
    left -= length;
  }
  return true;
}

struct EnglishPhone {
  std::string_view name;
  internal::ShortText upper;  // the name in upper case
  bool is_vowel = false;
  internal::OnsetKey onset = 0;
};

// The library's phones by name. Asking the library for each phone of a dictionary takes most of the
// time, so the names are read once.
class EnglishPhones {
 public:
  static constexpr std::size_t kMaxPhones = 64;

  static const EnglishPhones& Get() {
    static const EnglishPhones phones;
    return phones;
  }

  EnglishPhones(const EnglishPhones&) = delete;
  EnglishPhones& operator=(const EnglishPhones&) = delete;

  const internal::BoundedVector<EnglishPhone, kMaxPhones>& All() const { return phones_; }

  // The phone of a name in any case; null when there is none.
  const EnglishPhone* Find(std::string_view name) const {
    const EnglishPhone* phone = by_beginning_[SlotOf(name)];
    if (phone == nullptr || phone->name.size() != name.size()) return nullptr;
    const auto same = [](char a, char b) { return ascii::ToSmall(a) == b; };
    return std::equal(name.begin(), name.end(), phone->name.begin(), same) ? phone : nullptr;
  }

 private:
  static constexpr std::size_t kLetters = 27;  // the letters, and none

  EnglishPhones() {
    for (int id = 0;; ++id) {
      const sp::PhoneInfo* info = sp::GetPhoneInfoById(kEnglish, id);
      if (info->id != id) break;
      const std::string_view name = info->name;
      std::string upper(name);
      std::transform(upper.begin(), upper.end(), upper.begin(), SmallToUpper);
      phones_.push_back({name, internal::ShortText(upper), info->type == sp::PHONE_TYPE_FINAL,
                         internal::PhoneKey(name)});
    }
    for (const EnglishPhone& phone : phones_) by_beginning_[SlotOf(phone.name)] = &phone;
  }

  // The first two letters of a name; no two phones have the same.
  static std::size_t SlotOf(std::string_view name) {
    const auto letter = [name](std::size_t i) {
      const char c = i < name.size() ? ascii::ToSmall(name[i]) : '\0';
      return ascii::IsSmall(c) ? static_cast<std::size_t>(c - 'a') + 1 : 0;
    };
    return letter(0) * kLetters + letter(1);
  }

  internal::BoundedVector<EnglishPhone, kMaxPhones> phones_;
  std::array<const EnglishPhone*, kLetters* kLetters> by_beginning_ = {};
};

// The known name nearest to `name`.
std::string SuggestPhone(std::string_view name) {
  if (name.size() > kMaxNameLength) return {};
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(), ascii::ToSmall);
  internal::NearestName nearest(lower);
  for (const EnglishPhone& phone : EnglishPhones::Get().All()) nearest.Offer(phone.name);
  return std::string(nearest.best());
}

// Text that remembers where its bytes come from.
class Writer {
 public:
  explicit Writer(Normalized& out) : out_(out) {}

  void Reserve(std::size_t byte_count) {
    out_.text.reserve(byte_count);
    out_.origins.reserve(byte_count);
  }

  // Bytes that come from as many bytes of the input.
  void Put(std::string_view bytes, std::size_t origin) {
    out_.text += bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) out_.origins.push_back(origin + i);
    last_origin_ = out_.origins.back();
  }

  // A byte that the notation asks for, or that another place in the input decides.
  void Put(char c) {
    out_.text += c;
    out_.origins.push_back(last_origin_);
  }

 private:
  Normalized& out_;
  std::size_t last_origin_ = 0;
};

Problem& AddProblem(ProblemKind kind, Range range, Normalized& out) {
  return out.problems.emplace_back(Problem{kind, range, {}});
}

// `letters` is the name in `range`, without the digits after it.
void AddUnknownPhone(std::string_view text, Range range, std::string_view letters,
                     Normalized& out) {
  if (!IsValidUtf8(internal::BytesOf(text, range))) {
    AddProblem(ProblemKind::kInvalidUtf8, range, out);
    return;
  }
  Problem& problem = AddProblem(ProblemKind::kUnknownPhone, range, out);
  problem.suggestion = SuggestPhone(letters);
  if (problem.suggestion.empty()) return;
  problem.hint = Hint::kSpelling;
  problem.piece = range;
}

// A phone of the input, known to the library.
struct Phone {
  const EnglishPhone* info = nullptr;
  std::size_t offset = 0;
  char stress = '0';
  std::size_t stress_offset = 0;  // equal to `offset` when no digit was written
};

class ArpabetReader {
 public:
  ArpabetReader(std::string_view text, RuleSet rules, Normalized& out)
      : text_(text), rules_(rules), out_(out) {}

  std::vector<Phone> Read() {
    phones_.reserve(kUsualPhones);
    out_.applied.reserve(kUsualPhones);
    for (Range token = internal::NextToken(text_, 0, text_.size()); token.length != 0;
         token = internal::NextToken(text_, token.end(), text_.size())) {
      ReadPhone(token);
    }
    return std::move(phones_);
  }

 private:
  // A phone as it is written: a name and digits.
  struct WrittenPhone {
    Range range;
    Range letters;
    Range digits;
  };

  void ReadPhone(Range range) {
    Range letters = range;
    while (letters.length > 0 && ascii::IsDigit(text_[letters.end() - 1])) {
      --letters.length;
    }
    const WrittenPhone written = {range, letters, {letters.end(), range.length - letters.length}};
    const std::string_view name = internal::BytesOf(text_, letters);
    const EnglishPhone* phone = known_.Find(name);
    const bool is_lower = phone != nullptr && phone->name == name;
    if (phone == nullptr || (!is_lower && !rules_.Has(Rule::kLowerCase))) {
      return AddUnknownPhone(text_, range, name, out_);
    }
    if (phone->is_vowel && !HasStress(written) && !rules_.Has(Rule::kMissingStress)) {
      AddProblem(ProblemKind::kBadTone, range, out_);
      return;
    }
    if (!is_lower) Apply(Rule::kLowerCase, letters);
    phones_.push_back({phone, letters.offset, '0', letters.offset});
    if (phone->is_vowel && HasStress(written)) return ReadStress(written);
    if (phone->is_vowel) Apply(Rule::kMissingStress, letters);
    if (written.digits.length != 0) AddProblem(ProblemKind::kBadTone, written.digits, out_);
  }

  bool HasStress(const WrittenPhone& written) const {
    return written.digits.length == 1 && IsStress(text_[written.digits.offset]);
  }

  // Gives the last phone the stress that is written after it.
  void ReadStress(const WrittenPhone& written) {
    Phone& vowel = phones_.back();
    vowel.stress = text_[written.digits.offset];
    vowel.stress_offset = written.digits.offset;
    if (vowel.stress == '0' && vowel.info->name == kUnreduced && rules_.Has(Rule::kReducedVowel)) {
      vowel.info = known_.Find(kReduced);
      Apply(Rule::kReducedVowel, written.range);
    }
    if (vowel.stress == '2' && rules_.Has(Rule::kSecondStress)) {
      vowel.stress = '1';
      Apply(Rule::kSecondStress, written.digits);
    }
  }

  void Apply(Rule rule, Range range) { out_.applied.push_back({rule, range}); }

  std::string_view text_;
  RuleSet rules_;
  Normalized& out_;
  const EnglishPhones& known_ = EnglishPhones::Get();
  std::vector<Phone> phones_;
};

class PronunciationWriter {
 public:
  PronunciationWriter(const std::vector<Phone>& phones, Normalized& out)
      : phones_(phones), writer_(out) {}

  void Write() {
    writer_.Reserve(phones_.size() * kUsualBytes + kUsualBytes);
    std::size_t vowel = NextVowel(0);
    std::size_t begin = MaximalOnsetBegin(vowel);
    WriteSyllable(0, begin, nullptr);
    while (vowel < phones_.size()) {
      const std::size_t next = NextVowel(vowel + 1);
      const std::size_t end = MaximalOnsetBegin(next);
      WriteSyllable(begin, end, &phones_[vowel]);
      begin = end;
      vowel = next;
    }
  }

 private:
  std::size_t NextVowel(std::size_t from) const {
    while (from < phones_.size() && !phones_[from].info->is_vowel) ++from;
    return from;
  }

  // Maximal onset: of the consonants before a vowel, its syllable takes the longest legal onset,
  // and the syllable before it keeps the rest. Returns where that onset begins; an onset has no
  // vowel. After the last vowel there is no onset: its syllable keeps all consonants that follow.
  std::size_t MaximalOnsetBegin(std::size_t vowel) const {
    if (vowel == phones_.size()) return vowel;
    std::size_t begin = vowel;
    internal::OnsetKey key = 0;
    while (begin > 0 && vowel - begin < internal::kMaxOnsetPhones) {
      key |= internal::InFrontOf(vowel - begin, phones_[begin - 1].info->onset);
      if (!internal::IsEnglishOnset(key)) break;
      --begin;
    }
    return begin;
  }

  void WriteSyllable(std::size_t begin, std::size_t end, const Phone* vowel) {
    if (begin == end) return;
    if (begin != 0) {
      writer_.Put(',');
      writer_.Put(' ');
    }
    for (std::size_t i = begin; i < end; ++i) {
      writer_.Put(phones_[i].info->name, phones_[i].offset);
      writer_.Put(' ');
    }
    if (vowel == nullptr) return writer_.Put('0');
    const bool digit_is_next = vowel == &phones_[end - 1] && vowel->stress_offset != vowel->offset;
    if (digit_is_next) return writer_.Put({&vowel->stress, 1}, vowel->stress_offset);
    writer_.Put(vowel->stress);
  }

  const std::vector<Phone>& phones_;
  Writer writer_;
};

class PronunciationReader {
 public:
  PronunciationReader(std::string_view text, Normalized& out)
      : text_(text), out_(out), writer_(out) {}

  void Read() {
    writer_.Reserve(text_.size());
    for (std::size_t begin = 0; begin < text_.size();) {
      const std::size_t end = std::min(text_.find(',', begin), text_.size());
      ReadSyllable(begin, end);
      begin = end + 1;
    }
  }

 private:
  void ReadSyllable(std::size_t begin, std::size_t end) {
    while (begin < end && ascii::IsBlank(text_[begin])) ++begin;
    while (end > begin && ascii::IsBlank(text_[end - 1])) --end;
    if (begin == end) return;
    const std::size_t digit = end - 1;
    if (!ascii::IsDigit(text_[digit]) || digit == begin || !ascii::IsBlank(text_[digit - 1])) {
      AddProblem(ProblemKind::kBadTone, {begin, end - begin}, out_);
      return;
    }
    char waiting = IsStress(text_[digit]) ? text_[digit] : kNoStress;
    for (Range token = internal::NextToken(text_, begin, digit); token.length != 0;
         token = internal::NextToken(text_, token.end(), digit)) {
      waiting = ReadPhone(token, waiting);
    }
    const bool lost = waiting == kNoStress ? !IsStress(text_[digit]) : waiting != '0';
    if (lost) AddProblem(ProblemKind::kBadTone, {digit, 1}, out_);
  }

  // Writes a phone, with the digit when it is the first vowel that meets it. Returns the digit that
  // still waits for its vowel.
  char ReadPhone(Range token, char waiting) {
    const std::string_view name = internal::BytesOf(text_, token);
    const EnglishPhone* info = known_.Find(name);
    if (info == nullptr || info->name != name) {
      AddUnknownPhone(text_, token, name, out_);
      return waiting;
    }
    const char stress = info->is_vowel ? waiting : kNoStress;
    if (!out_.text.empty()) writer_.Put(' ');
    const bool is_reduced = stress == '0' && name == kReduced;
    writer_.Put(is_reduced ? kReducedInArpabet : info->upper.view(), token.offset);
    if (stress == kNoStress) return waiting;
    writer_.Put(stress);
    return kNoStress;
  }

  static constexpr char kNoStress = '\0';

  std::string_view text_;
  Normalized& out_;
  const EnglishPhones& known_ = EnglishPhones::Get();
  Writer writer_;
};

// The number in "(2)" at the end of a word, not empty, and the word without it.
int TakeVariant(std::string_view& word) {
  constexpr std::size_t kMaxDigits = 9;
  if (word.back() != ')') return 0;
  const std::size_t open = word.rfind('(');
  if (open == std::string_view::npos || open == 0) return 0;
  const std::string_view digits = word.substr(open + 1, word.size() - open - 2);
  if (digits.empty() || digits.size() > kMaxDigits || digits.front() == '0') return 0;
  if (!std::all_of(digits.begin(), digits.end(), ascii::IsDigit)) return 0;
  int variant = 0;
  for (const char digit : digits) variant = variant * 10 + (digit - '0');
  word = word.substr(0, open);
  return variant;
}

// Where the first "#" after white space is, or the end. `text` begins after a word.
std::size_t FindComment(std::string_view text) {
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '#' && ascii::IsBlank(text[i - 1])) return i;
  }
  return text.size();
}

// `line` is not empty.
bool IsCommentLine(std::string_view line) {
  if (line.substr(0, 3) == ";;;") return true;
  return line[0] == '#' && (line.size() == 1 || ascii::IsBlank(line[1]));
}

}  // namespace

Normalized ArpabetToPronunciation(std::string_view phones, RuleSet rules) {
  Normalized out;
  const std::vector<Phone> known = ArpabetReader(phones, rules, out).Read();
  PronunciationWriter(known, out).Write();
  return out;
}

Normalized PronunciationToArpabet(std::string_view pronunciation) {
  Normalized out;
  PronunciationReader(pronunciation, out).Read();
  return out;
}

CmudictLine ParseCmudictLine(std::string_view line) {
  line = ascii::Trim(line);
  const std::string_view end = line.substr(line.size());
  if (line.empty()) return {CmudictLineKind::kBlank, end, 0, end, end};
  if (IsCommentLine(line)) return {CmudictLineKind::kComment, end, 0, end, line};
  std::string_view word = line.substr(0, internal::NextToken(line, 0, line.size()).length);
  const std::string_view rest = line.substr(word.size());
  const std::size_t comment = FindComment(rest);
  const int variant = TakeVariant(word);
  return {CmudictLineKind::kEntry, word, variant, ascii::Trim(rest.substr(0, comment)),
          rest.substr(comment)};
}

}  // namespace qeo::notation
