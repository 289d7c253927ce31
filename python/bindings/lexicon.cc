// Lines of lexicons as tuples of pieces of the caller's own str or bytes.

#include "bindings/lexicon.h"

#include <climits>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "bindings/arguments.h"
#include "bindings/fastcall.h"
#include "bindings/objects.h"
#include "bindings/positions.h"
#include "lexicon/lexicon.h"

namespace qeo::python {

namespace {

template <typename Table>
py::tuple Names(const Table& table) {
  py::tuple names(std::size(table));
  for (std::size_t i = 0; i < std::size(table); ++i) names[i] = table[i].name;
  return names;
}

// What a name of a table means; a ValueError that lists the table for any other, and a TypeError
// for what is not a str. Messages call a row of the table `what`.
template <typename Table, typename Meaning>
Meaning NameArgument(py::handle name, const Table& table,
                     std::optional<Meaning> (*meaning_of)(std::string_view), const char* what) {
  if (!PyUnicode_Check(name.ptr())) {
    throw py::type_error(std::string("a ") + what + " must be a name, not " + TypeName(name.ptr()));
  }
  if (const auto meaning = meaning_of(TextArgument(name.ptr()))) return *meaning;
  std::string list;
  for (const auto& row : table) list.append(list.empty() ? "" : ", ").append(row.name);
  throw py::value_error(std::string("unknown ") + what + ' ' + Shown(name.ptr()) + "; the " + what +
                        "s are " + list);
}

// lexicon_layout(format, column, headword): None where there is nothing to choose, or the default.
lexicon::Layout MakeLayout(py::handle format, py::handle column, py::handle headword) {
  lexicon::Layout layout;
  layout.format = NameArgument(format, lexicon::kFormats, lexicon::FormatOfName, "format");
  if (!column.is_none()) {
    const long field = IntegerArgument(column.ptr(), 1, LONG_MAX, "column");
    layout.column = static_cast<std::size_t>(field);
    if (layout.format != lexicon::Format::kTsv) {
      throw py::value_error("column applies to the format 'tsv' only");
    }
  }
  if (!headword.is_none()) {
    layout.headword =
        NameArgument(headword, lexicon::kHeadwords, lexicon::HeadwordOfName, "headword");
    if (layout.format != lexicon::Format::kCedict) {
      throw py::value_error("headword applies to the format 'cedict' only");
    }
  }
  return layout;
}

// A piece of a line, which begins and ends where characters do.
py::object PieceOf(PyObject* line, const Source& source, std::string_view piece) {
  const auto begin = static_cast<std::size_t>(piece.data() - source.text().data());
  const auto start = static_cast<Py_ssize_t>(source.Position(begin));
  const auto stop = static_cast<Py_ssize_t>(source.Position(begin + piece.size()));
  PyObject* copy = PyUnicode_Check(line) ? PyUnicode_Substring(line, start, stop)
                                         : PyBytes_FromStringAndSize(piece.data(), stop - start);
  if (copy == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(copy);
}

// lexicon_entry(layout, line, is_first): (kind, word, text, where the text begins, problem); the
// kind as the number of its member.
py::object ReadEntry(Arguments arguments) {
  const auto& layout = py::handle(arguments[0]).cast<const lexicon::Layout&>();
  PyObject* const line = arguments[1];
  const Source source(line);
  std::string_view rest = source.text();
  if (FlagArgument(arguments[2])) rest = lexicon::WithoutByteOrderMark(rest);
  const lexicon::Entry entry = lexicon::ReadEntry(layout, lexicon::TakeLine(rest).text);
  if (!rest.empty()) {
    throw py::value_error("a line of a lexicon must not contain another one: " + Shown(line));
  }
  const bool is_broken = entry.kind == lexicon::EntryKind::kBroken;
  const auto begin = static_cast<std::size_t>(entry.text.data() - source.text().data());
  return py::make_tuple(static_cast<int>(entry.kind), PieceOf(line, source, entry.word),
                        PieceOf(line, source, entry.text), source.Position(begin),
                        is_broken ? lexicon::BrokenLineProblem(layout) : std::string());
}

PyMethodDef methods[] = {Method<ReadEntry, 3>("lexicon_entry"), {}};

}  // namespace

void AddLexicon(py::module_& module) {
  const py::class_<lexicon::Layout> layout_type(module, "LexiconLayout");
  module.attr("LEXICON_FORMATS") = Names(lexicon::kFormats);
  module.attr("HEADWORDS") = Names(lexicon::kHeadwords);
  module.def("lexicon_layout", MakeLayout);
  AddMethods(module, methods);
}

}  // namespace qeo::python
