"""Measures the Python package against the library, and prints the tables of docs/performance.md.

    PYTHONPATH=BUILD/python /usr/bin/python3 benchmarks/python_benchmark.py RESULT [WORDS]

RESULT is the JSON of conversion_benchmark, the library's own times. The words are made as they are
there: 60,000 a language if not said, at random, of one to six syllables. A figure is the least CPU
time of all rounds, of threads the least time by the clock: other work on the machine only ever adds.
Where a limit is missed, this is said, and the status is 3.
"""

from __future__ import annotations

import random
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from typing import Any, Callable

import numpy as np
import phoneme
from report import judge, read

SEED = 20240601
WORDS = 60_000
MOST_SYLLABLES = 6
TIMES_AS_MANY = 5  # words for two threads, beside whose work their start is little
ROUNDS = 25
CALLS = 20_000
MOST_TIMES_LIBRARY = 2  # for a batch, beside reading the texts
MOST_NANOSECONDS = 1000  # for a single call with three syllables
LEAST_OF_TWO_THREADS = 1.7

# A batch function, the library's conversion of the same, and its languages.
BATCHES: list[tuple[Callable[..., object], str, list[str]]] = [
    (phoneme.py2code_batch, "py2code/toned", ["mandarin", "cantonese"]),
    (phoneme.py2ph_batch, "py2ph/toned", ["mandarin", "cantonese"]),
    (phoneme.pyw2py_batch, "pyw2py/forward", ["mandarin", "cantonese"]),
    (phoneme.pr2ph_batch, "pr2ph/bytes", ["mandarin", "cantonese", "english"]),
]

# Calls with three syllables.
CALLED: list[tuple[Callable[..., object], tuple[object, ...]]] = [
    (phoneme.py2code, ("ni3hao3ma5",)),
    (phoneme.py2ph, ("ni3hao3ma5",)),
    (phoneme.pyw2py, ("nihaoma",)),
    (phoneme.pr2ph, ("n i 3, h ao 3, m a 5",)),
    (phoneme.py2code, ("nei5hou2maa3", "cantonese")),
    (phoneme.py2ph, ("nei5hou2maa3", "cantonese")),
    (phoneme.pr2ph, ("t ax 0, m aa 1, t ow 0", "english")),
]

Buffers = tuple[bytes, "np.ndarray[Any, Any]"]


class Corpus:
    """Random words of a language in the notations that a batch reads."""

    def __init__(self, language: str, count: int) -> None:
        draw = random.Random(SEED)
        syllables = syllables_of(language)
        self.syllable_count = 0
        self.texts: dict[str, list[str]] = {"toned": [], "forward": [], "bytes": []}
        for _ in range(count):
            word = draw.choices(syllables, k=draw.randint(1, MOST_SYLLABLES))
            tones = draw.choices("12345", k=len(word))
            self.syllable_count += len(word)
            pieces = {
                "toned": "".join(text + tone for (text, _), tone in zip(word, tones)),
                "forward": "".join(text for text, _ in word),
                "bytes": ", ".join(f"{names} {tone}" for (_, names), tone in zip(word, tones)),
            }
            for notation, texts in self.texts.items():
                texts.append(pieces[notation])


def syllables_of(language: str) -> list[tuple[str, str]]:
    """Spellings and phone names. English, which has no table: a consonant and a vowel."""
    rows = phoneme.syllables(language)
    if not rows:
        names = [phone.name for phone in phoneme.phones(language)]
        return [("", f"{onset} {vowel}") for onset in names[17:41] for vowel in names[1:17]]
    syllables = []
    for row in rows:
        names = [phone.name for phone in (row.initial, row.final) if phone is not None]
        syllables.append((row.pinyin.lower(), " ".join(names) or "sil"))
    return syllables


def as_buffers(texts: list[str]) -> Buffers:
    sizes = [0, *(len(text) for text in texts)]
    return "".join(texts).encode(), np.cumsum(sizes, dtype=np.int64)


def least(works: list[Callable[[], object]], clock: Callable[[], float]) -> list[float]:
    """Seconds of each, one after the other in each round, so that all see the same machine."""
    seconds = [float("inf")] * len(works)
    for _ in range(ROUNDS):
        for i, work in enumerate(works):
            begin = clock()
            work()
            seconds[i] = min(seconds[i], clock() - begin)
    return seconds


def measure_batches(library: dict[str, float], count: int, missed: list[str]) -> None:
    print("| batch | language | the library | from buffers | times the library | at most |"
          " from a list | reading the list |")
    print("|---|---|---:|---:|---:|---:|---:|---:|")
    corpora = {name: Corpus(name, count) for name in ["mandarin", "cantonese", "english"]}
    for batch, conversion, languages in BATCHES:
        for language in languages:
            corpus = corpora[language]
            texts = corpus.texts[conversion.partition("/")[2]]
            buffers = as_buffers(texts)
            seconds = least([lambda: batch(buffers, language), lambda: batch(texts, language),
                             lambda: "".join(texts)], time.process_time)
            of_buffers, of_list, reading = (1e9 * s / corpus.syllable_count for s in seconds)
            own = library[f"{conversion}/{language}"]
            print(f"| `{batch.__name__}` | {language} | {own:.1f} | {of_buffers:.1f} |"
                  f" {of_buffers / own:.2f} | {MOST_TIMES_LIBRARY} | {of_list:.1f} |"
                  f" {reading:.1f} |")
            if max(of_buffers, of_list - reading) > MOST_TIMES_LIBRARY * own:
                missed.append(f"{batch.__name__} {language}")


def measure_threads(count: int, missed: list[str]) -> None:
    """Two threads with a batch each against one batch after the other."""
    print("| batch | ns a syllable, one thread | two threads, times one | at least |")
    print("|---|---:|---:|---:|")
    corpus = Corpus("mandarin", count)
    with ThreadPoolExecutor(2) as pool:
        for batch, conversion, _ in BATCHES:
            buffers = as_buffers(corpus.texts[conversion.partition("/")[2]])
            pair = [buffers, buffers]
            one, two = least([lambda: [batch(each) for each in pair],
                              lambda: list(pool.map(batch, pair))], time.perf_counter)
            scale = 1e9 / (2 * corpus.syllable_count)
            print(f"| `{batch.__name__}` | {one * scale:.1f} | {one / two:.2f} |"
                  f" {LEAST_OF_TWO_THREADS} |")
            if one / two < LEAST_OF_TWO_THREADS:
                missed.append(f"{batch.__name__} in two threads")


def measure_calls(missed: list[str]) -> None:
    print("| call | ns | at most |")
    print("|---|---:|---:|")

    def repeat(function: Callable[..., object], arguments: tuple[object, ...]) -> None:
        for _ in range(CALLS):
            function(*arguments)

    for function, arguments in CALLED:
        [seconds] = least([lambda: repeat(function, arguments)], time.process_time)
        nanoseconds = 1e9 * seconds / CALLS
        shown = ", ".join(f'"{argument}"' for argument in arguments)
        print(f"| `{function.__name__}({shown})` | {nanoseconds:.0f} | {MOST_NANOSECONDS} |")
        if nanoseconds > MOST_NANOSECONDS:
            missed.append(function.__name__)


def main() -> None:
    library, _ = read(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else WORDS
    missed: list[str] = []
    measure_batches(library, count, missed)
    print()
    measure_threads(TIMES_AS_MANY * count, missed)
    print()
    measure_calls(missed)
    judge(missed)


if __name__ == "__main__":
    main()
