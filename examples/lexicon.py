"""Makes a pronunciation lexicon for speech tools from a word list with romanisation.

    lexicon.py [-l LANGUAGE] [--aliases FILE] [WORDS] OUTPUT

WORDS has tab-separated fields: the word, its romanisation and any others. Without it the
shipped Cantonese word list is read. OUTPUT, a folder, gets lexicon.txt, a word and its phones a
line; rejects.tsv, what could not be read and why; and syllables.tsv, how often each occurs.
"""

from __future__ import annotations

import argparse
import sys
from collections import Counter
from collections.abc import Iterable, Iterator
from dataclasses import dataclass, field
from pathlib import Path
from typing import NamedTuple

import phoneme

DATA = Path(__file__).resolve().parent.parent / "data"
NO_TONE = 7  # of a Cantonese syllable that was read without one
REJECTS_HEADING = "# line\tword\tromanisation\tproblem\tpiece\tsuggestion"


class Entry(NamedTuple):
    line: int
    word: str
    romanisation: str


@dataclass
class Result:
    """What became of the entries of a word list."""

    entries: int = 0
    rejected: int = 0
    lexicon: set[str] = field(default_factory=set)
    rejects: list[str] = field(default_factory=list)
    problems: Counter[str] = field(default_factory=Counter)
    pieces: dict[str, Counter[str]] = field(default_factory=dict)  #: of the text, by problem
    rules: Counter[str] = field(default_factory=Counter)
    syllables: Counter[str] = field(default_factory=Counter)
    phones: set[phoneme.Phone] = field(default_factory=set)


def read_entries(path: Path) -> Iterator[Entry]:
    """Lines end at LF alone. Bytes that are not UTF-8 are kept, for the rejects and for words."""
    with path.open(encoding="utf-8-sig", errors="surrogateescape", newline="\n") as file:
        for number, line in enumerate(file, start=1):
            word, romanisation = (phoneme.lexicon_entry(line, "tsv", column=i) for i in (1, 2))
            if line.strip() and word.kind is phoneme.EntryKind.ENTRY:
                yield Entry(number, word.text, romanisation.text)


def read_aliases(path: Path) -> phoneme.Aliases:
    try:
        return phoneme.parse_aliases(path.read_bytes())
    except ValueError as error:
        raise ValueError(f"{path}: {error}") from None


def finals_of(syllable: phoneme.Syllable) -> list[phoneme.Phone]:
    return [phone for phone in syllable.phones if phone.type == phoneme.PhoneType.FINAL]


def toned_phones(syllable: phoneme.Syllable) -> list[str]:
    """The names of a syllable's phones, with the tone on the final, or the last without one."""
    bearer = [*finals_of(syllable), syllable.phones[-1]][0]
    return [f"{phone.name}{syllable.tone if phone == bearer else ''}" for phone in syllable.phones]


def gap_of(read: phoneme.AnalyzedSyllable) -> str:
    """What the phones of a syllable lack in a lexicon, or nothing."""
    syllable = read.syllable
    # Without a final the phones are the letters, as in "hm"; of "hng" there is the h alone.
    spelled = "".join(phone.name for phone in syllable.phones)
    if not finals_of(syllable) and spelled != read.spelling:
        return "missing phone"
    is_toneless = syllable.language == phoneme.Language.CANTONESE and syllable.tone == NO_TONE
    return "no tone" if is_toneless else ""


def problems_of(entry: Entry, analysis: phoneme.Analysis) -> Iterator[tuple[str, str, str]]:
    """The kind of each problem, the piece of the text that it is about, and what may be meant."""
    text = entry.romanisation
    if not entry.word.strip():
        yield "no word", entry.word, ""
    if not analysis.problems and not analysis.syllables:
        yield "not an entry", text, ""
    found = [(problem.range, problem.kind.value, problem.suggestion) for problem in analysis.problems]
    found += [(read.range, gap, "") for read in analysis.syllables if (gap := gap_of(read))]
    for (begin, end), kind, suggestion in sorted(found, key=lambda problem: problem[0].start):
        yield kind, text[begin:end], suggestion


def add_word(entry: Entry, analysis: phoneme.Analysis, result: Result) -> None:
    names = []
    for read in analysis.syllables:
        names += toned_phones(read.syllable)
        result.phones.update(read.syllable.phones)
        result.syllables[f"{read.spelling}{read.syllable.tone}"] += 1
    # The fields of a lexicon are set apart by blanks, so a word has none.
    result.lexicon.add(f"{'_'.join(entry.word.split())} {' '.join(names)}\n")
    result.rules.update(application.rule.value for application in analysis.applied)


def convert(
    entries: Iterable[Entry], language: str, aliases: phoneme.Aliases | None = None
) -> Result:
    result = Result()
    for entry in entries:
        result.entries += 1
        analysis = phoneme.analyze(entry.romanisation, language, aliases=aliases)
        problems = list(problems_of(entry, analysis))
        if not problems:
            add_word(entry, analysis, result)
            continue
        result.rejected += 1
        for kind, piece, suggestion in problems:
            result.rejects.append("\t".join([*map(str, entry), kind, piece, suggestion]) + "\n")
            result.problems[kind] += 1
            result.pieces.setdefault(kind, Counter())[piece] += 1
    return result


def encoded(text: str) -> bytes:
    return text.encode("utf-8", "surrogateescape")


def write(result: Result, output: Path) -> None:
    output.mkdir(parents=True, exist_ok=True)
    counts = (f"{spelling}\t{count}\n" for spelling, count in result.syllables.most_common())
    for name, lines in (
        ("lexicon.txt", sorted(result.lexicon)),
        ("rejects.tsv", [REJECTS_HEADING + "\n", *result.rejects]),
        ("syllables.tsv", counts),
    ):
        (output / name).write_bytes(encoded("".join(lines)))


def listed(counts: Counter[str], limit: int = 5) -> str:
    return ", ".join(f"{name} {count}" for name, count in counts.most_common(limit)) or "none"


def summary(result: Result, language: str) -> Iterator[str]:
    read = result.entries - result.rejected
    yield f"{result.entries} entries: {read} read, {result.rejected} rejected"
    for kind, count in result.problems.most_common():
        yield f"  {kind} {count}: {listed(result.pieces[kind])}"
    yield f"rules applied: {listed(result.rules)}"
    yield f"lexicon: {len(result.lexicon)} words with their phones"
    total, distinct = sum(result.syllables.values()), len(result.syllables)
    yield f"syllables: {total}, {distinct} different; {listed(result.syllables)}"
    rows = phoneme.syllables(language)
    phones = {phone for row in rows for phone in (row.initial, row.final) if phone is not None}
    unseen = " ".join(phone.name for phone in sorted(phones - result.phones))
    seen = len(phones & result.phones)
    yield f"phones: {seen} of {len(phones)}{', never ' + unseen if unseen else ''}"


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("words", type=Path, nargs="?", default=DATA / "cantonese.tsv")
    parser.add_argument("output", type=Path)
    parser.add_argument("-l", "--language", choices=["mandarin", "cantonese"], default="cantonese")
    parser.add_argument("--aliases", type=Path, help="spellings of Jyutping to be replaced")
    arguments = parser.parse_args()
    if arguments.aliases and arguments.language != "cantonese":
        parser.exit(2, f"{parser.prog}: --aliases does not apply to pinyin input\n")

    try:
        aliases = read_aliases(arguments.aliases) if arguments.aliases else None
        result = convert(read_entries(arguments.words), arguments.language, aliases)
        write(result, arguments.output)
    except OSError as error:
        parser.exit(2, f"{parser.prog}: {error.filename}: {error.strerror}\n")
    except ValueError as error:
        parser.exit(2, f"{parser.prog}: {error}\n")
    lines = "".join(line + "\n" for line in summary(result, arguments.language))
    sys.stdout.buffer.write(encoded(lines))


if __name__ == "__main__":
    main()
