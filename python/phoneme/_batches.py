"""Conversions of many texts at once, into NumPy arrays.

No Python object is made for a text or a syllable, and Python's lock is released while texts are
converted, so that threads scale over the processor's cores.
"""

from __future__ import annotations

import operator
from collections.abc import Mapping, Sequence  # those of typing are slower to ask
from dataclasses import dataclass
from typing import (
    TYPE_CHECKING,
    Any,
    Iterable,
    Iterator,
    Optional,
    SupportsIndex,
    TypeVar,
    Union,
    overload,
)

from phoneme import _core
from phoneme._core import Syllable, type_name
from phoneme._errors import Errors, LanguageName, Text, check_errors
from phoneme._notation import AliasesLike, Cutting, Rules, core_aliases, cutting_number, rule_bits
from phoneme._numpy import import_numpy, import_pyarrow

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    Bytes = NDArray[np.uint8]
    Codes = NDArray[np.uint16]
    Tones = NDArray[np.int8]
    Offsets = NDArray[np.int64]
else:
    Bytes = Codes = Tones = Offsets = Any  # NumPy is imported by the first batch

#: An iterable of str and bytes, the pair (data, offsets) of an Arrow array of strings, or what
#: `normalize_batch` returns.
Texts = Union[Iterable[Union[str, bytes, None]], tuple[Any, Any], "TextBatch"]

Result = TypeVar("Result", covariant=True)


@dataclass(eq=False)
class Batch(Sequence[Optional[Result]]):
    """What many texts gave: a sequence with one item a text, over arrays that hold them all.

    >>> batch = py2code_batch(["ni3hao3", "xyz3", "ma"])
    >>> len(batch), batch[0], batch[1], batch.tolist()
    (3, [2243, 1173], None, [[2243, 1173], None, [1945]])

    An item is None for a text whose status is not 0. Else it is what converting the one text gives:
    the list of `py2code`, `py2ph` and `pyw2py`, the bytes of `pr2ph` with `as_ids`, of
    `normalize_batch` the normalised text, and of `analyze_batch` the list of its syllables. A slice
    of a batch is the list of its items. `offsets` has one entry more than there are texts, and
    `status` the number of a `Status` for each text. A text that failed has nothing in the other
    arrays, except in those of `normalize_batch`.
    """

    offsets: Offsets
    status: Bytes

    def __len__(self) -> int:
        return len(self.status)

    @overload
    def __getitem__(self, index: SupportsIndex) -> Optional[Result]: ...

    @overload
    def __getitem__(self, index: slice) -> list[Optional[Result]]: ...

    def __getitem__(
        self, index: Union[SupportsIndex, slice]
    ) -> Union[Optional[Result], list[Optional[Result]]]:
        if isinstance(index, slice):
            return [self._item(i) for i in range(len(self))[index]]
        try:
            place = operator.index(index)
        except TypeError:
            what = type_name(index)
            raise TypeError(f"batch indices must be integers or slices, not {what}") from None
        count = len(self)
        if not -count <= place < count:
            raise IndexError("batch index out of range")
        return self._item(place % count)

    def __iter__(self) -> Iterator[Optional[Result]]:
        return (self._item(i) for i in range(len(self)))

    def tolist(self) -> list[Optional[Result]]:
        """The items as a list."""
        return list(self)

    def _item(self, i: int) -> Optional[Result]:
        if self.status[i] != 0:
            return None
        return self._values(int(self.offsets[i]), int(self.offsets[i + 1]))

    def _values(self, start: int, stop: int) -> Result:
        raise NotImplementedError


@dataclass(eq=False)
class CodeBatch(Batch[list[int]]):
    """Syllable codes of many texts.

    >>> batch = py2code_batch(["ni3hao3", "xyz3", "ma"])
    >>> batch.codes, batch.offsets, batch.status
    (array([2243, 1173, 1945], dtype=uint16), array([0, 2, 2, 3]), array([0, 1, 0], dtype=uint8))
    >>> batch[0]
    [2243, 1173]

    The codes of text i are ``codes[offsets[i]:offsets[i + 1]]``.
    """

    codes: Codes

    def _values(self, start: int, stop: int) -> list[int]:
        codes: list[int] = self.codes[start:stop].tolist()
        return codes


@dataclass(eq=False)
class SyllableBatch(Batch[list[Syllable]]):
    """Syllables of many texts.

    >>> batch = py2ph_batch(["ni3hao3", "er2"])
    >>> batch.phones, batch.phone_offsets
    (array([14, 25, 18, 33, 39], dtype=uint8), array([0, 2, 4, 5]))
    >>> batch.codes, batch.tones, batch.offsets
    (array([2243, 1173,  842], dtype=uint16), array([3, 3, 2], dtype=int8), array([0, 2, 3]))
    >>> batch[1]
    [Syllable('er', mandarin, code=842, tone=2)]

    The syllables of text i are those from ``offsets[i]`` to ``offsets[i + 1]``, and the phone ids
    of syllable j ``phones[phone_offsets[j]:phone_offsets[j + 1]]``. `language` is what was passed.
    """

    phones: Bytes
    phone_offsets: Offsets
    codes: Codes
    tones: Tones
    language: LanguageName

    def _values(self, start: int, stop: int) -> list[Syllable]:
        return [self._syllable(j) for j in range(start, stop)]

    def _syllable(self, j: int) -> Syllable:
        code, tone = int(self.codes[j]), int(self.tones[j])
        if code != 0:
            from_code = _core.code2ph(code, self.language, True)
            assert from_code is not None  # the row is that of a text
            return from_code
        table = _core.phones(self.language, True)
        ids = self.phones[self.phone_offsets[j] : self.phone_offsets[j + 1]]
        return Syllable([table[number] for number in ids], table[0].language, raw_tone=tone)


@dataclass(eq=False)
class AnalysisBatch(SyllableBatch):
    """Syllables of many texts, and the first problem of those that have one.

    >>> batch = analyze_batch(["Nǐ hǎo", "nǐ hoa3"])
    >>> batch.status, batch.problem_starts, batch.problem_stops
    (array([0, 2], dtype=uint8), array([-1,  3]), array([-1,  7]))
    >>> batch.codes, batch.offsets
    (array([2243, 1173], dtype=uint16), array([0, 2, 2]))

    The first problem of text i is ``text[problem_starts[i]:problem_stops[i]]``, in characters of a
    str and in bytes of bytes and of a pair of buffers; both are -1 where the status is 0 or
    MISSING. A text with a problem has no syllables; `analyze` gives those that it can read, and all
    problems. The arrays of syllables are as with SyllableBatch; for English `codes` are 0 and
    `tones` the digits of the stress.
    """

    problem_starts: Offsets
    problem_stops: Offsets


@dataclass(eq=False)
class IdBatch(Batch[bytes]):
    """Phone-id sequences of many pronunciation strings.

    >>> batch = pr2ph_batch(["n i 3", "h ao"])
    >>> batch.ids, batch.offsets, batch.status
    (array([24, 35,  3], dtype=uint8), array([0, 3, 3]), array([0, 1], dtype=uint8))

    The sequence of text i is ``ids[offsets[i]:offsets[i + 1]]``.
    """

    ids: Bytes

    def _values(self, start: int, stop: int) -> bytes:
        return self.ids[start:stop].tobytes()


@dataclass(eq=False)
class PieceBatch(Batch[list[str]]):
    """Pieces of many words.

    >>> batch = pyw2py_batch(["fangan", "ma"])
    >>> bytes(batch.data), batch.piece_offsets, batch.offsets
    (b'fanganma', array([0, 4, 6, 8]), array([0, 2, 3]))

    The pieces of word i are those from ``offsets[i]`` to ``offsets[i + 1]``, and the bytes of piece
    j ``data[piece_offsets[j]:piece_offsets[j + 1]]``. As items they are str, in which bytes that
    are not UTF-8 become surrogate escapes, as with `pyw2py`.
    """

    data: Bytes
    piece_offsets: Offsets

    def _values(self, start: int, stop: int) -> list[str]:
        ends = self.piece_offsets[start : stop + 1].tolist()
        return [_decoded(self.data[i:j].tobytes()) for i, j in zip(ends, ends[1:])]


@dataclass(eq=False)
class TextBatch(Batch[str]):
    """Texts.

    >>> batch = normalize_batch(["Nǐ hǎo", "san1 P"])
    >>> bytes(batch.data), batch.offsets, batch.status
    (b'ni3 hao3san1', array([ 0,  8, 12]), array([0, 5], dtype=uint8))
    >>> batch.tolist()
    ['ni3 hao3', None]

    The bytes of text i are ``data[offsets[i]:offsets[i + 1]]``. A text with problems, which `status`
    names, has there what could be placed, and is None as an item.

    A batch is texts for another one, where texts with problems are not converted and keep their
    status. So is the pair (data, offsets), whose `offsets` carry the status, as do a memoryview and
    each contiguous slice of them:

    >>> py2code_batch((batch.data, batch.offsets[1:])).status
    array([5], dtype=uint8)

    Any other view of them, as ``offsets.view("int32")``, is a ValueError. A copy of them is bare
    texts, and so is a slice of the batch, a list of str and None: what converts those does not know
    their status, and without ``strict=True`` drops letters.
    """

    data: Bytes

    def __post_init__(self) -> None:
        import_numpy()
        self.offsets = _core.tie_status(self.offsets, self.status)

    def __setstate__(self, state: dict[str, Any]) -> None:
        self.__dict__.update(state)
        self.__post_init__()

    def _values(self, start: int, stop: int) -> str:
        return self.data[start:stop].tobytes().decode()


def _decoded(piece: bytes) -> str:
    try:
        return piece.decode("utf-8", "surrogatepass")  # what was a str
    except UnicodeDecodeError:
        return piece.decode("utf-8", "surrogateescape")


def _origin(offsets: Any) -> Optional[_core.NormalizedTexts]:
    """What carries the status of normalised texts, where `offsets` are a view of theirs."""
    import numpy as np

    while isinstance(offsets, (np.ndarray, memoryview)):
        offsets = offsets.base if isinstance(offsets, np.ndarray) else offsets.obj
    return offsets if isinstance(offsets, _core.NormalizedTexts) else None


def _address(array: Any) -> int:
    address: int = array.__array_interface__["data"][0]
    return address


def _status_of(offsets: Any) -> Optional[Bytes]:
    """The status of the texts that a run of the offsets of normalised texts has, None of others."""
    origin = _origin(offsets)
    if origin is None:
        return None
    import numpy as np

    run, whole = np.asarray(offsets), origin.offsets
    start, rest = divmod(_address(run) - _address(whole), whole.itemsize)
    count = max(run.size - 1, 0)
    is_row = run.ndim == 1 and (run.size < 2 or run.strides == whole.strides)
    is_inside = count == 0 or 0 <= start <= len(origin.status) - count
    if run.dtype != whole.dtype or rest != 0 or not is_row or not is_inside:
        raise ValueError(
            "these offsets are not a run of those of the normalised texts, whose status would be"
            " lost: pass a contiguous slice, or a copy for bare texts"
        )
    return origin.status[start : start + count]


def _source(texts: Texts) -> tuple[Texts, Optional[Bytes]]:
    """The texts as the extension takes them, with the status of each where they were normalised."""
    # The type is asked first: that is a tenth of the time of asking an abstract class.
    if type(texts) is TextBatch or isinstance(texts, TextBatch):
        return (texts.data, texts.offsets), texts.status
    if isinstance(texts, tuple) and len(texts) == 2:
        return texts, _status_of(texts[1])
    # An iteration would give the keys or the names of columns in the place of texts.
    if isinstance(texts, Mapping):
        raise TypeError(f"a batch takes many texts, not a mapping: {type_name(texts)}")
    if getattr(texts, "ndim", 1) > 1:
        raise TypeError(f"a batch takes texts in one dimension, not a {type_name(texts)}")
    return texts, None


# What every batch function passes on before its own options.
_Arguments = tuple[Texts, LanguageName, bool, bool, Optional[Bytes]]


def _arguments(
    texts: Texts, language: LanguageName, errors: Errors, fallback: bool
) -> _Arguments:
    import_numpy()
    if errors != "raise":
        check_errors(errors)
    source, status = _source(texts)
    return source, language, fallback, errors == "none", status


def _is_strict(strict: Optional[bool], arguments: _Arguments) -> bool:
    is_normalized = arguments[-1] is not None
    return is_normalized if strict is None else bool(strict)


def py2code_batch(
    texts: Texts,
    language: LanguageName = "mandarin",
    *,
    strict: Optional[bool] = None,
    errors: Errors = "raise",
    fallback: bool = False,
) -> CodeBatch:
    """Converts many romanised texts to syllable codes, each as `py2code` does.

    >>> py2code_batch(iter(["ni3", b"hao3"])).codes
    array([2243, 1173], dtype=uint16)

    `texts` is any iterable of str and bytes, as a list, a generator, a pandas Series or a NumPy
    array; what `normalize_batch` returns; or the pair of buffers (data, offsets) of an Arrow array
    of strings, in this order, with offsets of 32 or 64 bits, one more than there are texts.

    Letters that no longest match reaches are dropped, as `py2code` does. With ``strict=True`` a
    text that would lose any has the status LETTERS_LOST and no codes. It is the default for what
    `normalize_batch` returns: there also a text with problems keeps its status.

    >>> words = ["xx", "hello", "beijing"]
    >>> py2code_batch(words).tolist()
    [[], [1185], [105, 1415]]
    >>> py2code_batch(words, strict=True).tolist()
    [None, None, [105, 1415]]
    >>> [Status(number).name for number in py2code_batch(normalize_batch(words)).status]
    ['LETTERS_LOST', 'LETTERS_LOST', 'CONVERTED']

    The buffers of a pyarrow array are untyped bytes, in the order validity, offsets and data. NumPy
    makes offsets of them, int32 or for a large_string int64:

    >>> import numpy
    >>> offsets, data = numpy.array([0, 3, 7], numpy.int32).tobytes(), b"ni3hao3"
    >>> py2code_batch((data, numpy.frombuffer(offsets, numpy.int32))).codes
    array([2243, 1173], dtype=uint16)

    Those of an array that may be a slice are
    ``numpy.frombuffer(offsets, numpy.int32)[array.offset:][:len(array) + 1]``. The validity bitmap
    is not looked at: what is null is read as the text that its offsets span, as a rule "".

    Anything else in a text's place is a TypeError that names its index. With ``errors="none"``
    None and what differs from itself, as the NaN or NaT of any type that a Series has where a value
    is missing, are texts that failed with the status MISSING. A mapping or what has two dimensions is a TypeError too, and offsets that fall or leave
    the data are a ValueError.
    """
    arguments = _arguments(texts, language, errors, fallback)
    codes, offsets, status = _core.py2code_batch(*arguments, _is_strict(strict, arguments))
    return CodeBatch(offsets, status, codes)


def py2ph_batch(
    texts: Texts,
    language: LanguageName = "mandarin",
    *,
    strict: Optional[bool] = None,
    errors: Errors = "raise",
    fallback: bool = False,
) -> SyllableBatch:
    """Converts many romanised texts to syllables with phones, each as `py2ph` does.

    >>> py2ph_batch(["ni3hao3"]).phones
    array([14, 25, 18, 33], dtype=uint8)

    `texts`, `strict` and `errors` are as with `py2code_batch`.
    """
    arguments = _arguments(texts, language, errors, fallback)
    result = _core.py2ph_batch(*arguments, _is_strict(strict, arguments))
    phones, phone_offsets, codes, tones, offsets, status = result
    return SyllableBatch(offsets, status, phones, phone_offsets, codes, tones, language)


def pr2ph_batch(
    texts: Texts,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> IdBatch:
    """Parses many pronunciation strings into phone-id sequences, each as `pr2ph` does.

    >>> pr2ph_batch(["hh ax 0, l ow 1"], "english").ids
    array([33, 16,  0, 36, 23,  1], dtype=uint8)

    `texts` and `errors` are as with `py2code_batch`. Nothing of a text that converts is lost.
    """
    arguments = _arguments(texts, language, errors, fallback)
    ids, offsets, status = _core.pr2ph_batch(*arguments)
    return IdBatch(offsets, status, ids)


def pyw2py_batch(
    words: Texts,
    language: LanguageName = "mandarin",
    *,
    backward: bool = False,
    strict: Optional[bool] = None,
    errors: Errors = "raise",
    fallback: bool = False,
) -> PieceBatch:
    """Cuts many romanised words into their syllables, each as `pyw2py` does.

    >>> pyw2py_batch(["fangan", "xian"], backward=True).piece_offsets
    array([ 0,  3,  6, 10])

    `words`, `strict` and `errors` are as the `texts` and so on of `py2code_batch`.
    """
    arguments = _arguments(words, language, errors, fallback)
    result = _core.pyw2py_batch(*arguments, bool(backward), _is_strict(strict, arguments))
    data, piece_offsets, offsets, status = result
    return PieceBatch(offsets, status, data, piece_offsets)


def normalize_batch(
    texts: Texts,
    language: LanguageName = "mandarin",
    *,
    errors: Errors = "raise",
    fallback: bool = False,
) -> TextBatch:
    """Normalises many texts with all rules that are in use by default.

    >>> bytes(normalize_batch(["HH AH0 L OW1"], "english").data)
    b'hh ax 0, l ow 1'

    Mandarin is read as by `normalize_pinyin`, Cantonese as by `normalize_jyutping` and American
    English as by `arpabet_to_pronunciation`. A word without tones stays whole, syllables or not:
    `analyze_batch` reads it. `texts` and `errors` are as with `py2code_batch`.
    """
    arguments = _arguments(texts, language, errors, fallback)
    data, offsets, status = _core.normalize_batch(*arguments)
    return TextBatch(offsets, status, data)


def analyze_batch(
    texts: Texts,
    language: LanguageName = "mandarin",
    *,
    rules: Rules = None,
    aliases: AliasesLike = None,
    cutting: Cutting = "whole",
    errors: Errors = "raise",
    fallback: bool = False,
) -> AnalysisBatch:
    """Reads many texts as people write them, each as `analyze` does, and loses nothing of any.

    >>> batch = analyze_batch(["Nǐ hǎo", "yipinguo", "ni3 xyz"])
    >>> batch.codes, batch.offsets
    (array([2243, 1173, 3705, 2545, 1125], dtype=uint16), array([0, 2, 5, 5]))
    >>> Status(batch.status[2]), batch.problem_starts[2]
    (<Status.UNKNOWN_SYLLABLE: 2>, 4)

    Each text is converted whole or not at all: its status is 0, or the kind of its first problem.
    `rules`, `aliases` and `cutting` are as with `analyze`, `texts` and `errors` as with
    `py2code_batch`.
    """
    arguments = _arguments(texts, language, errors, fallback)
    phones, phone_offsets, codes, tones, offsets, status, starts, stops = _core.analyze_batch(
        *arguments, rule_bits(rules), core_aliases(aliases), cutting_number(cutting)
    )
    syllables = offsets, status, phones, phone_offsets, codes, tones, language
    return AnalysisBatch(*syllables, starts, stops)


def to_arrow(batch: Batch[Any]) -> Any:
    """A batch as a pyarrow array of one list (or, from `normalize_batch`, one string) a text.

    >>> to_arrow(py2code_batch(["ni3hao3", "xyz3"])).to_pylist()  # doctest: +SKIP
    [[2243, 1173], None]

    Elements are codes, phone ids, pieces, or structs of a syllable's code, tone and phones. A text
    whose status is not 0 is null. Needs pyarrow.
    """
    import_numpy()
    import numpy as np

    try:
        pa = import_pyarrow()
    except ImportError as error:
        raise ImportError("to_arrow needs pyarrow, which is not installed") from error
    if isinstance(batch, TextBatch):
        return _strings(pa, batch.data, batch.offsets, np.packbits(batch.status == 0, None, "little"))
    if isinstance(batch, CodeBatch):
        values = pa.array(batch.codes)
    elif isinstance(batch, IdBatch):
        values = pa.array(batch.ids)
    elif isinstance(batch, PieceBatch):
        values = _strings(pa, batch.data, batch.piece_offsets)
    elif isinstance(batch, SyllableBatch):
        phones = pa.LargeListArray.from_arrays(
            pa.array(batch.phone_offsets), pa.array(batch.phones)
        )
        columns = [pa.array(batch.codes), pa.array(batch.tones), phones]
        values = pa.StructArray.from_arrays(columns, names=["code", "tone", "phones"])
    else:
        raise TypeError(f"to_arrow takes what a batch function returns, not {type_name(batch)}")
    # A list whose offset is null is null itself; the last offset belongs to no list.
    is_null = np.append(batch.status != 0, False)
    return pa.LargeListArray.from_arrays(pa.array(batch.offsets, mask=is_null), values)


def _strings(pa: Any, data: Bytes, offsets: Offsets, validity: Optional[Bytes] = None) -> Any:
    buffers = [pa.py_buffer(offsets), pa.py_buffer(data)]
    bits = None if validity is None else pa.py_buffer(validity)
    return pa.LargeStringArray.from_buffers(len(offsets) - 1, *buffers, bits)
