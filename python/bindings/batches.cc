// The batch conversions: one loop over the texts for each, which fills plain arrays without
// Python's lock, and their hand-over to NumPy without a copy.

#include "bindings/batches.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/arguments.h"
#include "bindings/buffer.h"
#include "bindings/languages.h"
#include "bindings/notation.h"
#include "bindings/positions.h"
#include "bindings/status.h"
#include "bindings/texts.h"
#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::python {

namespace {

// Where the values of each text end, and what became of it.
class Texts {
 public:
  Texts() { offsets_.Add(0); }

  void Reserve(std::size_t count) {
    offsets_.Reserve(count + 1);
    status_.Reserve(count);
  }

  void End(std::size_t value_count, Status status) {
    end_ = static_cast<std::int64_t>(value_count);
    Skip(status);
  }

  /// Adds a text without values.
  void Skip(Status status) {
    offsets_.Add(end_);
    status_.Add(static_cast<std::uint8_t>(status));
  }

  py::array TakeOffsets() { return offsets_.TakeArray(); }
  py::array TakeStatus() { return status_.TakeArray(); }

 private:
  std::int64_t end_ = 0;
  Buffer<std::int64_t> offsets_;
  Buffer<std::uint8_t> status_;
};

// How many bytes of a romanised text are not separators; pieces that lose none have as many.
std::size_t ContentOf(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), sp::IsSeparator));
}

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }));
}

// The syllable table that serves a language; null for one that has none.
const sp::PinyinInfo* RowsOf(int language) {
  return sp::FindPhoneSet(ServingLanguage(sp::Conversion::kSyllables, language))->pinyin_list;
}

// Converts romanised texts to codes. The library drops letters that no syllable of a longest match
// reaches; here a text that loses any fails where `strict`.
class TextReader {
 public:
  TextReader(int language, bool strict)
      : language_(language), strict_(strict), rows_(RowsOf(language)) {}

  Status Read(const std::string& text) {
    if (sp::py2code(language_, text, codes_) != 0) return Status::kFailed;
    if (!strict_ || !LosesLetters(text)) return Status::kConverted;
    codes_.clear();
    return Status::kLettersLost;
  }

  const std::vector<unsigned short>& codes() const { return codes_; }
  const sp::PinyinInfo& row(unsigned code) const { return rows_[code / sp::kTonesPerRow]; }

 private:
  // Each digit of a text that converts closes a syllable. FindPieces would cost twice as much.
  bool LosesLetters(std::string_view text) const {
    std::size_t kept = CountDigits(text);
    for (const unsigned code : codes_) kept += std::strlen(row(code).pinyin);
    return kept != ContentOf(text);
  }

  int language_;
  bool strict_;
  const sp::PinyinInfo* rows_;
  std::vector<unsigned short> codes_;
};

class CodeConverter {
 public:
  CodeConverter(int language, bool strict) : reader_(language, strict) {}

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& text, Unit /*of positions*/) {
    const Status status = reader_.Read(text);
    codes_.Append(reader_.codes().data(), reader_.codes().size());
    texts_.End(codes_.size(), status);
  }

  void Skip(Status status) { texts_.Skip(status); }

  py::tuple Take() {
    return py::make_tuple(codes_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  TextReader reader_;
  Buffer<std::uint16_t> codes_;
  Texts texts_;
};

// By way of the syllable codes, which say all that a syllable is: records of syllables, with a list
// of phones each, would cost more than all the rest.
class SyllableConverter {
 public:
  SyllableConverter(int language, bool strict) : reader_(language, strict) {
    phone_offsets_.Add(0);
  }

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& text, Unit /*of positions*/) {
    const Status status = reader_.Read(text);
    for (const unsigned code : reader_.codes()) {
      const sp::PinyinInfo& row = reader_.row(code);
      for (const sp::PhoneInfo* phone : {row.initial_phone, row.final_phone}) {
        if (phone != nullptr) phones_.Add(static_cast<std::uint8_t>(phone->id));
      }
      phone_offsets_.Add(static_cast<std::int64_t>(phones_.size()));
      tones_.Add(static_cast<std::int8_t>(code % sp::kTonesPerRow));
    }
    codes_.Append(reader_.codes().data(), reader_.codes().size());
    texts_.End(codes_.size(), status);
  }

  void Skip(Status status) { texts_.Skip(status); }

  py::tuple Take() {
    return py::make_tuple(phones_.TakeArray(), phone_offsets_.TakeArray(), codes_.TakeArray(),
                          tones_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  TextReader reader_;
  Buffer<std::uint8_t> phones_;
  Buffer<std::int64_t> phone_offsets_;
  Buffer<std::uint16_t> codes_;
  Buffer<std::int8_t> tones_;
  Texts texts_;
};

class IdConverter {
 public:
  explicit IdConverter(int language) : language_(language) {}

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& pronunciation, Unit /*of positions*/) {
    of_text_.clear();
    const int result = sp::pr2ph(language_, pronunciation, of_text_);
    if (result == 0) ids_.Append(of_text_.data(), of_text_.size());
    texts_.End(ids_.size(), result == 0 ? Status::kConverted : Status::kFailed);
  }

  void Skip(Status status) { texts_.Skip(status); }

  py::tuple Take() {
    return py::make_tuple(ids_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  int language_;
  std::vector<unsigned char> of_text_;
  Buffer<std::uint8_t> ids_;
  Texts texts_;
};

class PieceConverter {
 public:
  PieceConverter(int language, bool backward, bool strict)
      : language_(language), backward_(backward), strict_(strict) {
    piece_offsets_.Add(0);
  }

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& word, Unit /*of positions*/) {
    sp::pyw2py(language_, word, of_text_, backward_);  // never fails
    if (strict_ && LosesLetters(word)) return Skip(Status::kLettersLost);
    for (const std::string& piece : of_text_) {
      data_.Append(piece.data(), piece.size());
      piece_offsets_.Add(static_cast<std::int64_t>(data_.size()));
    }
    texts_.End(piece_offsets_.size() - 1, Status::kConverted);
  }

  void Skip(Status status) { texts_.Skip(status); }

  py::tuple Take() {
    return py::make_tuple(data_.TakeArray(), piece_offsets_.TakeArray(), texts_.TakeOffsets(),
                          texts_.TakeStatus());
  }

 private:
  bool LosesLetters(std::string_view word) const {
    std::size_t kept = 0;
    for (const std::string& piece : of_text_) kept += piece.size();
    return kept != ContentOf(word);
  }

  int language_;
  bool backward_;
  bool strict_;
  std::vector<std::string> of_text_;
  Buffer<std::uint8_t> data_;
  Buffer<std::int64_t> piece_offsets_;
  Texts texts_;
};

notation::Normalized Normalize(int language, const std::string& text) {
  if (language == sp::LANGUAGE_CANTONESE) return notation::NormalizeJyutping(text);
  if (language == sp::LANGUAGE_AMERICAN_ENGLISH) return notation::ArpabetToPronunciation(text);
  return notation::NormalizePinyin(text);  // also for an unregistered language
}

class NormalizedConverter {
 public:
  // The first use of a language makes its tables. It is here, under the lock, under which Python
  // forks: a child would otherwise wait for ever for the tables of a thread that it does not have.
  explicit NormalizedConverter(int language) : language_(language) { Normalize(language, {}); }

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& text, Unit /*of positions*/) {
    const notation::Normalized normalized = Normalize(language_, text);
    const auto& problems = normalized.problems;
    data_.Append(normalized.text.data(), normalized.text.size());
    texts_.End(data_.size(), problems.empty() ? Status::kConverted : StatusOf(problems[0].kind));
  }

  void Skip(Status status) { texts_.Skip(status); }

  py::tuple Take() {
    return py::make_tuple(data_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  int language_;
  Buffer<std::uint8_t> data_;
  Texts texts_;
};

// Reads texts as `analyze` does. A text with a problem has no syllables, but the place of its first
// problem.
class AnalysisConverter {
 public:
  AnalysisConverter(int language, const notation::AnalysisOptions& options)
      : language_(language), options_(options) {
    notation::Analyze(language, {});  // makes the tables under the lock, as above
    phone_offsets_.Add(0);
  }

  void Reserve(std::size_t count) {
    texts_.Reserve(count);
    problem_starts_.Reserve(count);
    problem_stops_.Reserve(count);
  }

  void Add(const std::string& text, Unit unit) {
    const notation::Analysis analysis = notation::Analyze(language_, text, options_);
    if (!analysis.problems.empty()) {
      AddProblem(text, unit, analysis.problems[0]);
      return;
    }
    for (const notation::AnalyzedSyllable& read : analysis.syllables) AddSyllable(read.syllable);
    AddProblemRange(-1, -1);
    texts_.End(codes_.size(), Status::kConverted);
  }

  void Skip(Status status) {
    AddProblemRange(-1, -1);
    texts_.Skip(status);
  }

  py::tuple Take() {
    return py::make_tuple(phones_.TakeArray(), phone_offsets_.TakeArray(), codes_.TakeArray(),
                          tones_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus(),
                          problem_starts_.TakeArray(), problem_stops_.TakeArray());
  }

 private:
  void AddSyllable(const sp::SyllableInfo& syllable) {
    for (const sp::PhoneInfo* phone : syllable.phones) {
      phones_.Add(static_cast<std::uint8_t>(phone->id));
    }
    phone_offsets_.Add(static_cast<std::int64_t>(phones_.size()));
    codes_.Add(static_cast<std::uint16_t>(syllable.code));
    // A syllable of a table has a tone, and one of phones the digit of its stress.
    const int tone = syllable.code != 0 ? syllable.tone : syllable.raw_tone;
    tones_.Add(static_cast<std::int8_t>(tone));
  }

  void AddProblem(std::string_view text, Unit unit, const notation::Problem& problem) {
    const notation::Range& range = problem.range;
    std::size_t start = range.offset;
    std::size_t stop = range.end();
    if (unit == Unit::kCharacters) {
      start = CharacterCount(text.substr(0, start));
      stop = start + CharacterCount(text.substr(range.offset, range.length));
    }
    AddProblemRange(static_cast<std::int64_t>(start), static_cast<std::int64_t>(stop));
    texts_.Skip(StatusOf(problem.kind));
  }

  void AddProblemRange(std::int64_t start, std::int64_t stop) {
    problem_starts_.Add(start);
    problem_stops_.Add(stop);
  }

  int language_;
  notation::AnalysisOptions options_;
  Buffer<std::uint8_t> phones_;
  Buffer<std::int64_t> phone_offsets_;
  Buffer<std::uint16_t> codes_;
  Buffer<std::int8_t> tones_;
  Texts texts_;
  Buffer<std::int64_t> problem_starts_;
  Buffer<std::int64_t> problem_stops_;
};

// To be called before the first batch, under a lock that is held while the process forks. pybind11
// would import NumPy inside a static initialiser, where a thread that loses Python's lock while it
// imports blocks all others for ever; after an import by the usual way, that initialiser has
// nothing to do for which the lock is given away.
void ImportNumpy() {
  py::module_::import("numpy");
  py::dtype::of<std::uint8_t>();
}

// The offsets of normalised texts, and what became of these: the base of an array that TieStatus
// makes, where a batch that takes the texts as a pair of buffers finds it.
struct NormalizedTexts {
  py::array offsets;
  py::array status;
};

// The same offsets as an array that carries the status. What is not an array stays as it is.
py::object TieStatus(const py::object& offsets, const py::object& status) {
  if (!py::isinstance<py::array>(offsets) || !py::isinstance<py::array>(status)) return offsets;
  const auto from = py::reinterpret_borrow<py::array>(offsets);
  const std::vector<py::ssize_t> shape(from.shape(), from.shape() + from.ndim());
  const std::vector<py::ssize_t> strides(from.strides(), from.strides() + from.ndim());
  const py::object base = py::cast(NormalizedTexts{from, py::array(status)});
  py::array tied(from.dtype(), shape, strides, from.data(), base);
  if (!from.writeable()) tied.attr("flags").attr("writeable") = false;
  return std::move(tied);
}

using Statuses = py::array_t<std::uint8_t, py::array::c_style | py::array::forcecast>;

// The status of each text, null for none.
Statuses StatusArgument(const py::object& status) {
  if (status.is_none()) return py::reinterpret_steal<Statuses>(py::handle());
  Statuses statuses = Statuses::ensure(status);
  if (statuses && statuses.ndim() == 1) return statuses;
  PyErr_Clear();
  throw py::type_error("the status of a batch must be an array of uint8 in one dimension, not " +
                       TypeName(status.ptr()));
}

template <typename Converter>
py::tuple ConvertBy(Converter& converter, py::handle texts, bool takes_missing,
                    const py::object& status) {
  Taken taken;
  taken.missing = takes_missing;
  const Statuses statuses = StatusArgument(status);
  if (statuses) {
    taken.status = statuses.data();
    taken.status_count = static_cast<std::size_t>(statuses.size());
  }
  ConvertAll(texts, taken, converter);
  return converter.Take();
}

// A batch function of a converter that takes what it is made of after all else.
template <typename Converter, typename... Options>
py::tuple Convert(py::handle texts, py::handle language, py::handle fallback, bool takes_missing,
                  const py::object& status, Options... options) {
  Converter converter(LanguageArgument(language.ptr(), fallback.ptr()), options...);
  return ConvertBy(converter, texts, takes_missing, status);
}

py::tuple AnalyzeBatch(py::handle texts, py::handle language, py::handle fallback,
                       bool takes_missing, const py::object& status,
                       std::optional<std::uint32_t> rules, const notation::AliasTable* aliases,
                       int cutting) {
  notation::AnalysisOptions options;
  if (rules) options.rules = Rules(*rules);
  options.aliases = aliases;
  options.cutting = static_cast<notation::Cutting>(cutting);
  AnalysisConverter converter(LanguageArgument(language.ptr(), fallback.ptr()), options);
  return ConvertBy(converter, texts, takes_missing, status);
}

}  // namespace

void AddBatches(py::module_& module) {
  py::class_<NormalizedTexts>(module, "NormalizedTexts")
      .def_readonly("offsets", &NormalizedTexts::offsets)
      .def_readonly("status", &NormalizedTexts::status);
  module.def("tie_status", TieStatus);
  module.def("import_numpy", ImportNumpy);
  module.def("py2code_batch", &Convert<CodeConverter, bool>);
  module.def("py2ph_batch", &Convert<SyllableConverter, bool>);
  module.def("pr2ph_batch", &Convert<IdConverter>);
  module.def("pyw2py_batch", &Convert<PieceConverter, bool, bool>);
  module.def("normalize_batch", &Convert<NormalizedConverter>);
  module.def("analyze_batch", AnalyzeBatch);
}

}  // namespace qeo::python
