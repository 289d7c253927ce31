"""Lines of lexicons to words and pronunciations."""

from __future__ import annotations

import enum
from dataclasses import dataclass
from typing import AnyStr, Generic, Iterable, Iterator, Literal, Optional

from phoneme import _core
from phoneme._core import type_name
from phoneme._errors import is_iterable

LexiconFormat = Literal["lines", "tsv", "cedict", "cmudict", "kaldi"]
Headword = Literal["simplified", "traditional"]


class EntryKind(str, enum.Enum):
    """What a line of a lexicon is.

    >>> [lexicon_entry(line, "cmudict").kind.value for line in ("a AH0", ";;; a comment", "a")]
    ['entry', 'comment', 'broken']

    In a format with words, a line of nothing but white space is a COMMENT too. A BROKEN line has no
    field of that number, or lacks its word or its pronunciation.
    """

    ENTRY = "entry"
    COMMENT = "comment"
    BROKEN = "broken"


@dataclass(frozen=True)
class LexiconEntry(Generic[AnyStr]):
    """A line of a lexicon, read: str of a str, bytes of bytes.

    >>> lexicon_entry("a(2) AH0 # weak", "cmudict")
    LexiconEntry(kind=<EntryKind.ENTRY: 'entry'>, word='a', text='AH0', start=5, problem='')

    `word` is empty for the formats "lines" and "tsv", `text` is the pronunciation, and `start` its
    place: ``line[start:start + len(text)] == text``. A line that is not an entry has no text. For a
    BROKEN one `problem` says what it lacks, and `word` is what is in the word's place, if anything.

    >>> entry = lexicon_entry("a", "cmudict")
    >>> entry.word, entry.text, entry.problem
    ('a', '', 'no pronunciation')
    """

    kind: EntryKind
    word: AnyStr
    text: AnyStr
    start: int
    problem: str


_KINDS = tuple(EntryKind)  # by their numbers in the extension module


def _entry(layout: _core.LexiconLayout, line: AnyStr, is_first: bool) -> LexiconEntry[AnyStr]:
    kind, word, text, start, problem = _core.lexicon_entry(layout, line, is_first)
    return LexiconEntry(_KINDS[kind], word, text, start, problem)


def lexicon_entry(
    line: AnyStr,
    format: LexiconFormat,
    *,
    column: Optional[int] = None,
    headword: Optional[Headword] = None,
) -> LexiconEntry[AnyStr]:
    r"""Finds the word and the pronunciation in a line of a lexicon.

    >>> entry = lexicon_entry("女兒 女儿 [nu:3 er2] /daughter/\n", "cedict")
    >>> entry.word, entry.text
    ('女儿', 'nu:3 er2')
    >>> analyze(entry.text).syllables[0].spelling
    'nv'

    The formats:

    - "lines": the whole line is a pronunciation, also an empty one.
    - "tsv": field `column`, counted from 1 and by default 2, is one, also an empty one. Tabs
      separate fields, and "# " begins a comment.
    - "cedict": TRADITIONAL SIMPLIFIED [pronunciation] /gloss/. `headword` is "simplified", the
      default, or "traditional". "#" begins a comment.
    - "cmudict": WORD or WORD(2), and the pronunciation up to a "#" after white space; the number of
      a variant is not part of the word. ";;;" and "# " begin a comment.
    - "kaldi": WORD and the pronunciation. There are no comments.

    The line may have its end, LF or CRLF; LF elsewhere is a ValueError. An option of another format
    is a ValueError too.
    """
    return _entry(_core.lexicon_layout(format, column, headword), line, False)


def lexicon_entries(
    lines: Iterable[AnyStr],
    format: LexiconFormat,
    *,
    column: Optional[int] = None,
    headword: Optional[Headword] = None,
) -> Iterator[LexiconEntry[AnyStr]]:
    r"""Reads a lexicon line by line: an open file, or any iterable of lines.

    >>> lines = ["# word\tpinyin\n", "hello\tni3hao3\n", "world\n"]
    >>> for number, entry in enumerate(lexicon_entries(lines, "tsv"), start=1):
    ...     print(number, entry.kind.value, entry.text or entry.problem or "-")
    1 comment -
    2 entry ni3hao3
    3 broken no column 2

    Each line gives an entry, also a comment. A byte order mark before the first line is left out.
    Lines and options are as `lexicon_entry` takes them; the options are checked at once.
    """
    layout = _core.lexicon_layout(format, column, headword)
    if isinstance(lines, (str, bytes)) or not is_iterable(lines):
        raise TypeError(f"lines must be an iterable of lines, not one {type_name(lines)}")
    return (_entry(layout, line, index == 0) for index, line in enumerate(lines))
