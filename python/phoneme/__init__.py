"""Phone sets of Mandarin, Cantonese and American English, and conversions between their notations.

>>> import phoneme
>>> phoneme.py2code("ni3hao3")
[2243, 1173]
>>> [[phone.name for phone in syllable.phones] for syllable in phoneme.py2ph("ni3hao3")]
[['n', 'i'], ['h', 'ao']]
>>> phoneme.normalize_pinyin("Nǐ hǎo").text
'ni3 hao3'

A text is str, which is read as UTF-8, or bytes. Where a function converts something and takes a
language, the language is the second argument; `phones`, `syllables` and `chart` take it first. It
is "mandarin", "cantonese" or "english", a code as "zh-HK", a `Language` or its id. What cannot be
converted is a `ConversionError`, or None with errors="none". The C++ library has an answer for each
id of a language and for most unknown names and codes: `fallback=True` gives it, and each function
says what it is. A name of a language that is unknown is always a ValueError. Functions whose names end in "_batch" take many texts
and give NumPy arrays.

Everything can be used after a fork and from any number of threads, but for `chart` and `report`,
which as all that draws with matplotlib belong to one thread. Subinterpreters are refused.
"""

from __future__ import annotations

import typing as _typing

from phoneme import _core

_core.require_main_interpreter()

from phoneme._batches import (  # noqa: E402
    AnalysisBatch,
    Batch,
    CodeBatch,
    IdBatch,
    PieceBatch,
    SyllableBatch,
    TextBatch,
    analyze_batch,
    normalize_batch,
    pr2ph_batch,
    py2code_batch,
    py2ph_batch,
    pyw2py_batch,
    to_arrow,
)
from phoneme._conversions import (  # noqa: E402
    code2ph,
    code2py,
    lexicon_en_phone_id,
    lexicon_en_phone_type,
    lexicon_module_phone_type,
    ph2ph,
    ph2tp,
    phone,
    phone_feature,
    phones,
    pr2ph,
    py2code,
    py2ph,
    pyw2py,
    syllables,
    tone_adaptation,
)
from phoneme._core import Phone, Syllable, SyllableRow, __version__  # noqa: E402
from phoneme._enums import Language, PhoneType, Status  # noqa: E402
from phoneme._errors import ConversionError  # noqa: E402
from phoneme._lexicon import (  # noqa: E402
    EntryKind,
    LexiconEntry,
    lexicon_entries,
    lexicon_entry,
)
from phoneme._notation import (  # noqa: E402
    Aliases,
    Analysis,
    AnalyzedSyllable,
    Application,
    Cut,
    CutSyllable,
    Hint,
    Normalized,
    Problem,
    ProblemKind,
    Range,
    Rule,
    analyze,
    arpabet_to_pronunciation,
    cut_whole,
    jyutping,
    marked_pinyin,
    normalize_jyutping,
    normalize_pinyin,
    parse_aliases,
    pronunciation_string,
    pronunciation_to_arpabet,
    shipped_aliases,
)
from phoneme.charts import chart, report  # noqa: E402

__all__ = [
    "Aliases",
    "Analysis",
    "AnalysisBatch",
    "AnalyzedSyllable",
    "Application",
    "Batch",
    "CodeBatch",
    "ConversionError",
    "Cut",
    "CutSyllable",
    "EntryKind",
    "Hint",
    "IdBatch",
    "Language",
    "LexiconEntry",
    "Normalized",
    "Phone",
    "PhoneType",
    "PieceBatch",
    "Problem",
    "ProblemKind",
    "Range",
    "Rule",
    "Status",
    "Syllable",
    "SyllableBatch",
    "SyllableRow",
    "TextBatch",
    "analyze",
    "analyze_batch",
    "arpabet_to_pronunciation",
    "chart",
    "code2ph",
    "code2py",
    "cut_whole",
    "jyutping",
    "lexicon_en_phone_id",
    "lexicon_en_phone_type",
    "lexicon_entries",
    "lexicon_entry",
    "lexicon_module_phone_type",
    "marked_pinyin",
    "normalize_batch",
    "normalize_jyutping",
    "normalize_pinyin",
    "parse_aliases",
    "ph2ph",
    "ph2tp",
    "phone",
    "phone_feature",
    "phones",
    "pr2ph",
    "pr2ph_batch",
    "pronunciation_string",
    "pronunciation_to_arpabet",
    "py2code",
    "py2code_batch",
    "py2ph",
    "py2ph_batch",
    "pyw2py",
    "pyw2py_batch",
    "report",
    "shipped_aliases",
    "syllables",
    "to_arrow",
    "tone_adaptation",
]

# Public names are at home here, for tracebacks, for pickles that outlive a change of files, and for
# the examples, which run among these names. Phone, Syllable and SyllableRow are so already.
def _move(public: _typing.Any) -> None:
    if isinstance(public, type) and getattr(public, "__annotations__", None):
        # Names in annotations are looked up in the module that the class is about to leave.
        public.__annotations__.update(_typing.get_type_hints(public))
    if public.__module__ != __name__:
        public.__module__ = __name__


for _name in __all__:
    _move(globals()[_name])
