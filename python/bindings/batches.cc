// The batch conversions: one loop over the texts for each, which fills plain arrays without
// Python's lock, and their hand-over to NumPy without a copy.

#include "bindings/batches.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bindings/buffer.h"
#include "bindings/languages.h"
#include "bindings/texts.h"
#include "notation/notation.h"
#include "phoneme/phoneme.h"

namespace qeo::python {

namespace {

constexpr std::uint8_t kConverted = 0;
constexpr std::uint8_t kFailed = 1;

// Where the values of each text end, and whether it was converted.
class Texts {
 public:
  Texts() { offsets_.Add(0); }

  void Reserve(std::size_t count) {
    offsets_.Reserve(count + 1);
    status_.Reserve(count);
  }

  void End(std::size_t value_count, bool is_converted) {
    offsets_.Add(static_cast<std::int64_t>(value_count));
    status_.Add(is_converted ? kConverted : kFailed);
  }

  py::array TakeOffsets() { return offsets_.TakeArray(); }
  py::array TakeStatus() { return status_.TakeArray(); }

 private:
  Buffer<std::int64_t> offsets_;
  Buffer<std::uint8_t> status_;
};

class CodeConverter {
 public:
  explicit CodeConverter(int language) : language_(language) {}

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& text) {
    const int result = sp::py2code(language_, text, of_text_);
    codes_.Append(of_text_.data(), of_text_.size());
    texts_.End(codes_.size(), result == 0);
  }

  py::tuple Take() {
    return py::make_tuple(codes_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  int language_;
  std::vector<unsigned short> of_text_;
  Buffer<std::uint16_t> codes_;
  Texts texts_;
};

// By way of the syllable codes, which say all that a syllable is: records of syllables, with a list
// of phones each, would cost more than all the rest.
class SyllableConverter {
 public:
  explicit SyllableConverter(int language)
      : language_(language), rows_(SyllableLanguage(language).row_phones) {
    phone_offsets_.Add(0);
  }

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& text) {
    constexpr unsigned kTonesPerRow = 10;
    const int result = sp::py2code(language_, text, of_text_);
    for (const unsigned code : of_text_) {
      const RowPhones& row = rows_[code / kTonesPerRow];
      phones_.Append(row.ids, row.count);
      phone_offsets_.Add(static_cast<std::int64_t>(phones_.size()));
      tones_.Add(static_cast<std::int8_t>(code % kTonesPerRow));
    }
    codes_.Append(of_text_.data(), of_text_.size());
    texts_.End(codes_.size(), result == 0);
  }

  py::tuple Take() {
    return py::make_tuple(phones_.TakeArray(), phone_offsets_.TakeArray(), codes_.TakeArray(),
                          tones_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  int language_;
  const std::vector<RowPhones>& rows_;
  std::vector<unsigned short> of_text_;
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

  void Add(const std::string& pronunciation) {
    of_text_.clear();
    const int result = sp::pr2ph(language_, pronunciation, of_text_);
    if (result == 0) ids_.Append(of_text_.data(), of_text_.size());
    texts_.End(ids_.size(), result == 0);
  }

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
  PieceConverter(int language, bool backward) : language_(language), backward_(backward) {
    piece_offsets_.Add(0);
  }

  void Reserve(std::size_t count) { texts_.Reserve(count); }

  void Add(const std::string& word) {
    const int result = sp::pyw2py(language_, word, of_text_, backward_);
    for (const std::string& piece : of_text_) {
      data_.Append(piece.data(), piece.size());
      piece_offsets_.Add(static_cast<std::int64_t>(data_.size()));
    }
    texts_.End(piece_offsets_.size() - 1, result == 0);
  }

  py::tuple Take() {
    return py::make_tuple(data_.TakeArray(), piece_offsets_.TakeArray(), texts_.TakeOffsets(),
                          texts_.TakeStatus());
  }

 private:
  int language_;
  bool backward_;
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

  void Add(const std::string& text) {
    const notation::Normalized normalized = Normalize(language_, text);
    data_.Append(normalized.text.data(), normalized.text.size());
    texts_.End(data_.size(), normalized.problems.empty());
  }

  py::tuple Take() {
    return py::make_tuple(data_.TakeArray(), texts_.TakeOffsets(), texts_.TakeStatus());
  }

 private:
  int language_;
  Buffer<std::uint8_t> data_;
  Texts texts_;
};

// NumPy is imported by the first batch. pybind11 would do so inside a static initialiser, where a
// thread that loses Python's lock while it imports blocks all others for ever; after an import by
// the usual way, that initialiser has nothing to do for which the lock is given away.
void ImportNumpy() {
  static bool is_imported = false;
  if (is_imported) return;
  py::module_::import("numpy");
  py::dtype::of<std::uint8_t>();
  is_imported = true;
}

// A batch function of a converter that takes what it is made of behind the texts.
template <typename Converter, typename... Options>
py::tuple Convert(py::handle texts, py::handle language, Options... options) {
  ImportNumpy();
  Converter converter(LanguageArgument(language.ptr()), options...);
  ConvertAll(texts, converter);
  return converter.Take();
}

}  // namespace

void AddBatches(py::module_& module) {
  module.def("py2code_batch", &Convert<CodeConverter>);
  module.def("py2ph_batch", &Convert<SyllableConverter>);
  module.def("pr2ph_batch", &Convert<IdConverter>);
  module.def("pyw2py_batch", &Convert<PieceConverter, bool>);
  module.def("normalize_batch", &Convert<NormalizedConverter>);
}

}  // namespace qeo::python
