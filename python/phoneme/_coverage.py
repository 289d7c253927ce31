"""What of a phone set a lexicon uses, counted."""

from __future__ import annotations

import os
import re
from collections import Counter
from collections.abc import Iterable, Iterator, Mapping, Sequence
from dataclasses import dataclass, field, replace
from typing import Union

import phoneme
from phoneme._core import type_name
from phoneme._errors import LanguageName, Text, is_iterable, named

Entries = Iterable[Union[Text, tuple[Text, Text]]]
Lexicon = Union[str, os.PathLike[str], Mapping[Text, Text], Entries]


@dataclass(frozen=True)
class Coverage:
    """What of a phone set a lexicon uses, counted over its running syllables."""

    language: phoneme.Language
    name: str = "lexicon"
    entries: int = 0
    blank_entries: int = 0  #: that hold no pronunciation
    flawed_entries: int = 0  #: with at least one problem
    syllables: Counter[int] = field(default_factory=Counter)  #: by row of the syllable table
    tones: Counter[str] = field(default_factory=Counter)  #: by digit, "" where none is written
    phones: Counter[int] = field(default_factory=Counter)  #: by id
    problems: Counter[str] = field(default_factory=Counter)  #: by kind
    examples: dict[str, str] = field(default_factory=dict)  #: the first piece of each kind


def coverage(
    lexicon: Lexicon | Coverage, language: LanguageName = "mandarin", *, column: int = 1
) -> Coverage:
    """Counts what a lexicon uses of a phone set; `chart` and `report` draw it.

    >>> counts = coverage(["ni3 hao3", "ni3 xyz"])
    >>> counts.tones["3"], counts.problems["unknown syllable"]
    (3, 1)

    `lexicon` is pronunciations, or (word, pronunciation) pairs or a mapping, or the path of a file
    with one entry a line and its fields separated by tabs, where `column`, counted from 0, is the
    pronunciation; blank lines and lines that begin with "# " are left out. A pronunciation is what
    `analyze` reads; for English also a pronunciation string ("hh ax 0, l ow 1"). A coverage of the
    language is returned as it is, so that a lexicon is counted once for several pictures.
    """
    served = served_language(language)
    if isinstance(lexicon, Coverage):
        if lexicon.language is not served:
            given, asked = named(lexicon.language), named(served)
            raise ValueError(f"a coverage of {given}, where {asked} is asked")
        return lexicon
    _check_types(lexicon, column)
    counts = _Counts(served)
    for pronunciation in _pronunciations(lexicon, column):
        counts.add(pronunciation)
    return counts.named(_lexicon_name(lexicon))


class _Counts:
    """Adds up the entries of a lexicon."""

    def __init__(self, language: phoneme.Language) -> None:
        self._language = language
        self._seen = Coverage(language)
        self._entries = 0
        self._blank_entries = 0
        self._flawed_entries = 0

    def add(self, pronunciation: str) -> None:
        self._entries += 1
        if not pronunciation.strip():
            self._blank_entries += 1
            return
        is_english = self._language is phoneme.Language.AMERICAN_ENGLISH
        if is_english and _CLOSING_DIGIT.search(pronunciation):
            self._add_pronunciation_string(pronunciation)
            return
        analysis = phoneme.analyze(pronunciation, self._language)
        for read in analysis.syllables:
            if read.row is not None:
                self._seen.syllables[read.row] += 1
            self._add_syllable(read.syllable, read.digit)
        self._add_problems(pronunciation, analysis.problems)

    def _add_pronunciation_string(self, text: str) -> None:
        """What does not parse is read as far as it goes, by way of ARPAbet."""
        arpabet = phoneme.pronunciation_to_arpabet(text)
        syllables = phoneme.pr2ph(text, self._language, errors="none")
        if syllables is None:
            for read in phoneme.analyze(arpabet.text, self._language).syllables:
                self._add_syllable(read.syllable, read.digit)
        for syllable in syllables or []:
            self._add_syllable(syllable, str(syllable.raw_tone))
        self._add_problems(text, arpabet.problems)

    def _add_syllable(self, syllable: phoneme.Syllable, digit: str) -> None:
        self._seen.tones[digit] += 1
        self._seen.phones.update(phone.id for phone in syllable.phones)

    def _add_problems(self, text: str, problems: Sequence[phoneme.Problem]) -> None:
        self._flawed_entries += bool(problems)
        for problem in problems:
            kind = problem.kind.value
            self._seen.problems[kind] += 1
            self._seen.examples.setdefault(kind, text[slice(*problem.range)])

    def named(self, name: str) -> Coverage:
        return replace(
            self._seen,
            name=name,
            entries=self._entries,
            blank_entries=self._blank_entries,
            flawed_entries=self._flawed_entries,
        )


# The digit that closes a syllable of a pronunciation string is a piece of its own.
_CLOSING_DIGIT = re.compile(r"\s\d\s*(,|$)")


def served_language(language: LanguageName) -> phoneme.Language:
    """The language whose tables serve a name or id, which may be unregistered."""
    return phoneme.Language(phoneme.phones(language)[0].language)


def _lexicon_name(lexicon: Lexicon) -> str:
    return os.path.basename(lexicon) if isinstance(lexicon, (str, os.PathLike)) else "lexicon"


def _check_types(lexicon: Lexicon, column: int) -> None:
    if isinstance(column, bool) or not hasattr(column, "__index__"):
        raise TypeError(f"column must be an int, not {type_name(column)}")
    # Bytes would be numbers, and a table with columns the names of these.
    is_other = isinstance(lexicon, (bytes, bytearray)) or getattr(lexicon, "ndim", 1) != 1
    if is_other or not (is_iterable(lexicon) or isinstance(lexicon, os.PathLike)):
        takes = "a path as str or os.PathLike, a mapping or an iterable of pronunciations or pairs"
        raise TypeError(f"a lexicon is {takes}, not {type_name(lexicon)}")


def _pronunciations(lexicon: Lexicon, column: int) -> Iterator[str]:
    if isinstance(lexicon, (str, os.PathLike)):
        yield from _column_of_file(lexicon, column)
        return
    entries = lexicon.items() if isinstance(lexicon, Mapping) else lexicon
    for index, entry in enumerate(entries):
        text = entry[1] if isinstance(entry, tuple) and len(entry) == 2 else entry
        if isinstance(text, bytes):
            text = text.decode("utf-8", "surrogateescape")
        if not isinstance(text, str):
            raise TypeError(f"entry {index} of the lexicon is {type_name(entry)}, not a text")
        yield text


def _column_of_file(path: str | os.PathLike[str], column: int) -> Iterator[str]:
    with open(path, encoding="utf-8-sig", errors="surrogateescape", newline="\n") as lines:
        for number, line in enumerate(lines, 1):
            line = line.rstrip("\r\n")
            if not line or line.startswith("# "):
                continue
            fields = line.split("\t")
            if not 0 <= column < len(fields):
                count = "1 field" if len(fields) == 1 else f"{len(fields)} fields"
                reason = f"no column {column} in {count}; tabs separate them, the first is 0"
                raise ValueError(f"{_escaped(path)}:{number}: {reason}")
            yield fields[column]


def _escaped(path: str | os.PathLike[str]) -> str:
    """The name of a file as a terminal can show it, and whole, so that an editor finds it."""
    return repr(os.fsdecode(path))[1:-1]


def usable_phones(language: phoneme.Language) -> list[phoneme.Phone]:
    """The phones that a pronunciation can hold: those of syllables where there are such."""
    rows = phoneme.syllables(language)
    if rows:
        used = {phone for row in rows for phone in (row.initial, row.final) if phone is not None}
        return sorted(used, key=lambda phone: phone.id)
    silence = phoneme.PhoneType.SILENCE
    return [phone for phone in phoneme.phones(language) if phone.type != silence]


def name_and_id(phone: phoneme.Phone) -> str:
    return f"{phone.name} ({phone.id})"
