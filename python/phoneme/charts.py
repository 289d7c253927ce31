"""Pictures of a phone set, and of what a lexicon covers of it.

What is drawn comes from the library's tables and features; only the order of the rows and the words
for the features are set here. Needs matplotlib, which is imported when something is drawn.
"""

from __future__ import annotations

import os
import textwrap
from typing import TYPE_CHECKING, Any, Union

import phoneme
from phoneme._articulation import articulation_blocks
from phoneme._coverage import (
    Coverage,
    Lexicon,
    coverage,
    name_and_id,
    served_language,
    usable_phones,
)
from phoneme._errors import LanguageName
from phoneme._grid import grid_blocks
from phoneme._page import (
    FAINT,
    INK,
    MARGIN,
    SHADES,
    UNSEEN_EDGE,
    Block,
    Page,
    check_path,
    counted,
    draw_page,
    fitted,
    full_number,
    heading_block,
    text_width,
)

if TYPE_CHECKING:
    from matplotlib.figure import Figure
else:
    Figure = Any

__all__ = ["Coverage", "chart", "coverage", "report"]


def chart(
    language: LanguageName,
    *,
    lexicon: Union[Lexicon, Coverage, None] = None,
    path: Union[str, os.PathLike[str], None] = None,
    column: int = 1,
) -> Figure:
    """Draws a phone set: the grid of initials and finals with the syllables that exist, or the
    vowels and consonants of a language without syllables.

    >>> figure = chart("cantonese")
    >>> figure.axes[0].texts[0].get_text()
    'Cantonese: initials and finals'

    With a `lexicon`, as `coverage` takes it, the shading says how often each is in it. The figure
    is saved when `path` is given, as SVG or PNG by its ending; a file that it replaces keeps its
    mode. Like all of matplotlib, not to be called from two threads at once.
    """
    check_path(path)
    served = served_language(language)
    counts = None if lexicon is None else coverage(lexicon, served, column=column)
    title = f"{_title(served)}: {_what(served)}"
    if counts is not None:
        title += f" in {counts.name}"
    facts = _facts_of_tables(served) if counts is None else _facts_of_counts(counts)
    return draw_page([heading_block(title, facts), *_picture(served, counts)], title, path)


def report(
    lexicon: Union[Lexicon, Coverage],
    language: LanguageName = "mandarin",
    *,
    path: Union[str, os.PathLike[str], None] = None,
    column: int = 1,
) -> Figure:
    """Draws what a lexicon covers of a phone set: how often each syllable, phone and tone is in it,
    what is never seen, and its problems by kind.

    >>> figure = report(["ni3 hao3", "ma1"])
    >>> figure.axes[0].texts[0].get_text()
    'Mandarin: coverage of lexicon'

    `lexicon` and `column` are as `coverage` takes them, `path` as `chart` does.
    """
    check_path(path)
    counts = coverage(lexicon, language, column=column)
    title = f"{_title(counts.language)}: coverage of {counts.name}"
    blocks = [heading_block(title, _facts_of_counts(counts)), _findings(counts)]
    return draw_page(blocks + _picture(counts.language, counts), title, path)


def _title(language: phoneme.Language) -> str:
    return language.name.replace("_", " ").title()


def _what(language: phoneme.Language) -> str:
    return "initials and finals" if phoneme.syllables(language) else "vowels and consonants"


def _facts_of_tables(language: phoneme.Language) -> str:
    phones, rows = phoneme.phones(language), len(phoneme.syllables(language))
    silences = [name_and_id(phone) for phone in phones if phone.type == phoneme.PhoneType.SILENCE]
    facts = [f"{len(phones)} phones with {', '.join(silences)}"]
    if rows:
        facts.append(f"{rows} syllables")
        facts.append(f"{phoneme.tone_adaptation(0, language)} tones")
    return ", ".join(facts) + ". Small numbers are phone ids."


def _facts_of_counts(counts: Coverage) -> str:
    rows = phoneme.syllables(counts.language)
    usable = usable_phones(counts.language)
    seen = sum(1 for phone in usable if counts.phones[phone.id])
    facts = counted(counts.entries, "entry", "entries") + ", "
    facts += counted(sum(counts.tones.values()), "syllable", "syllables") + ". Seen: "
    if rows:
        facts += f"{len(counts.syllables)} of {len(rows)} syllables, "
    facts += f"{seen} of {len(usable)} phones. "
    facts += f"Entries with problems: {full_number(counts.flawed_entries)}"
    blank = f", blank: {full_number(counts.blank_entries)}" if counts.blank_entries else ""
    return facts + blank + "."


def _picture(language: phoneme.Language, counts: Coverage | None) -> list[Block]:
    if phoneme.syllables(language):
        return grid_blocks(language, counts)
    return articulation_blocks(language, counts)


# What a report adds

_LIST_LINES = 7
_LIST_WIDTH = 50  # characters
_NO_BREAK = "\u00a0"  # a blank that no line ends at


def _findings(counts: Coverage) -> Block:
    """Three columns: tones, what is never seen, problems."""
    problems = [(kind, count) for kind, count in counts.problems.most_common()]
    tones = _tone_counts(counts)
    words = _never_seen(counts)
    lines = max(len(tones), 2 * len(problems), len(words))
    digits = "Tones" if phoneme.syllables(counts.language) else "Stress"

    def draw(page: Page, top: float) -> None:
        for x, heading in ((MARGIN, digits), (330, "Never seen"), (700, "Problems")):
            page.text(x, top + 12, heading, 13, ha="left", weight="bold")
        _draw_bars(page, (MARGIN, top + 36, 260), tones, {})
        for index, (text, color) in enumerate(words):
            page.text(330, top + 36 + 17 * index, text, 10.5, ha="left", color=color)
        _draw_bars(page, (700, top + 36, 284), problems, counts.examples)

    return Block(36 + 17 * lines + 24, draw)


def _tone_counts(counts: Coverage) -> list[tuple[str, int]]:
    """All tones of the language, or the three stresses, and what else was seen."""
    digits = {"0", "1", "2"}
    if phoneme.syllables(counts.language):
        top = phoneme.tone_adaptation(0, counts.language)
        digits = {str(tone) for tone in range(1, top + 1)}
    names = sorted(digits | set(counts.tones), key=lambda digit: (digit == "", digit))
    return [(digit or "none", counts.tones[digit]) for digit in names]


def _never_seen(counts: Coverage) -> list[tuple[str, str]]:
    """Lines of text with their colours: the phones and the syllables that never occur."""
    usable = usable_phones(counts.language)
    phones = [name_and_id(phone) for phone in usable if not counts.phones[phone.id]]
    rows = phoneme.syllables(counts.language)
    syllables = [row.pinyin for row in rows if not counts.syllables[row.id]]
    lines = _listing("phones", len(usable), phones)
    return lines + _listing("syllables", len(rows), syllables) if rows else lines


def _listing(what: str, total: int, names: list[str]) -> list[tuple[str, str]]:
    lines = [(f"{len(names) or 'none'} of {total} {what}", INK)]
    text = " ".join(name.replace(" ", _NO_BREAK) for name in names)
    wrapped = textwrap.wrap(text, _LIST_WIDTH)
    if len(wrapped) > _LIST_LINES:
        left = sum(len(line.split(" ")) for line in wrapped[_LIST_LINES - 1 :])
        wrapped[_LIST_LINES - 1 :] = [f"and {left} more"]
    return lines + [(line.replace(_NO_BREAK, " "), UNSEEN_EDGE) for line in wrapped]


def _draw_bars(
    page: Page,
    place: tuple[float, float, float],
    items: list[tuple[str, int]],
    examples: dict[str, str],
) -> None:
    """A bar a line with its name and count; under it an example where there is one."""
    left, top, width = place
    name_width = max(text_width(name, 10.5) for name, _ in [("none", 0), *items]) + 8
    scale = (width - name_width - 80) / max([1, *(count for _, count in items)])
    if not items:
        page.text(left, top, "none", 10.5, ha="left")
    y = top
    for name, count in items:
        page.text(left, y, name, 10.5, ha="left")
        page.box(left + name_width, y - 6, count * scale, 12, facecolor=SHADES[4])
        page.text(left + name_width + count * scale + 6, y, full_number(count), 10.5, ha="left")
        y += 17
        if name in examples:
            example = fitted(f"first: {examples[name]}", width - 10, 9.5)
            page.text(left + 10, y, example, 9.5, ha="left", color=FAINT)
            y += 17
