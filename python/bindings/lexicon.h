#ifndef PYTHON_BINDINGS_LEXICON_H_
#define PYTHON_BINDINGS_LEXICON_H_

// The lines of lexicons, as plain tuples for the package to name.

#include <pybind11/pybind11.h>

namespace qeo::python {

void AddLexicon(pybind11::module_& module);

}  // namespace qeo::python

#endif  // PYTHON_BINDINGS_LEXICON_H_
