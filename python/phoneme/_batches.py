"""Conversions of many texts at once, into NumPy arrays.

No Python object is made for a text or a syllable, and Python's lock is released while texts are
converted, so that threads scale over the processor's cores.
"""

from __future__ import annotations

from collections.abc import Mapping  # that of typing is slower to ask
from typing import TYPE_CHECKING, Any, Iterable, NamedTuple, Union

from phoneme import _core
from phoneme._errors import LanguageName, Text

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    Bytes = NDArray[np.uint8]
    Codes = NDArray[np.uint16]
    Tones = NDArray[np.int8]
    Offsets = NDArray[np.int64]
else:
    Bytes = Codes = Tones = Offsets = Any  # NumPy is imported by the first batch

#: An iterable of str and bytes, or the pair (data, offsets) of an Arrow array of strings.
Texts = Union[Iterable[Text], tuple[Any, Any]]


class CodeBatch(NamedTuple):
    """Syllable codes of many texts.

    >>> batch = py2code_batch(["ni3hao3", "xyz3", "ma"])
    >>> batch.codes, batch.offsets, batch.status
    (array([2243, 1173, 1945], dtype=uint16), array([0, 2, 2, 3]), array([0, 1, 0], dtype=uint8))

    The codes of text i are ``codes[offsets[i]:offsets[i + 1]]``; `status` is 0 for a text that was
    converted, and 1 for one that failed, which has no codes.
    """

    codes: Codes
    offsets: Offsets
    status: Bytes


class SyllableBatch(NamedTuple):
    """Syllables of many texts.

    >>> batch = py2ph_batch(["ni3hao3", "er2"])
    >>> batch.phones, batch.phone_offsets
    (array([14, 25, 18, 33, 39], dtype=uint8), array([0, 2, 4, 5]))
    >>> batch.codes, batch.tones, batch.offsets
    (array([2243, 1173,  842], dtype=uint16), array([3, 3, 2], dtype=int8), array([0, 2, 3]))

    The syllables of text i are those from ``offsets[i]`` to ``offsets[i + 1]``, and the phone ids
    of syllable j ``phones[phone_offsets[j]:phone_offsets[j + 1]]``. `status` is as in CodeBatch.
    """

    phones: Bytes
    phone_offsets: Offsets
    codes: Codes
    tones: Tones
    offsets: Offsets
    status: Bytes


class IdBatch(NamedTuple):
    """Phone-id sequences of many pronunciation strings.

    >>> batch = pr2ph_batch(["n i 3", "h ao"])
    >>> batch.ids, batch.offsets, batch.status
    (array([24, 35,  3], dtype=uint8), array([0, 3, 3]), array([0, 1], dtype=uint8))

    The sequence of text i is ``ids[offsets[i]:offsets[i + 1]]``. `status` is as in CodeBatch.
    """

    ids: Bytes
    offsets: Offsets
    status: Bytes


class PieceBatch(NamedTuple):
    """Pieces of many words.

    >>> batch = pyw2py_batch(["fangan", "ma"])
    >>> bytes(batch.data), batch.piece_offsets, batch.offsets
    (b'fanganma', array([0, 4, 6, 8]), array([0, 2, 3]))

    The pieces of word i are those from ``offsets[i]`` to ``offsets[i + 1]``, and the bytes of piece
    j ``data[piece_offsets[j]:piece_offsets[j + 1]]``. `status` is always 0.
    """

    data: Bytes
    piece_offsets: Offsets
    offsets: Offsets
    status: Bytes


class TextBatch(NamedTuple):
    """Texts.

    >>> batch = normalize_batch(["Nǐ hǎo", "san1 P"])
    >>> bytes(batch.data), batch.offsets, batch.status
    (b'ni3 hao3san1', array([ 0,  8, 12]), array([0, 1], dtype=uint8))

    The bytes of text i are ``data[offsets[i]:offsets[i + 1]]``. `status` is 1 for a text with
    problems, which were left out of it.
    """

    data: Bytes
    offsets: Offsets
    status: Bytes


Batch = Union[CodeBatch, SyllableBatch, IdBatch, PieceBatch, TextBatch]


def _row(texts: Texts) -> Texts:
    """The texts, unless an iteration would give the keys or the names of columns in their place."""
    if isinstance(texts, Mapping):
        raise TypeError(f"a batch takes many texts, not a mapping: {type(texts).__name__}")
    if getattr(texts, "ndim", 1) > 1:
        raise TypeError(f"a batch takes texts in one dimension, not a {type(texts).__name__}")
    return texts


def py2code_batch(texts: Texts, language: LanguageName = "mandarin") -> CodeBatch:
    """Converts many romanised texts to syllable codes, each as `py2code` does.

    >>> py2code_batch(iter(["ni3", b"hao3"])).codes
    array([2243, 1173], dtype=uint16)

    `texts` is any iterable of str and bytes, as a list, a generator, a pandas Series or a NumPy
    array; or the pair of buffers (data, offsets) of an Arrow array of strings, in this order, with
    offsets of 32 or 64 bits, one more than there are texts.

    The buffers of a pyarrow array are untyped bytes, in the order validity, offsets and data. NumPy
    makes offsets of them, int32 or for a large_string int64:

    >>> import numpy
    >>> offsets, data = numpy.array([0, 3, 7], numpy.int32).tobytes(), b"ni3hao3"
    >>> py2code_batch((data, numpy.frombuffer(offsets, numpy.int32))).codes
    array([2243, 1173], dtype=uint16)

    Those of an array that may be a slice are
    ``numpy.frombuffer(offsets, numpy.int32)[array.offset:][:len(array) + 1]``. The validity bitmap
    is not looked at: what is null is read as the text that its offsets span, as a rule "".

    Anything else in a text's place, also None or NaN, is a TypeError that names its index, as is a
    mapping or what has two dimensions, and offsets that fall or leave the data are a ValueError.
    """
    return CodeBatch(*_core.py2code_batch(_row(texts), language))


def py2ph_batch(texts: Texts, language: LanguageName = "mandarin") -> SyllableBatch:
    """Converts many romanised texts to syllables with phones, each as `py2ph` does.

    >>> py2ph_batch(["ni3hao3"]).phones
    array([14, 25, 18, 33], dtype=uint8)

    `texts` is as with `py2code_batch`.
    """
    return SyllableBatch(*_core.py2ph_batch(_row(texts), language))


def pr2ph_batch(texts: Texts, language: LanguageName = "mandarin") -> IdBatch:
    """Parses many pronunciation strings into phone-id sequences, each as `pr2ph` does.

    >>> pr2ph_batch(["hh ax 0, l ow 1"], "english").ids
    array([33, 16,  0, 36, 23,  1], dtype=uint8)

    `texts` is as with `py2code_batch`.
    """
    return IdBatch(*_core.pr2ph_batch(_row(texts), language))


def pyw2py_batch(
    words: Texts, language: LanguageName = "mandarin", *, backward: bool = False
) -> PieceBatch:
    """Cuts many romanised words into their syllables, each as `pyw2py` does.

    >>> pyw2py_batch(["fangan", "xian"], backward=True).piece_offsets
    array([ 0,  3,  6, 10])

    `words` is as the texts of `py2code_batch`.
    """
    return PieceBatch(*_core.pyw2py_batch(_row(words), language, bool(backward)))


def normalize_batch(texts: Texts, language: LanguageName = "mandarin") -> TextBatch:
    """Normalises many texts with all rules that are in use by default.

    >>> bytes(normalize_batch(["HH AH0 L OW1"], "english").data)
    b'hh ax 0, l ow 1'

    Mandarin is read as by `normalize_pinyin`, Cantonese as by `normalize_jyutping` and American
    English as by `arpabet_to_pronunciation`; an unregistered language is read as Mandarin. `texts`
    is as with `py2code_batch`.
    """
    return TextBatch(*_core.normalize_batch(_row(texts), language))


def to_arrow(batch: Batch) -> Any:
    """A batch as a pyarrow array of one list (or, from `normalize_batch`, one string) a text.

    >>> to_arrow(py2code_batch(["ni3hao3", "xyz3"])).to_pylist()  # doctest: +SKIP
    [[2243, 1173], None]

    Elements are codes, phone ids, pieces, or structs of a syllable's code, tone and phones. A text
    that failed is null; a text with problems keeps what was placed. Needs pyarrow.
    """
    try:
        import numpy as np
        import pyarrow as pa
    except ImportError as error:
        raise ImportError("to_arrow needs pyarrow, which is not installed") from error
    if isinstance(batch, TextBatch):
        return _strings(pa, batch.data, batch.offsets)
    if isinstance(batch, CodeBatch):
        values = pa.array(batch.codes)
    elif isinstance(batch, IdBatch):
        values = pa.array(batch.ids)
    elif isinstance(batch, PieceBatch):
        values = _strings(pa, batch.data, batch.piece_offsets)
    else:
        phones = pa.LargeListArray.from_arrays(
            pa.array(batch.phone_offsets), pa.array(batch.phones)
        )
        columns = [pa.array(batch.codes), pa.array(batch.tones), phones]
        values = pa.StructArray.from_arrays(columns, names=["code", "tone", "phones"])
    # A list whose offset is null is null itself; the last offset belongs to no list.
    is_null = np.append(batch.status != 0, False)
    return pa.LargeListArray.from_arrays(pa.array(batch.offsets, mask=is_null), values)


def _strings(pa: Any, data: Bytes, offsets: Offsets) -> Any:
    buffers = [pa.py_buffer(offsets), pa.py_buffer(data)]
    return pa.LargeStringArray.from_buffers(len(offsets) - 1, *buffers)
