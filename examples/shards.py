"""Converts a folder of lexicon shards on Dask workers, and loses and doubles nothing when some die.

    shards.py SHARDS OUTPUT [--workers 2 | --scheduler ADDRESS]

A shard is a file of tab-separated fields. OUTPUT gets converted/, the same lines with the syllable
codes as a new last field; rejects/, the lines that could not be read; and totals.json: what
`phoneme convert --column 2 --to codes --rejects` gives. All workers see both folders.
"""

from __future__ import annotations

import argparse
import contextlib
import json
import os
import sys
import uuid
from collections import Counter
from collections.abc import Callable, Iterable, Iterator, Sequence
from functools import partial
from pathlib import Path
from typing import TYPE_CHECKING, BinaryIO

import numpy as np
import phoneme

if TYPE_CHECKING:
    from distributed import Client

BLOCK_BYTES = 1 << 24  # of a shard that are in memory at a time
FAILED = "failed: "  # in totals, in front of what is wrong
BYTE_ORDER_MARK = b"\xef\xbb\xbf"
PART = ".part"  # behind the name of a file that is being written

Totals = Counter[str]  # lines by what became of them


def convert_texts(texts: Sequence[str | bytes], language: str) -> list[tuple[str, str]]:
    """The syllable codes of each text, and what is wrong with it.

    >>> convert_texts(["Nǐ hǎo", "yipinguo", "hoa3"], "mandarin")
    [('2243 1173', ''), ('3705 2545 1125', ''), ('', 'unknown syllable')]
    """
    normalized = phoneme.normalize_batch(texts, language)
    batch = phoneme.py2code_batch((normalized.data, normalized.offsets), language)
    is_digit = (normalized.data >= ord("0")) & (normalized.data <= ord("9"))
    digits_before = np.concatenate([[0], np.cumsum(is_digit)])
    has_tones = np.diff(digits_before[normalized.offsets]) > 0
    is_read = has_tones & (normalized.status == 0) & (batch.status == 0)

    codes, bounds = batch.codes.tolist(), batch.offsets.tolist()
    readings = [(" ".join(map(str, codes[i:j])), "") for i, j in zip(bounds, bounds[1:])]
    # The others may be words without tones, which want cutting, or have problems to be told.
    for index in np.flatnonzero(~is_read).tolist():
        readings[index] = analyze_text(texts[index], language)
    return readings


def analyze_text(text: str | bytes, language: str) -> tuple[str, str]:
    analysis = phoneme.analyze(text, language)
    if analysis.problems:
        return "", analysis.problems[0].kind.value
    return " ".join(str(read.syllable.code) for read in analysis.syllables), ""


def split_line(line: bytes) -> tuple[bytes, bytes]:
    """What a line holds, and its end."""
    if line.endswith(b"\r\n"):
        return line[:-2], b"\r\n"
    return line[:-1] if line.endswith(b"\n") else line, b"\n"


def text_of(content: bytes, column: int) -> bytes | None:
    """The field of a line that is read; None for a comment and where the line ends before it."""
    fields = content.split(b"\t", column)
    return fields[column - 1] if len(fields) >= column and not is_comment(content) else None


def is_comment(content: bytes) -> bool:
    return content.startswith(b"# ")


def convert_lines(
    lines: Iterable[bytes], language: str, column: int
) -> tuple[list[bytes], list[bytes], Totals]:
    """The lines with a new last field, those that failed as they stand, and the totals."""
    split = [split_line(line) for line in lines]
    texts = [text_of(content, column) for content, _ in split]
    readings = iter(convert_texts([text for text in texts if text is not None], language))
    converted, rejects, totals = [], [], Totals(lines=len(split))
    for (content, end), text in zip(split, texts):
        if is_comment(content):
            converted.append(content + end)
            totals["comments"] += 1
            continue
        codes, problem = ("", "not an entry") if text is None else next(readings)
        converted.append(content + b"\t" + codes.encode() + end)
        totals[FAILED + problem if problem else "converted"] += 1
        if problem:
            rejects.append(content + end)
    return converted, rejects, totals


@contextlib.contextmanager
def replacing(path: Path) -> Iterator[BinaryIO]:
    """A file that takes the place of `path` when all of it is written, and not before."""
    # Its own name for each attempt: a worker that is taken for dead may still be writing.
    part = path.with_name(f".{path.name}.{uuid.uuid4().hex}{PART}")
    try:
        with part.open("xb") as file:
            yield file
            file.flush()
            os.fsync(file.fileno())
        part.replace(path)
    finally:
        part.unlink(missing_ok=True)


def convert_shard(name: str, shards: Path, output: Path, language: str, column: int) -> Totals:
    """Converts a shard. Done twice, it leaves the same files and returns the same totals."""
    totals = Totals()
    with contextlib.ExitStack() as stack:
        source = stack.enter_context((shards / name).open("rb"))
        rejects_file = stack.enter_context(replacing(output / "rejects" / name))
        converted_file = stack.enter_context(replacing(output / "converted" / name))
        if source.read(len(BYTE_ORDER_MARK)) != BYTE_ORDER_MARK:
            source.seek(0)
        while lines := source.readlines(BLOCK_BYTES):
            converted, rejects, block_totals = convert_lines(lines, language, column)
            converted_file.writelines(converted)
            rejects_file.writelines(rejects)
            totals.update(block_totals)
    return totals


def shard_names(shards: Path) -> list[str]:
    names = sorted(path.name for path in shards.iterdir() if not path.name.startswith("."))
    if not names:
        sys.exit(f"no shards in {shards}")
    return names


def prepare(output: Path, names: list[str]) -> None:
    """Makes the folders of the output, in which there may be older results of the same shards."""
    for folder in (output / "converted", output / "rejects"):
        folder.mkdir(parents=True, exist_ok=True)
        strangers = {path.name for path in folder.iterdir() if not path.name.endswith(PART)}
        if strangers.difference(names):
            sys.exit(f"{folder} holds results of other shards: {min(strangers.difference(names))}")
    (output / "totals.json").unlink(missing_ok=True)  # it tells that all is done


def finish(output: Path, totals: Totals) -> None:
    """Writes the totals, and removes what workers that died have left."""
    with replacing(output / "totals.json") as file:
        file.write(json.dumps(totals, indent=2, sort_keys=True).encode() + b"\n")
    for part in output.glob(f"*/.*{PART}"):
        part.unlink(missing_ok=True)


def convert_folder(
    shards: Path,
    output: Path,
    language: str = "mandarin",
    column: int = 2,
    client: Client | None = None,
    progress: Callable[[int, int, Totals], None] = lambda done, count, totals: None,
) -> Totals:
    """Converts all shards, with the workers of `client` or in this process."""
    names = shard_names(shards)
    prepare(output, names)
    convert = partial(
        convert_shard, shards=shards, output=output, language=language, column=column
    )
    results = map(convert, names) if client is None else results_of(client, convert, names)
    totals = Totals()
    for done, shard_totals in enumerate(results, start=1):
        totals.update(shard_totals)
        progress(done, len(names), totals)
    finish(output, totals)
    return totals


def results_of(
    client: Client, convert: Callable[[str], Totals], names: list[str]
) -> Iterator[Totals]:
    """One result for each shard, however often it was begun, in the order in which they end."""
    from distributed import as_completed

    # Not pure: a later run on the same cluster is to write its files and not to recall results.
    futures = client.map(convert, names, pure=False, retries=2)
    for _, totals in as_completed(futures, with_results=True):
        yield totals


def show_progress(done: int, count: int, totals: Totals) -> None:
    is_terminal = sys.stderr.isatty()
    begin, end = ("\r", "\n" if done == count else "") if is_terminal else ("", "\n")
    text = f"{begin}{done} of {count} shards, {totals['lines']} lines"
    print(text, end=end, file=sys.stderr, flush=True)


def summary(totals: Totals) -> str:
    kinds = {key[len(FAILED) :]: n for key, n in sorted(totals.items()) if key.startswith(FAILED)}
    text = f"{totals['lines']} lines: {totals['converted']} converted"
    text += f", {totals['comments']} comments, {sum(kinds.values())} failed"
    return text + (f" ({', '.join(f'{kind} {n}' for kind, n in kinds.items())})" if kinds else "")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("shards", type=Path, help="a folder of files of tab-separated fields")
    parser.add_argument("output", type=Path, help="a folder, made if it is not there")
    parser.add_argument("-l", "--language", choices=["mandarin", "cantonese"], default="mandarin")
    parser.add_argument("--column", type=int, default=2, help="the field that is read, from 1")
    parser.add_argument("--workers", type=int, default=2, help="on this machine; 0: without Dask")
    parser.add_argument("--scheduler", help="the address of a cluster, in place of workers here")
    arguments = parser.parse_args()
    if arguments.column < 1:
        parser.error("columns are counted from 1")

    with contextlib.ExitStack() as stack:
        client = None
        if arguments.scheduler or arguments.workers:
            client = stack.enter_context(connect(arguments.scheduler, arguments.workers))
        totals = convert_folder(
            arguments.shards.resolve(),
            arguments.output.resolve(),
            arguments.language,
            arguments.column,
            client,
            show_progress,
        )
    print(summary(totals))


@contextlib.contextmanager
def connect(scheduler: str | None, workers: int) -> Iterator[Client]:
    from distributed import Client, LocalCluster

    with contextlib.ExitStack() as stack:
        address = scheduler or stack.enter_context(
            LocalCluster(
                n_workers=workers, threads_per_worker=1, processes=True, dashboard_address=None
            )
        )
        yield stack.enter_context(Client(address))


if __name__ == "__main__":
    main()
