"""The page that charts are drawn on, and its colours. Needs matplotlib, imported when drawing."""

from __future__ import annotations

import os
import uuid
from collections.abc import Callable, Iterable
from functools import lru_cache
from typing import TYPE_CHECKING, Any, NamedTuple

from phoneme._core import shown

if TYPE_CHECKING:
    from matplotlib.figure import Figure

# A page is blocks from top to bottom. Its unit is the pixel at 100 dots an inch.
WIDTH = 1000.0
MARGIN = 16.0
_DPI = 100

INK = "#1a1a1a"
FAINT = "#5f6670"
LINE = "#d5d9de"
PAPER = "#ffffff"
_PLAIN = "#d6e8f7"  # what exists, where nothing is counted
_UNSEEN = "#fff3dc"
UNSEEN_EDGE = "#a34700"
# Light to dark in one hue, which every kind of colour vision can order.
SHADES = ("#deebf7", "#b7d4ea", "#86bbdc", "#559fd0", "#2070b4", "#08468b")
_LIGHT_SHADES = 4  # the first of them, which take dark text


class Block(NamedTuple):
    height: float
    draw: Callable[[Page, float], None]  # at this distance from the top


class Page:
    """A figure, drawn on in pixels from the upper left corner."""

    def __init__(self, height: float) -> None:
        figure = _figure_class()(figsize=(WIDTH / _DPI, height / _DPI), dpi=_DPI)
        figure.set_facecolor(PAPER)
        axes = figure.add_axes([0, 0, 1, 1])
        axes.set_xlim(0, WIDTH)
        axes.set_ylim(height, 0)
        axes.set_axis_off()
        self.figure = figure
        self._axes = axes

    def text(self, x: float, y: float, text: str, size: float = 10, **style: Any) -> None:
        """Text around (x, y), or beginning there with ha="left"."""
        style = {"ha": "center", "va": "center_baseline", "color": INK, **style}
        points = size * 72 / _DPI
        plain = drawable(text).replace("$", r"\$")  # which would begin a formula
        font = {"fontsize": points, "family": _FONT, "usetex": False}
        self._axes.text(x, y, plain, **font, **style)

    def box(self, x: float, y: float, width: float, height: float, **style: Any) -> None:
        from matplotlib.patches import Rectangle

        self._axes.add_patch(Rectangle((x, y), width, height, **{"linewidth": 0, **style}))

    def pill(self, x: float, y: float, width: float, height: float, **style: Any) -> None:
        from matplotlib.patches import BoxStyle, FancyBboxPatch

        shape = BoxStyle.Round(pad=0, rounding_size=height / 2)
        self._axes.add_patch(FancyBboxPatch((x, y), width, height, boxstyle=shape, **style))

    def lines(self, ends: Iterable[tuple[float, float, float, float]], color: str = LINE) -> None:
        """Straight lines, each from (x, y) to (x, y)."""
        from matplotlib.collections import LineCollection

        segments = [((x1, y1), (x2, y2)) for x1, y1, x2, y2 in ends]
        self._axes.add_collection(LineCollection(segments, colors=color, linewidths=0.6, zorder=0))


_FONT = "DejaVu Sans"  # comes with matplotlib
_ELLIPSIS = "\u2026"
# Latin with its marks and letters of phonetics, Greek and Cyrillic, as far as the font has them.
_DRAWN = [range(0x2EA), range(0x300, 0x350), range(0x370, 0x37F), range(0x384, 0x524)]
_DRAWN += [range(0x1E00, 0x1EFA), range(0x2026, 0x2027)]


def drawable(text: str) -> str:
    """The text with escapes for what the font lacks, so that it looks the same everywhere."""
    return "".join(c if _has_glyph(c) else ascii(c)[1:-1] for c in text)


def _has_glyph(character: str) -> bool:
    return character.isprintable() and any(ord(character) in codes for codes in _DRAWN)


@lru_cache(maxsize=4096)
def text_width(text: str, size: float, weight: str = "normal") -> float:
    """In pixels, of a text that is drawable."""
    from matplotlib.font_manager import FontProperties
    from matplotlib.textpath import text_to_path

    font = FontProperties(family=_FONT, size=size, weight=weight)
    return float(text_to_path.get_text_width_height_descent(text, font, False)[0])


def fitted(text: str, room: float, size: float, weight: str = "normal") -> str:
    """As much of a text as there is room for, cut between characters of its own."""
    room -= text_width(_ELLIPSIS, size, weight)
    kept = ""
    for character in text:
        drawn = drawable(character)
        room -= text_width(drawn, size, weight)
        if room < 0:
            return kept + _ELLIPSIS
        kept += drawn
    return kept


def _figure_class() -> Any:
    try:
        from matplotlib.figure import Figure
    except ImportError as error:
        message = (
            "phoneme.chart and phoneme.report draw with matplotlib, which is not installed; "
            "install the package python3-matplotlib, or run: pip install matplotlib"
        )
        raise ImportError(message) from error
    return Figure


def draw_page(blocks: list[Block], title: str, path: str | os.PathLike[str] | None) -> Figure:
    page = Page(sum(block.height for block in blocks) + MARGIN)
    top = 0.0
    for block in blocks:
        block.draw(page, top)
        top += block.height
    if path is not None:
        _save(page.figure, path, title)
    return page.figure


def check_path(path: str | os.PathLike[str] | None) -> None:
    if path is not None:
        _file_format(path)


def _file_format(path: str | os.PathLike[str]) -> str:
    ending = os.path.splitext(path)[1].lower()
    if ending not in (".svg", ".png"):
        given = shown(os.fspath(path))
        raise ValueError(f"cannot save a picture as {given}: .svg and .png are known")
    return ending[1:]


def _save(figure: Any, path: str | os.PathLike[str], title: str) -> None:
    """Beside its place first: what is there is replaced by a whole picture or not at all."""
    place = os.path.realpath(path)
    part = os.path.join(os.path.dirname(place), f".{uuid.uuid4().hex}.part")
    try:
        mode = _create(part, place)
        _write(figure, part, _file_format(path), title)
        if mode is not None:
            os.chmod(part, mode)
        os.replace(part, place)
    except BaseException as error:
        if os.path.exists(part):
            os.unlink(part)
        if isinstance(error, OSError) and error.filename in (part, place):
            raise OSError(error.errno, error.strerror, os.fspath(path)) from None
        raise


def _create(part: str, place: str) -> int | None:
    """Makes an empty file, and returns the mode of the one that it will replace, or None."""
    mode = os.stat(place).st_mode & 0o777 if os.path.exists(place) else None
    # What only some may read is never open to others.
    os.close(os.open(part, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o666 if mode is None else 0o600))
    return mode


def _write(figure: Any, path: str, file_format: str, title: str) -> None:
    """The same picture gives the same file: no dates, versions or random ids in it."""
    import matplotlib

    if file_format == "png":
        kind = {"dpi": 2 * _DPI, "metadata": {"Software": None}}
    else:
        kind = {"metadata": {"Title": drawable(title), "Date": None, "Creator": None}}
    settings = {"svg.hashsalt": "phoneme", "svg.fonttype": "path", "savefig.bbox": "standard"}
    with matplotlib.rc_context(settings):
        figure.savefig(path, format=file_format, facecolor=PAPER, transparent=False, **kind)


def heading_block(title: str, facts: str) -> Block:
    def draw(page: Page, top: float) -> None:
        whole = fitted(title, WIDTH - 2 * MARGIN, 17, "bold")
        page.text(MARGIN, top + 24, whole, 17, ha="left", weight="bold")
        page.text(MARGIN, top + 47, facts, 11, ha="left", color=FAINT)

    return Block(62, draw)


# Shading by counts


class Look(NamedTuple):
    fill: str
    ink: str = INK
    edge: str = "none"


PLAIN_LOOK = Look(_PLAIN)
UNSEEN_LOOK = Look(_UNSEEN, UNSEEN_EDGE, UNSEEN_EDGE)


class Shading:
    """Colours for counts from 1 to the largest, in at most as many classes as there are shades."""

    def __init__(self, counts: Iterable[int]) -> None:
        self._largest = max([1, *counts])
        self._bounds = _class_bounds(self._largest, len(SHADES))

    def look(self, count: int) -> Look:
        if count == 0:
            return UNSEEN_LOOK
        return self._class_look(sum(1 for bound in self._bounds if bound <= count) - 1)

    def legend(self) -> list[tuple[Look, str]]:
        """A look and its words for each class."""
        lasts = [bound - 1 for bound in self._bounds[1:]] + [self._largest]
        entries = [(UNSEEN_LOOK, "never seen")]
        for index, (first, last) in enumerate(zip(self._bounds, lasts)):
            ends = dict.fromkeys(f"{n:,}" if n < 10_000 else short_number(n) for n in (first, last))
            entries.append((self._class_look(index), " to ".join(ends)))
        return entries

    def _class_look(self, index: int) -> Look:
        # A few classes are spread over all the shades.
        shade = index * (len(SHADES) - 1) // max(1, len(self._bounds) - 1)
        return Look(SHADES[shade], INK if shade < _LIGHT_SHADES else PAPER)


def _class_bounds(largest: int, most: int) -> list[int]:
    """The first counts of at most `most` classes: 1, 3, 10, 30 and on, or in larger steps."""
    bounds = [b for power in range(20) for b in (10**power, 3 * 10**power) if b <= largest]
    step = 1
    while len(bounds[::step]) > most:
        step += 1
    return bounds[::step]


def short_number(number: int) -> str:
    """At most four characters: "950", "1.2k", "34k"."""
    for power, letter in ((15, "P"), (12, "T"), (9, "G"), (6, "M"), (3, "k")):
        unit = 10**power
        if number >= 10 * unit:
            return f"{number // unit}{letter}"
        if number >= unit:
            return f"{number // (unit // 10) / 10}{letter}"
    return str(number)


def full_number(number: int) -> str:
    """In full as long as that can be read at a glance."""
    return f"{number:,}" if number < 10**9 else short_number(number)


def counted(number: int, one: str, many: str) -> str:
    return f"{full_number(number)} {one if number == 1 else many}"


def legend_block(entries: list[tuple[Look, str]], note: str) -> Block:
    """Boxes with words beside them in a line, and a note below."""

    def draw(page: Page, top: float) -> None:
        x = MARGIN
        for look, words in entries:
            page.box(x, top + 4, 22, 14, facecolor=look.fill, edgecolor=look.edge, linewidth=0.8)
            page.text(x + 28, top + 11, words, 10.5, ha="left")
            x += 28 + text_width(words, 10.5) + 22
        page.text(MARGIN, top + 33, note, 10.5, ha="left", color=FAINT)

    return Block(48, draw)
