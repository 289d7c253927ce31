"""ConversionError, and the search for the piece that made a conversion fail.

Conversions themselves only say that they failed. What is done here costs nothing until then.
"""

from __future__ import annotations

import itertools
import operator
from typing import (
    Any,
    Callable,
    Iterable,
    Literal,
    NoReturn,
    Optional,
    Sequence,
    SupportsIndex,
    Union,
)

from phoneme import _core
from phoneme._core import shown

LanguageName = Union[str, SupportsIndex]
Text = Union[str, bytes]
Errors = Literal["raise", "none"]

_BLANKS = b" \t\r\n"


class ConversionError(ValueError):
    """A text, a code or a sequence that could not be converted.

    >>> try:
    ...     py2code("ni3 hoa3")
    ... except ConversionError as error:
    ...     print(error)
    ...     print(error.piece, error.offset)
    'hoa3' at 4 is not a syllable of mandarin: 'ni3 hoa3'
    hoa3 4

    `text` is what was passed, `piece` the part of it that is wrong and `offset` its place:
    ``text[offset:offset + len(piece)] == piece``. For a single number both are its digits (of one
    that needs more than 64 bits, words that say so), for a phone-id sequence its bytes, and for an
    iterable of codes or syllables a tuple. `language` is what was passed.

    The piece is searched for in a second pass over the text, which errors="none" spares.
    """

    def __init__(
        self,
        text: Sequence[Any],
        piece: Sequence[Any],
        offset: int,
        language: LanguageName,
        reason: str,
    ) -> None:
        super().__init__(text, piece, offset, language, reason)
        self.text = text
        self.piece = piece
        self.offset = offset
        self.language = language
        self.reason = reason

    def __str__(self) -> str:
        where = f"{shown(self.piece)} at {self.offset} {self.reason}"
        is_all = len(self.piece) == len(self.text)
        return where if is_all else f"{where}: {shown(self.text)}"


def listed(messages: Iterable[str], separator: str = "; ") -> str:
    """The first ten messages, and how many more there are."""
    most = 10
    remaining = iter(messages)
    first = list(itertools.islice(remaining, most))
    more = sum(1 for _ in remaining)
    return separator.join(first) + (f"{separator}and {more} more" if more else "")


def is_iterable(thing: object) -> bool:
    return hasattr(thing, "__iter__") or hasattr(thing, "__getitem__")


def named(language: LanguageName) -> str:
    """The language as messages write it: by name, where it has one."""
    if isinstance(language, str):
        return language
    number = operator.index(language)
    for name, known in _core.LANGUAGES.items():
        if known == number:
            return name
    # Python refuses to write a number of thousands of digits.
    return f"language {number}" if number.bit_length() <= 64 else "an unregistered language"


def check_errors(errors: str) -> None:
    if errors not in ("raise", "none"):
        raise ValueError(f"errors must be 'raise' or 'none', not {shown(errors)}")


def settle(
    is_failed: bool,
    errors: str,
    explain: Callable[[Any, LanguageName], NoReturn],
    text: Any,
    language: LanguageName,
) -> None:
    """Raises what `explain` finds for a conversion that failed, unless `errors` is "none".

    Any other value of `errors` than the two is a ValueError, also after a success.
    """
    if errors != "none":
        check_errors(errors)
    if is_failed and errors == "raise":
        explain(text, language)


def _raise(
    text: Text, data: bytes, begin: int, end: int, language: LanguageName, reason: str
) -> NoReturn:
    """Raises for the bytes from `begin` to `end`, which are counted in the units of `text`."""
    if isinstance(text, str):
        begin = len(data[:begin].decode("utf-8", "surrogatepass"))
        end = len(data[:end].decode("utf-8", "surrogatepass"))
    piece = text[begin:end]
    raise ConversionError(text, piece, begin, language, reason) from None


def _bytes(text: Text) -> bytes:
    return text.encode("utf-8", "surrogatepass") if isinstance(text, str) else bytes(text)


def raise_for_pinyin(text: Text, language: LanguageName) -> NoReturn:
    """Raises for the first piece of a romanised text that is not a syllable."""
    for (start, stop), row, _ in _core.pieces(text, language, True):
        if row is None:
            reason = f"is not a syllable of {named(language)}"
            raise ConversionError(text, text[start:stop], start, language, reason) from None
    raise AssertionError("no piece of a text that failed is wrong")


def raise_for_pronunciation(text: Text, language: LanguageName) -> NoReturn:
    """Raises for the first phone or digit of a pronunciation string that is wrong."""
    _raise_for_pronunciation(text, language, _core.pr2ph)


def raise_for_pronunciation_ids(text: Text, language: LanguageName) -> NoReturn:
    """As above, where every phone must have an id."""
    _raise_for_pronunciation(text, language, _core.pr2ph_ids)


def _raise_for_pronunciation(
    text: Text,
    language: LanguageName,
    parse: Callable[[bytes, LanguageName, bool], Optional[object]],
) -> NoReturn:
    data = _bytes(text)
    begin = 0
    for field in data.split(b","):
        if parse(field, language, True) is None:
            break
        begin += len(field) + 1
    begin += len(field) - len(field.lstrip(_BLANKS))
    pieces = field.strip(_BLANKS).split(b" ")
    if len(pieces) == 1:
        end = begin + len(pieces[0])
        reason = "is not a syllable: expected phones and a digit"
        _raise(text, data, begin, end, language, reason)
    for piece in pieces[:-1]:
        if parse(piece + b" 0", language, True) is None:
            is_unknown = f"is not a phone of {named(language)}"
            reason = is_unknown if piece else "is empty: a space too many"
            _raise(text, data, begin, begin + len(piece), language, reason)
        begin += len(piece) + 1
    _raise(text, data, begin, begin + len(pieces[-1]), language, "is not a tone digit")


def raise_for_phone_ids(phone_ids: Any, language: LanguageName) -> NoReturn:
    """Raises for the first byte of a buffer that names no phone."""
    data = memoryview(phone_ids).tobytes()
    for offset in range(len(data)):
        piece = data[offset : offset + 1]
        if _core.ph2ph(piece, language, True) is None:
            reason = f"is not a phone of {named(language)}"
            raise ConversionError(data, piece, offset, language, reason)
    raise AssertionError("no byte of a sequence that failed is wrong")


def raise_for_code(code: int, language: LanguageName) -> NoReturn:
    """Raises for a syllable code without a row."""
    text = str(int(code))
    raise ConversionError(text, text, 0, language, f"is not a syllable code of {named(language)}")


def raise_for_phone(id_or_name: Union[int, Text], language: LanguageName) -> NoReturn:
    """Raises for an id or a name that no phone has."""
    text = id_or_name if isinstance(id_or_name, (str, bytes)) else _digits(id_or_name)
    raise ConversionError(text, text, 0, language, f"is not a phone of {named(language)}")


def _digits(number: SupportsIndex) -> str:
    """The digits of a number, unless they are thousands, which Python refuses to write."""
    value = operator.index(number)
    return str(value) if value.bit_length() <= 64 else "an int of more than 64 bits"


def raise_for_item(items: Sequence[Any], index: int, language: LanguageName) -> NoReturn:
    """Raises for one of the codes or syllables that cannot be written."""
    piece = items[index : index + 1]
    raise ConversionError(items, piece, index, language, "cannot be written")
