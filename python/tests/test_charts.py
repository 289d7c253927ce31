"""Charts and reports: every phone and syllable in its place, texts apart, counts that are right,
and the samples in docs/ as the code draws them today."""

from __future__ import annotations

import dataclasses
import itertools
import os
import pathlib
import re
import subprocess
import sys
from collections import Counter
from typing import Any, Callable, Iterable
from xml.etree import ElementTree

import pytest

import phoneme
from phoneme import Language, PhoneType
from phoneme._page import (
    _DRAWN,
    FAINT,
    INK,
    PAPER,
    PLAIN_LOOK,
    SHADES,
    UNSEEN_EDGE,
    Look,
    Shading,
    _class_bounds,
    counted,
    drawable,
    fitted,
    full_number,
    short_number,
    text_width,
)
from phoneme.charts import Coverage, chart, coverage, report

matplotlib = pytest.importorskip("matplotlib")
FigureCanvasAgg = pytest.importorskip("matplotlib.backends.backend_agg").FigureCanvasAgg

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = ["cantonese", "cantonese_report", "english", "english_report", "mandarin"]
SAMPLES += ["mandarin_report"]

on_grids = pytest.mark.parametrize("language", [Language.MANDARIN, Language.CANTONESE])


def texts_of(figure: Any) -> list[Any]:
    return [text for axes in figure.axes for text in axes.texts]


def strings_of(figure: Any) -> list[str]:
    return [text.get_text().replace(r"\$", "$") for text in texts_of(figure)]


def boxes_of(figure: Any) -> list[Any]:
    return [patch for axes in figure.axes for patch in axes.patches]


def fill_at(figure: Any, text: Any) -> str:
    """The colour of the last box drawn around a text."""
    boxes = [box.get_extents() for box in boxes_of(figure)]
    point = figure.axes[0].transData.transform(text.get_position())
    around = [box for box, extent in zip(boxes_of(figure), boxes) if extent.contains(*point)]
    return str(matplotlib.colors.to_hex(around[-1].get_facecolor()))


def find_text(figure: Any, string: str) -> Any:
    found = [text for text in texts_of(figure) if text.get_text() == string]
    assert len(found) == 1, string
    return found[0]


def row_of(text: str) -> int:
    return phoneme.py2code(text)[0] // 10


def is_bold(text: Any) -> bool:
    return bool(text.get_weight() == "bold")


def positions(texts: Iterable[Any]) -> dict[str, list[tuple[float, float]]]:
    found: dict[str, list[tuple[float, float]]] = {}
    for text in texts:
        found.setdefault(text.get_text(), []).append(text.get_position())
    return found


# What is drawn


@on_grids
def test_every_syllable_stands_under_its_final_and_beside_its_initial(language: Language) -> None:
    figure = chart(language)
    cells = positions(t for t in texts_of(figure) if t.get_color() == INK and not is_bold(t))
    headings = positions(t for t in texts_of(figure) if t.get_color() == FAINT)

    checked = 0
    for row in phoneme.syllables(language):
        ((x, y),) = cells[row.pinyin]
        if row.final is not None:
            assert any(abs(x - hx) < 12 and hy < y for hx, hy in headings[str(row.final.id)]), row
        if row.initial is not None:
            assert any(y == hy and hx < x for hx, hy in headings[str(row.initial.id)]), row
        checked += 1
    assert checked == {Language.MANDARIN: 417, Language.CANTONESE: 619}[language]


@on_grids
def test_every_final_heads_a_column_and_every_initial_a_row(language: Language) -> None:
    figure = chart(language)
    bold = Counter(text.get_text() for text in texts_of(figure) if is_bold(text))
    finals = Counter(p.name for p in phoneme.phones(language) if p.type == PhoneType.FINAL)
    initials = {p.name for p in phoneme.phones(language) if p.type == PhoneType.INITIAL}
    assert sum(finals.values()) == {Language.MANDARIN: 39, Language.CANTONESE: 75}[language]
    for name, count in finals.items():
        assert bold[name] - (name in initials) >= count, name
    assert initials <= set(bold)


def first_column(figure: Any) -> list[str]:
    """The initials of the first panel from top to bottom."""
    rows = [t for t in texts_of(figure) if is_bold(t) and t.get_ha() == "right"]
    rows.sort(key=lambda text: float(text.get_position()[1]))
    names = [text.get_text() for text in rows]
    return names[: len(set(names))]


def test_initials_are_in_the_order_of_the_field() -> None:
    mandarin = "b p m f d t n l g k h j q x zh ch sh r z c s".split()
    assert first_column(chart("mandarin")) == mandarin
    cantonese = "b p m f d t n l g k ng h gw kw w z c s j".split()
    assert first_column(chart("cantonese")) == cantonese


def finals_in_order(figure: Any) -> list[str]:
    columns = [t for t in texts_of(figure) if is_bold(t) and t.get_ha() == "center"]
    columns.sort(key=lambda text: tuple(text.get_position()[::-1]))
    return [text.get_text() for text in columns]


def test_finals_are_grouped_by_medial_and_by_vowel() -> None:
    assert finals_in_order(chart("mandarin")) == (
        "m a o e ii iii ai ei ao ou er an en ang eng ong "
        "i ia ie iao iou iou ian in iang ing iong "
        "u ua uo uai uei uan uen uang ueng v ve van vn"
    ).split()
    cantonese = finals_in_order(chart("cantonese"))
    assert cantonese[-19:] == [p.name for p in phoneme.phones("cantonese")[76:]]
    assert cantonese.index("ui") < cantonese.index("uaa")
    assert "u, written w" in strings_of(chart("cantonese"))


def test_every_english_phone_is_drawn_once_with_its_id() -> None:
    figure = chart("english")
    ids = {text.get_position(): text.get_text() for text in texts_of(figure)}
    drawn = 0
    for phone in phoneme.phones("english"):
        if phone.type == PhoneType.SILENCE:
            continue
        is_like_r = phone.feature[0] == "+" and phone.feature[5] == "r"
        x, y = find_text(figure, phone.name + ("\u02b3" if is_like_r else "")).get_position()
        assert ids[(x, y + 13)] == str(phone.id)
        drawn += 1
    assert drawn == 40


def test_english_phones_stand_by_their_features() -> None:
    figure = chart("english")
    place = {p.name: p for p in phoneme.phones("english")}
    at: dict[str, tuple[float, float]] = {}
    for text in texts_of(figure):
        at.setdefault(text.get_text().rstrip("\u02b3"), text.get_position())
    compared = 0
    for a, b in itertools.permutations((p for p in place.values() if p.id), 2):
        are_vowels = a.feature[0] == b.feature[0] == "+"
        same_kind = are_vowels and (a.feature[1] == "d") == (b.feature[1] == "d")
        if same_kind and a.feature[2] < b.feature[2]:  # the higher one is further up
            assert at[a.name][1] < at[b.name][1], (a, b)
            compared += 1
        if same_kind and a.feature[2] == b.feature[2] and a.feature[3] < b.feature[3]:
            assert at[a.name][0] < at[b.name][0], (a, b)  # the fronter one further left
            compared += 1
        both = a.feature[0] == b.feature[0] == "-"
        if both and a.feature[5:7] == b.feature[5:7] and a.feature[7] < b.feature[7]:
            assert at[a.name][1] == at[b.name][1], (a, b)  # "+", voiced, is before "-" in ASCII
            assert at[a.name][0] > at[b.name][0], (a, b)
            compared += 1
    assert compared > 60


# Layout


def messy_lexicon() -> list[str]:
    return ["ni3\t好 $x$ $y$", "\ud800", "q" * 300, "ma9 ma99", "xyz", "\n", "ni3 hao3", "nihaox"]


def big_counts() -> Coverage:
    counts = coverage([], "cantonese")
    for index, row in enumerate(phoneme.syllables("cantonese")):
        counts.syllables[row.id] = 30_000_000 >> (index % 26)
    counts.tones.update({str(tone): 123_456_789 for tone in range(1, 8)})
    for kind in phoneme.ProblemKind:
        counts.problems[kind.value] = 12_345_678
        counts.examples[kind.value] = "W" * 40
    return counts


def huge_counts(language: str) -> Coverage:
    counts = coverage([], language)
    for table in (counts.syllables, counts.phones):
        table.update({index: 10**15 - index % 9 for index in range(700)})
    counts.tones.update({str(tone): 10**15 for tone in range(1, 8)})
    for kind in phoneme.ProblemKind:
        counts.problems[kind.value] = 10**15
    entries = {"entries": 10**15, "flawed_entries": 10**15, "blank_entries": 10**15}
    return dataclasses.replace(counts, **entries)


def named(name: str, language: str = "mandarin") -> Coverage:
    return dataclasses.replace(coverage(["x"], language), name=name)


def big_english_counts() -> Coverage:
    counts = coverage([], "english")
    counts.phones.update({p.id: 999_999_999 for p in phoneme.phones("english")})
    return counts


PICTURES: dict[str, Callable[[], Any]] = {
    "mandarin": lambda: chart("mandarin"),
    "cantonese": lambda: chart("cantonese"),
    "english": lambda: chart("english"),
    "mandarin report": lambda: report(ROOT / "data/mandarin.tsv"),
    "cantonese report": lambda: report(ROOT / "data/cantonese.tsv", "cantonese"),
    "english report": lambda: report(ROOT / "data/english.tsv", "english", column=2),
    "shaded chart": lambda: chart("mandarin", lexicon=["ni3 hao3"] * 7),
    "nothing": lambda: report([], "cantonese"),
    "nothing English": lambda: report([], "english"),
    "messy": lambda: report(messy_lexicon()),
    "large counts": lambda: report(big_counts(), "cantonese"),
    "large English counts": lambda: report(big_english_counts(), "english"),
    "huge Mandarin counts": lambda: report(huge_counts("mandarin")),
    "huge Cantonese counts": lambda: report(huge_counts("cantonese"), "cantonese"),
    "huge English counts": lambda: report(huge_counts("english"), "english"),
    "foreign text": lambda: report(["\u4f60\u597d\u4e16\u754c" * 3]),
    "name in wide letters": lambda: chart("english", lexicon=named("W" * 100, "english")),
    "name in Chinese": lambda: report(named("\u4f60\u597d\u4e16\u754c" * 20)),
    "name in Cyrillic": lambda: report(named("\u0429\u0416" * 60)),
    "name beyond": lambda: chart("cantonese", lexicon=named("\U0001f600\ud800" * 30, "cantonese")),
}


@pytest.mark.parametrize("picture", PICTURES)
def test_no_text_covers_another_or_leaves_the_page(picture: str) -> None:
    figure = PICTURES[picture]()
    page = figure.bbox
    renderer = FigureCanvasAgg(figure).get_renderer()
    texts = texts_of(figure)
    extents = [(text.get_window_extent(renderer), text.get_text()) for text in texts]
    assert len(extents) > 60
    for extent, text in extents:
        assert page.x0 <= extent.x0 and extent.x1 <= page.x1, text
        assert page.y0 <= extent.y0 and extent.y1 <= page.y1, text
    extents.sort(key=lambda item: float(item[0].x0))
    for index, (extent, text) in enumerate(extents):
        for other, other_text in extents[index + 1 :]:
            if other.x0 >= extent.x1:
                break
            # Line boxes may touch; what counts is that the letters do not.
            overlap = min(extent.y1, other.y1) - max(extent.y0, other.y0)
            assert overlap < 3, (text, other_text)


def cells_of(figure: Any) -> list[tuple[Any, list[Any]]]:
    """The extent of each box, and the texts in it from top to bottom."""
    texts = sorted(texts_of(figure), key=lambda text: float(text.get_position()[1]))
    points = figure.axes[0].transData.transform([text.get_position() for text in texts])
    extents = [box.get_extents() for box in boxes_of(figure)]
    inside = [((e.min < points) & (points < e.max)).all(axis=1) for e in extents]
    return [(extent, list(itertools.compress(texts, which))) for extent, which in zip(extents, inside)]


def widest_counts(language: str) -> Coverage:
    counts = coverage([], language)
    counts.syllables.update({row.id: 888 * 10**15 for row in phoneme.syllables(language)})
    return counts


@pytest.mark.parametrize(
    "language, name, sizes",
    [
        # In pixels: of the syllable, and of its count below it.
        ("mandarin", "zhuang", [9.5, 8]),
        ("mandarin", "yo", [8.5, 6.5]),  # half a cell each, which is half as wide
        ("mandarin", "you", [8.5, 6.5]),
        ("cantonese", "gwaang", [9.5, 8]),
    ],
)
def test_sizes_of_a_syllable_and_its_count(language: str, name: str, sizes: list[float]) -> None:
    figure = chart(language, lexicon=widest_counts(language))
    cells = [texts for _, texts in cells_of(figure)]
    cell = next(texts for texts in cells if texts and texts[0].get_text() == name)
    assert [text.get_text() for text in cell] == [name, "888P"]
    assert [text.get_fontsize() * figure.dpi / 72 for text in cell] == pytest.approx(sizes)


# Of a report on three flawed entries: what is below the grid.
@pytest.mark.parametrize(
    ("text", "pixels"),
    [
        ("Tones", 13),
        ("Never seen", 13),
        ("Problems", 13),
        ("unknown syllable", 10.5),
        ("1,234", 10.5),  # of the problem
        ("first: W", 9.5),
        ("417 of 417 syllables", 10.5),
    ],
)
def test_sizes_of_what_is_below_the_grid(text: str, pixels: float) -> None:
    counts = coverage([], "mandarin")
    counts.tones[""] = 12
    counts.problems["unknown syllable"] = 1234
    counts.examples["unknown syllable"] = "W"
    figure = report(counts)
    sizes = {t.get_fontsize() * figure.dpi / 72 for t in texts_of(figure) if t.get_text() == text}
    assert sorted(sizes) == pytest.approx([pixels])


@on_grids
def test_no_text_leaves_its_cell(language: Language) -> None:
    gap = 1.5  # between two boxes, in pixels
    for figure in (chart(language), chart(language, lexicon=widest_counts(language.name.lower()))):
        renderer = FigureCanvasAgg(figure).get_renderer()
        checked = 0
        for cell, texts in cells_of(figure):
            for text in texts:
                extent = text.get_window_extent(renderer)
                assert cell.x0 - gap / 2 <= extent.x0, text.get_text()
                assert extent.x1 <= cell.x1 + gap / 2, text.get_text()
                checked += 1
        assert checked >= len(phoneme.syllables(language))


def luminance(color: str) -> float:
    parts = matplotlib.colors.to_rgb(color)
    linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in parts]
    return float(0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2])


def contrast(a: str, b: str) -> float:
    low, high = sorted((luminance(a), luminance(b)))
    return (high + 0.05) / (low + 0.05)


def test_text_is_readable_on_every_fill() -> None:
    looks = [PLAIN_LOOK, Look(PAPER), Look(PAPER, FAINT)]
    looks += [look for look, _ in Shading([300]).legend()]
    assert len({look.fill for look in looks}) == 2 + 1 + len(SHADES)
    for look in looks:
        assert contrast(look.fill, look.ink) >= 4.5, look
    assert contrast(PAPER, INK) >= 7


def test_shades_fall_in_lightness() -> None:
    # Without hue, in print or to any eye, the order is still there.
    lightness = [luminance(shade) for shade in SHADES]
    assert all(a > 1.2 * b for a, b in zip(lightness, lightness[1:]))


def test_texts_are_drawn_in_the_font_that_comes_with_matplotlib() -> None:
    drawn = [chr(code) for codes in _DRAWN for code in codes if chr(code).isprintable()]
    assert len(drawn) > 1000
    for weight in ("normal", "bold"):
        path = matplotlib.font_manager.findfont(f"DejaVu Sans:weight={weight}")
        glyphs = matplotlib.ft2font.FT2Font(path).get_charmap()
        assert [c for c in drawn if ord(c) not in glyphs] == []
    texts = {"n\u01d0 h\u01ceo": "n\u01d0 h\u01ceo", "\u0429": "\u0429", "\u4f60": r"\u4f60"}
    texts.update({"\t\n": r"\t\n", "\ud800": r"\ud800", "\U0001f600": r"\U0001f600"})
    assert {text: drawable(text) for text in texts} == texts


def test_a_text_is_cut_where_the_room_ends() -> None:
    for text in ("W" * 100, "i" * 1000, "\u4f60" * 50, "a\u4f60" * 50):
        short = fitted(text, 200, 10, "bold")
        assert short.endswith("\u2026") and 170 < text_width(short, 10, "bold") <= 200
        whole = re.sub(r"\\u[0-9a-f]{4}", "", short)
        assert "\\" not in whole, short  # no half of an escape
    assert fitted("short", 200, 10) == "short"
    assert fitted("\u4f60", 200, 10) == r"\u4f60"


# Shading


def test_numbers() -> None:
    short = {0: "0", 999: "999", 1000: "1.0k", 9999: "9.9k", 34_567: "34k", 999_999: "999k"}
    short.update({10**6: "1.0M", 10**9: "1.0G", 10**10: "10G", 10**12: "1.0T", 10**15: "1.0P"})
    assert {number: short_number(number) for number in short} == short
    full = {0: "0", 1234: "1,234", 999_999_999: "999,999,999", 10**9: "1.0G", 10**15: "1.0P"}
    assert {number: full_number(number) for number in full} == full
    assert counted(1, "entry", "entries") == "1 entry"
    assert [counted(n, "entry", "entries") for n in (0, 2)] == ["0 entries", "2 entries"]


def test_class_bounds() -> None:
    cases = [
        (1, [1]),
        (2, [1]),
        (3, [1, 3]),
        (299, [1, 3, 10, 30, 100]),
        (300, [1, 3, 10, 30, 100, 300]),
        (1000, [1, 10, 100, 1000]),
        (10**6, [1, 30, 1000, 30_000, 10**6]),
    ]
    for largest, bounds in cases:
        assert _class_bounds(largest, 6) == bounds, largest


def test_a_cell_has_the_colour_of_its_class_in_the_legend() -> None:
    lexicon = ["ba1"] + ["pa1"] * 2 + ["ma1"] * 3 + ["fa1"] * 12
    figure = chart("mandarin", lexicon=lexicon)
    shading = Shading([1, 2, 3, 12])
    for syllable, count in {"ba": 1, "pa": 2, "ma": 3, "fa": 12, "da": 0}.items():
        assert fill_at(figure, find_text(figure, syllable)) == shading.look(count).fill, syllable
    fills = [shading.look(count).fill for count in (0, 1, 3, 12)]
    assert len(set(fills)) == 4
    assert shading.look(1) == shading.look(2)
    legend = {"never seen", "1 to 2", "3 to 9", "10 to 12", "no such syllable"}
    assert legend <= set(strings_of(figure))


def numbers_below(texts: list[Any], figure: Any, distance: float) -> dict[str, set[str]]:
    at = {text.get_position(): text.get_text() for text in texts_of(figure)}
    numbers: dict[str, set[str]] = {}
    for text in texts:
        x, y = text.get_position()
        numbers.setdefault(text.get_text(), set()).add(at.get((x, y + distance), ""))
    return numbers


@on_grids
def test_every_syllable_and_phone_shows_its_count(language: Language) -> None:
    counts = coverage(ROOT / "data" / f"{language.name.lower()}.tsv", language)
    figure = report(counts, language)
    texts = [t for t in texts_of(figure) if t.get_ha() == "center" and t.get_color() != FAINT]
    numbers = numbers_below([t for t in texts if not is_bold(t)], figure, 12.5)
    for row in phoneme.syllables(language):
        assert numbers[row.pinyin] == {str(counts.syllables[row.id] or "")}, row
    assert sum(counts.syllables.values()) > 5000

    numbers = numbers_below([t for t in texts_of(figure) if is_bold(t)], figure, 13)
    seen = [phone for phone in phoneme.phones(language) if counts.phones[phone.id]]
    assert len(seen) == {Language.MANDARIN: 59, Language.CANTONESE: 88}[language]
    for phone in seen:
        assert str(counts.phones[phone.id]) in numbers[phone.name], phone


def test_a_phone_that_is_never_seen_stands_out() -> None:
    figure = report(["ma1"])
    zeros = [text for text in texts_of(figure) if text.get_text() == "0"]
    headings = [text for text in zeros if text.get_color() == UNSEEN_EDGE]
    # Two panels have the initials; five tones have bars, of which four are empty.
    assert len(headings) > 57 and len(zeros) == len(headings) + 4


def test_english_phones_show_their_counts() -> None:
    figure = chart("english", lexicon=["K AE1 T"] * 1234)
    for name in ("k", "ae", "t"):
        x, y = find_text(figure, name).get_position()
        assert "1.2k" in [t.get_text() for t in texts_of(figure) if t.get_position() == (x, y + 13)]
    assert strings_of(figure).count("1.2k") == 3
    assert fill_at(figure, find_text(figure, "b")) == Shading([1]).look(0).fill


# Counts


@on_grids
def test_coverage_counts_what_the_library_converts(language: Language) -> None:
    path = ROOT / "data" / f"{language.name.lower()}.tsv"
    counts = coverage(path, language, column=2)
    rows, tones, phones, lines = Counter[int](), Counter[int](), Counter[int](), 0
    for line in path.read_text("utf-8").splitlines():
        if line.startswith("# "):
            continue
        lines += 1
        for syllable in phoneme.py2ph(line.split("\t")[2], language):
            rows[syllable.code // 10] += 1
            tones[syllable.tone] += 1
            phones.update(phone.id for phone in syllable.phones)
    assert counts.entries == lines > 2000
    assert counts.syllables == rows
    assert {int(tone): count for tone, count in counts.tones.items() if tone} == tones
    assert counts.phones == phones
    assert not counts.problems and not counts.flawed_entries


def test_coverage_counts_pronunciation_strings_phone_by_phone() -> None:
    path = ROOT / "data" / "english.tsv"
    counts = coverage(path, "english", column=2)
    phones, digits = Counter[int](), Counter[str]()
    strings = [line.split("\t")[2] for line in path.read_text("utf-8").splitlines()[3:]]
    for string in strings:
        for syllable in phoneme.pr2ph(string, "english"):
            digits[str(syllable.raw_tone)] += 1
            phones.update(phone.id for phone in syllable.phones)
    assert counts.phones == phones
    assert counts.tones == digits
    assert counts.entries == len(strings) > 2000

    arpabet = [phoneme.pronunciation_to_arpabet(string).text for string in strings]
    in_arpabet = coverage(arpabet, "english").phones
    ah, ax = (p.id for p in phoneme.phones("english") if p.name in ("ah", "ax"))
    # Without stress the two vowels are one name in ARPAbet.
    assert in_arpabet[ah] + in_arpabet[ax] == phones[ah] + phones[ax]
    for other in set(phones) - {ah, ax}:
        assert in_arpabet[other] == phones[other]


def test_a_broken_pronunciation_string_counts_as_far_as_it_is_read() -> None:
    counts = coverage(["hh ax 0, qq iy 1", "l ow 9", "k ae t"], "english")
    assert counts.problems["unknown phone"] == 1
    assert counts.problems["bad tone"] == 1
    assert counts.examples == {"unknown phone": "qq", "bad tone": "9"}
    names = [phone.name for phone in phoneme.phones("english") if counts.phones[phone.id]]
    assert names == ["ae", "ax", "iy", "ow", "hh", "k", "l", "t"]
    assert counts.flawed_entries == 2


def test_problems_are_counted_by_kind_with_the_first_piece() -> None:
    counts = coverage(["ni3 xyz3", "", "nǐ hao9", "xyz ni3", "  "])
    assert (counts.entries, counts.blank_entries, counts.flawed_entries) == (5, 2, 3)
    assert counts.problems["unknown syllable"] == 2
    assert counts.examples["unknown syllable"] == "xyz3"
    assert counts.problems["bad tone"] == 1
    strings = strings_of(report(counts))
    assert {"unknown syllable", "bad tone", "first: xyz3"} <= set(strings)
    assert any(string.startswith("5 entries, 3 syllables. Seen: ") for string in strings)
    assert any(string.startswith("1 entry, 1 syllable. ") for string in strings_of(report(["ni3"])))
    assert any("Entries with problems: 3, blank: 2." in string for string in strings)


def test_report_says_what_is_never_seen() -> None:
    everything = [row.pinyin + "1" for row in phoneme.syllables("cantonese") if row.pinyin != "wut"]
    strings = strings_of(report(everything, "cantonese"))
    assert {"1 of 88 phones", "uut (94)", "1 of 619 syllables"} <= set(strings)
    assert strings.count("wut") == 2  # in the list and in the grid
    strings = strings_of(report(["ni3"]))
    assert "416 of 417 syllables" in strings
    assert any(re.fullmatch(r"and \d+ more", string) for string in strings)


def is_tone(text: Any, tone: str) -> bool:
    return bool(text.get_text() == tone and text.get_position()[0] < 20)


def test_report_has_a_bar_for_every_tone() -> None:
    figure = report(["ni3 hao3 ma1"])
    bars = {}
    for tone in "12345":
        ((x, y),) = [t.get_position() for t in texts_of(figure) if is_tone(t, tone)]
        bars[tone] = next(b.get_width() for b in boxes_of(figure) if b.get_y() == y - 6)
    assert bars["2"] == bars["4"] == bars["5"] == 0
    assert bars["3"] == pytest.approx(2 * bars["1"]) and bars["1"] > 0


# What a lexicon may be


def test_every_form_of_a_lexicon_counts_the_same(tmp_path: pathlib.Path) -> None:
    pandas = pytest.importorskip("pandas")
    texts = ["ni3 hao3", "lv4", "xyz"]
    path = tmp_path / "lexicon.tsv"
    lines = [f"{index}\t{text}\tmore" for index, text in enumerate(texts)]
    path.write_bytes("\r\n".join(["\ufeff# a comment", "", *lines]).encode("utf-8"))
    forms: dict[str, Any] = {
        "list": texts,
        "iterator": iter(texts),
        "bytes": [text.encode() for text in texts],
        "pairs": [("word", text) for text in texts],
        "mapping": {str(index): text for index, text in enumerate(texts)},
        "series": pandas.Series(texts),
        "path": path,
        "path as text": str(path),
    }
    for name, form in forms.items():
        counts = coverage(form)
        assert counts.entries == 3, name
        assert sorted(counts.syllables) == sorted(map(row_of, ["ni3", "hao3", "lv4"])), name
        assert counts.problems == {"unknown syllable": 1}, name


def test_entries_that_begin_with_a_number_sign(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "lexicon.tsv"
    path.write_text("# a comment\tni3\n#hashtag\thao3\n#\tma5\n##\tlv4\n #\txi1\n", "utf-8")
    counts = coverage(path)
    assert counts.entries == 4
    assert sorted(counts.syllables) == sorted(map(row_of, ["hao3", "ma5", "lv4", "xi1"]))


def test_lines_end_at_a_line_feed_alone(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "lexicon.tsv"
    path.write_bytes("a\tni3\rhao3\r\nb\tni3\x85\u2028lv4\n".encode())
    counts = coverage(path)
    assert counts.entries == 2
    assert counts.syllables == {row_of("ni3"): 2, row_of("hao3"): 1, row_of("lv4"): 1}


def test_an_entry_is_flawed_once() -> None:
    counts = coverage(["ni3 xyz hoa3 P", "hao3", "zz"])
    assert (counts.entries, counts.flawed_entries, sum(counts.problems.values())) == (3, 2, 4)


def test_what_is_no_lexicon_is_an_error_that_says_where(tmp_path: pathlib.Path) -> None:
    with pytest.raises(TypeError, match="entry 1 of the lexicon is NoneType"):
        coverage(["ni3", None])  # type: ignore[list-item]
    with pytest.raises(TypeError, match="entry 0 of the lexicon is tuple"):
        coverage([("a", "b", "c")])  # type: ignore[list-item]
    path = tmp_path / "lexicon.tsv"
    path.write_text("a\tni3\nb ni3\n", "utf-8")
    with pytest.raises(ValueError) as caught:
        coverage(path)
    separated = "tabs separate them, the first is 0"
    assert str(caught.value) == f"{path}:2: no column 1 in 1 field; {separated}"
    for column in (-1, 2):
        with pytest.raises(ValueError) as caught:
            coverage(path, column=column)
        assert str(caught.value) == f"{path}:1: no column {column} in 2 fields; {separated}"
    with pytest.raises(FileNotFoundError):
        coverage(tmp_path / "missing.tsv")
    with pytest.raises(ValueError) as caught:
        chart("english", lexicon=coverage([], "mandarin"))
    assert str(caught.value) == "a coverage of mandarin, where english is asked"


def test_what_is_no_lexicon_at_all(tmp_path: pathlib.Path) -> None:
    pandas = pytest.importorskip("pandas")
    takes = "a path as str or os.PathLike, a mapping or an iterable of pronunciations or pairs"
    lexicon: Any
    for lexicon in (b"file", bytearray(b"file"), pandas.DataFrame({"ni3": ["hao3"]})):
        with pytest.raises(TypeError) as caught:
            coverage(lexicon)
        assert str(caught.value) == f"a lexicon is {takes}, not {type(lexicon).__name__}"
    column: Any
    for column in ("1", 1.0, None, True):
        with pytest.raises(TypeError) as caught:
            coverage(tmp_path / "missing.tsv", column=column)
        assert str(caught.value) == f"column must be an int, not {type(column).__name__}"


def test_languages_by_name_enum_and_id() -> None:
    names: list[str | int] = ["english", "en-US", Language.AMERICAN_ENGLISH, 20000]
    for language in names:
        assert strings_of(chart(language))[0] == "American English: vowels and consonants"
    assert strings_of(chart("zh"))[0] == "Mandarin: initials and finals"
    with pytest.raises(ValueError, match="mandarin.*cantonese.*english"):
        chart("klingon")


# Files and matplotlib


@pytest.mark.parametrize("ending", ["svg", "png", "SVG"])
def test_the_same_picture_is_the_same_file(tmp_path: pathlib.Path, ending: str) -> None:
    first, second = tmp_path / f"first.{ending}", tmp_path / f"second.{ending}"
    chart("english", path=first)
    before = dict(matplotlib.rcParams)
    settings = {"savefig.bbox": "tight", "font.size": 30, "axes.facecolor": "red"}
    with matplotlib.rc_context({**settings, "savefig.facecolor": "red", "savefig.dpi": 30}):
        chart("english", path=str(second))
    assert dict(matplotlib.rcParams) == before
    assert first.read_bytes() == second.read_bytes()
    assert first.read_bytes()[:4] == (b"\x89PNG" if ending == "png" else b"<?xm")
    assert b"Matplotlib" not in first.read_bytes()


def test_other_endings_are_refused(tmp_path: pathlib.Path) -> None:
    for name in ("chart.pdf", "chart", "svg"):
        with pytest.raises(ValueError, match=r"\.svg and \.png"):
            chart("english", path=tmp_path / name)
        # Before a lexicon is read, which may take long.
        with pytest.raises(ValueError, match=r"\.svg and \.png"):
            chart("english", lexicon=tmp_path / "missing", path=tmp_path / name)
        with pytest.raises(ValueError, match=r"\.svg and \.png"):
            report(tmp_path / "missing", path=tmp_path / name)
    assert not list(tmp_path.iterdir())


def test_a_picture_that_cannot_be_written_leaves_the_old_one(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    def save(figure: Any, path: str, **settings: Any) -> None:
        pathlib.Path(path).write_text("half of")
        raise OSError("No space left on device")

    path = tmp_path / "chart.svg"
    path.write_text("old")
    monkeypatch.setattr(matplotlib.figure.Figure, "savefig", save)
    with pytest.raises(OSError, match="No space"):
        chart("english", path=path)
    assert [file.read_text() for file in tmp_path.iterdir()] == ["old"]


@pytest.mark.parametrize(
    ("name", "error"),
    [
        ("nowhere/chart.png", FileNotFoundError),
        ("file/chart.png", NotADirectoryError),
        ("folder.png", IsADirectoryError),
        ("link.svg", FileNotFoundError),
        ("x" * 252 + ".svg", OSError),
    ],
)
def test_a_picture_without_a_place(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch, name: str, error: type[OSError]
) -> None:
    monkeypatch.chdir(tmp_path)
    pathlib.Path("file").touch()
    pathlib.Path("folder.png").mkdir()
    pathlib.Path("link.svg").symlink_to("nowhere/chart.svg")
    before = sorted(tmp_path.rglob("*"))
    path: Any
    for path in (name, pathlib.Path(name)):
        with pytest.raises(error) as caught:
            chart("english", path=path)
        reason = os.strerror(caught.value.errno or 0)
        assert str(caught.value) == f"[Errno {caught.value.errno}] {reason}: {name!r}"
    assert sorted(tmp_path.rglob("*")) == before


@pytest.mark.parametrize("mode", [0o600, 0o640, 0o666, 0o400])
def test_a_picture_keeps_the_mode_of_the_old_one(tmp_path: pathlib.Path, mode: int) -> None:
    path = tmp_path / "chart.png"
    path.write_text("old")
    path.chmod(mode)
    report(["ni3"], path=path)
    assert path.stat().st_mode & 0o7777 == mode
    assert path.stat().st_size > 1000


def test_a_new_picture_has_the_mode_of_new_files(tmp_path: pathlib.Path) -> None:
    (tmp_path / "file").touch()
    chart("english", path=tmp_path / "chart.png")
    modes = {path.name: path.stat().st_mode for path in tmp_path.iterdir()}
    assert modes["chart.png"] == modes["file"]


def test_a_picture_that_replaces_a_closed_one_is_never_open(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    modes = list[int]()

    def save(figure: Any, path: str, **settings: Any) -> None:
        modes.append(os.stat(path).st_mode & 0o777)

    path = tmp_path / "chart.svg"
    path.touch(0o600)
    monkeypatch.setattr(matplotlib.figure.Figure, "savefig", save)
    chart("english", path=path)
    assert modes == [0o600]


def test_a_picture_goes_where_a_link_leads(tmp_path: pathlib.Path) -> None:
    (tmp_path / "folder").mkdir()
    (tmp_path / "link.svg").symlink_to("folder/chart.svg")
    chart("english", path=tmp_path / "link.svg")
    assert (tmp_path / "link.svg").is_symlink()
    assert (tmp_path / "folder" / "chart.svg").stat().st_size > 1000


def test_any_name_gives_a_file_that_can_be_read(tmp_path: pathlib.Path) -> None:
    name = "<a & b>-- \x01 \ud800 \u4f60 $x$"
    path = tmp_path / "chart.svg"
    chart("english", lexicon=named(name, "english"), path=path)
    title = "American English: vowels and consonants in " + drawable(name)
    assert title in "".join(ElementTree.parse(path).getroot().itertext())


def test_without_matplotlib_the_error_says_what_to_install(
    monkeypatch: pytest.MonkeyPatch,
) -> None:
    monkeypatch.setitem(sys.modules, "matplotlib.figure", None)  # type: ignore[misc]
    with pytest.raises(ImportError, match="pip install matplotlib"):
        chart("english")
    assert coverage(["ni3"]).entries == 1


def test_matplotlib_is_loaded_when_drawing_and_pyplot_never() -> None:
    code = (
        "import sys, phoneme, phoneme.charts\n"
        "assert 'matplotlib' not in sys.modules\n"
        "phoneme.chart('english')\n"
        "assert 'matplotlib' in sys.modules and 'matplotlib.pyplot' not in sys.modules\n"
    )
    folder = pathlib.Path(phoneme.__file__).parents[1]
    environment = {**os.environ, "PYTHONPATH": str(folder)}
    subprocess.run([sys.executable, "-c", code], check=True, env=environment)


# The samples


def drawn_in(path: pathlib.Path) -> list[tuple[str, str]]:
    """The texts and the colours of an SVG in the order of drawing."""
    content = re.sub(r"<defs>.*?</defs>", "", path.read_text("utf-8"), flags=re.DOTALL)
    return re.findall(r"<!-- (.*?) -->|fill: (#[0-9a-f]{6})", content)


def test_the_samples_in_the_documentation_are_what_is_drawn_today(tmp_path: pathlib.Path) -> None:
    (tmp_path / "docs" / "charts").mkdir(parents=True)
    (tmp_path / "data").symlink_to(ROOT / "data")
    folder = pathlib.Path(phoneme.__file__).parents[1]
    command = [sys.executable, str(ROOT / "scripts" / "charts"), str(tmp_path)]
    subprocess.run(command, check=True, env={**os.environ, "PYTHONPATH": str(folder)})

    drawn = sorted((tmp_path / "docs" / "charts").iterdir())
    kept = sorted((ROOT / "docs" / "charts").iterdir())
    assert [path.name for path in drawn] == [path.name for path in kept]
    assert [path.stem for path in kept] == SAMPLES
    for now, sample in zip(drawn, kept):
        assert len(drawn_in(sample)) > 100, sample.name
        assert drawn_in(sample) == drawn_in(now), f"{sample.name}: run scripts/charts again"


def test_the_document_shows_every_sample() -> None:
    document = (ROOT / "docs" / "charts.md").read_text("utf-8")
    shown = re.findall(r"!\[.+\]\((charts/\w+\.svg)\)", document)
    assert sorted(shown) == [f"charts/{name}.svg" for name in SAMPLES]
    assert all((ROOT / "docs" / path).is_file() for path in shown)
