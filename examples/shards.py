"""Converts a folder of lexicon shards on Dask workers, and loses and doubles nothing when some die.

    shards.py SHARDS OUTPUT [--workers 2 | --scheduler ADDRESS]

A shard is a file of tab-separated fields. OUTPUT gets converted/, the same lines with the syllable
codes as a new last field; rejects/, the lines that could not be read; and totals.json: what
`phoneme convert --column 2 --to codes --rejects` gives. All workers see both folders.

The status is 0 when all shards were converted, 1 when one failed, and 2 when nothing was begun.
"""

from __future__ import annotations

import argparse
import contextlib
import json
import logging
import os
import signal
import sys
import uuid
from collections import Counter
from collections.abc import Callable, Iterator, Sequence
from functools import partial
from multiprocessing import resource_tracker
from pathlib import Path
from typing import TYPE_CHECKING, BinaryIO, NoReturn, Optional

import phoneme

if TYPE_CHECKING:
    from distributed import Client

BLOCK_BYTES = 1 << 20  # of a shard that are converted at a time
LONGEST_LINE = 1 << 20  # bytes without the line end; the tool takes no longer ones
CONNECT_SECONDS = 10  # in which a scheduler answers
OWN_CONNECT_SECONDS = 3600  # the one of this process, which a busy machine can keep waiting
FAILED = "failed: "  # in totals, before what is wrong
BYTE_ORDER_MARK = b"\xef\xbb\xbf"
KINDS = {int(phoneme.Status[kind.name]): kind.value for kind in phoneme.ProblemKind}  # by status
PART = ".part"  # after the name of a file that is being written

Totals = Counter[str]  # lines by what became of them
Connection = contextlib.AbstractContextManager[Optional["Client"]]


class UsageError(ValueError):
    """What is asked for cannot be begun, and nothing was written."""


class ShardError(RuntimeError):
    """A shard could not be converted."""


@contextlib.contextmanager
def refusing(what: str) -> Iterator[None]:
    """What goes wrong before anything is begun, as an error of usage."""
    try:
        yield
    except (OSError, RuntimeError) as error:  # of a ring of links, or of Dask
        raise UsageError(f"{what}: {getattr(error, 'strerror', None) or error}") from error


def convert_texts(texts: Sequence[str | bytes], language: str) -> list[tuple[str, str]]:
    """The syllable codes of each text, and what is wrong with it.

    >>> convert_texts(["Nǐ hǎo", "yipinguo", "hoa3"], "mandarin")
    [('2243 1173', ''), ('3705 2545 1125', ''), ('', 'unknown syllable')]
    """
    batch = phoneme.analyze_batch(texts, language)
    codes, bounds = batch.codes.tolist(), batch.offsets.tolist()
    return [
        (" ".join(map(str, codes[begin:end])), KINDS.get(status, ""))
        for begin, end, status in zip(bounds, bounds[1:], batch.status.tolist())
    ]


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


def is_too_long(line: bytes) -> bool:
    return len(line) > LONGEST_LINE and len(line.removesuffix(b"\n")) > LONGEST_LINE


def convert_lines(
    lines: Sequence[bytes], language: str, column: int
) -> tuple[list[bytes], list[bytes], Totals]:
    """The lines with a new last field, the failed lines unchanged, and the totals."""
    split = [split_line(line) for line in lines]
    texts = [
        None if is_too_long(line) else text_of(content, column)
        for line, (content, _) in zip(lines, split)
    ]
    readings = iter(convert_texts([text for text in texts if text is not None], language))
    converted, rejects, totals = [], [], Totals(lines=len(split))
    for line, (content, end), text in zip(lines, split, texts):
        if is_too_long(line):
            converted.append(end)
            rejects.append(content + end)
            totals[FAILED + "line too long"] += 1
            continue
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


def read_block(source: BinaryIO) -> list[bytes]:
    """Some lines. The last can be the first part of one that is too long, which has no end."""
    lines = list[bytes]()
    size = 0
    while size < BLOCK_BYTES and (line := source.readline(LONGEST_LINE + 1)):
        lines.append(line)
        size += len(line)
        if is_too_long(line):
            break
    return lines


def copy_line(part: bytes, source: BinaryIO, target: BinaryIO) -> bytes:
    """Writes a line of which the first part has been read, and returns its end."""
    last = b""
    while part:
        target.write(part)
        last = (last + part)[-2:]
        part = b"" if last.endswith(b"\n") else source.readline(LONGEST_LINE)
    end = split_line(last)[1]
    if not last.endswith(end):
        target.write(end)
    return end


@contextlib.contextmanager
def replacing(path: Path) -> Iterator[BinaryIO]:
    """A file that takes the place of `path` when all of it is written, and not before."""
    # Its own name for each attempt: a worker that is taken for dead may still be writing.
    part = path.with_name(f".{uuid.uuid4().hex}{PART}")
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
        while lines := read_block(source):
            converted, rejects, block_totals = convert_lines(lines, language, column)
            is_open = is_too_long(lines[-1])
            rejects_file.writelines(rejects[:-1] if is_open else rejects)
            if is_open:
                converted[-1] = copy_line(lines[-1], source, rejects_file)
            converted_file.writelines(converted)
            totals.update(block_totals)
    return totals


def shard_names(shards: Path) -> list[str]:
    with refusing(f"cannot read the folder {shards}"):
        paths = [path for path in sorted(shards.iterdir()) if not path.name.startswith(".")]
        others = [path for path in paths if not path.is_file()]
    if others:  # a pipe, say, would be waited for without end
        raise UsageError(f"not a file: {others[0]}")
    if not paths:
        raise UsageError(f"no shards in {shards}")
    return [path.name for path in paths]


def written_folders(output: Path) -> list[Path]:
    return [(output / name).resolve() for name in ("converted", "rejects")]


def is_part(path: Path) -> bool:
    return path.name.startswith(".") and path.name.endswith(PART)


def check_output(shards: Path, output: Path, names: list[str]) -> None:
    """Refuses an output that would destroy shards, or mix its results with those of others. There
    may be older results of the same shards."""
    shards = shards.resolve()
    sources = {(shards / name).resolve().parent for name in names}  # a link leads elsewhere
    for folder in written_folders(output):
        if folder in sources or shards in folder.parents:
            raise UsageError(f"the output {folder} and the shards {shards} are not apart")
        for path in (folder, *folder.parents):
            if path.exists() and not path.is_dir():
                raise UsageError(f"not a folder: {path}")
        found = folder.iterdir() if folder.exists() else ()
        strangers = {path.name for path in found if not is_part(path)}.difference(names)
        if strangers:
            raise UsageError(f"{folder} holds results of other shards: {min(strangers)}")


def prepare(output: Path) -> None:
    for folder in written_folders(output):
        folder.mkdir(parents=True, exist_ok=True)
    (output / "totals.json").unlink(missing_ok=True)  # its presence means that all is done


def finish(output: Path, totals: Totals) -> None:
    """Writes the totals, and removes what workers that died have left."""
    with replacing(output / "totals.json") as file:
        file.write(json.dumps(totals, indent=2, sort_keys=True).encode() + b"\n")
    for folder in written_folders(output):
        for part in filter(is_part, folder.iterdir()):
            part.unlink(missing_ok=True)


def convert_folder(
    shards: Path,
    output: Path,
    language: str = "mandarin",
    column: int = 2,
    connection: Connection = contextlib.nullcontext(),
    progress: Callable[[int, int, Totals], None] = lambda done, count, totals: None,
) -> Totals:
    """Converts all shards, with the workers of a client of Dask or in this process."""
    names = shard_names(shards)
    no_output = f"cannot write to {output}"
    with refusing(no_output):
        check_output(shards, output, names)
    convert = partial(
        convert_shard, shards=shards, output=output, language=language, column=column
    )
    totals = Totals()
    with connection as client:
        with refusing(no_output):
            prepare(output)
        results = results_of(convert, names, client)
        for done, shard_totals in enumerate(results, start=1):
            totals.update(shard_totals)
            progress(done, len(names), totals)
    finish(output, totals)
    return totals


def results_of(
    convert: Callable[[str], Totals], names: list[str], client: Client | None
) -> Iterator[Totals]:
    """One result for each shard, in the order in which they end."""
    here = ((name, partial(convert, name)) for name in names)
    calls = here if client is None else results_on(client, convert, names)
    for name, result in calls:
        try:
            totals = result()
        except Exception as error:
            raise ShardError(f"{name}: {reason_of(error)}") from error
        yield totals


def results_on(
    client: Client, convert: Callable[[str], Totals], names: list[str]
) -> Iterator[tuple[str, Callable[[], Totals]]]:
    """Each shard once, however often it was begun, with the call that gives its result."""
    from distributed import KilledWorker, as_completed

    # Not pure: a later run on the same cluster is to write its files and not to recall results.
    futures = client.map(convert, names, pure=False, retries=2)  # type: ignore[no-untyped-call]
    shard_of = {future.key: name for future, name in zip(futures, names)}
    suspects = []
    for future in as_completed(futures):  # type: ignore[no-untyped-call]
        if future.status == "error" and isinstance(future.exception(), KilledWorker):
            suspects.append(shard_of[future.key])
        else:
            yield shard_of[future.key], future.result
    # It may have been another one on the same worker: now each is alone.
    for name in suspects:
        yield name, client.submit(convert, name, pure=False).result  # type: ignore[no-untyped-call]


def reason_of(error: Exception) -> str:
    if isinstance(error, OSError):
        return str(error)
    failures = getattr(error, "allowed_failures", None)  # of a KilledWorker
    if failures is not None:
        return f"{failures + 1} workers died that had this shard alone"
    return f"{type(error).__name__}: {error}"


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


def count_from(least: int, text: str) -> int:
    number = int(text)
    if number < least:
        raise argparse.ArgumentTypeError(f"{number} is less than {least}")
    return number


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("shards", type=Path, help="a folder of files of tab-separated fields")
    parser.add_argument("output", type=Path, help="a folder, made if it is not there")
    parser.add_argument("-l", "--language", choices=["mandarin", "cantonese"], default="mandarin")
    parser.add_argument(
        "--column", type=partial(count_from, 1), default=2, help="the field that is read, from 1"
    )
    parser.add_argument(
        "--workers", type=partial(count_from, 0), default=2, help="on this machine; 0: without Dask"
    )
    parser.add_argument("--scheduler", help="the address of a cluster, in place of workers here")
    return parser.parse_args()


def main() -> None:
    arguments = parse_arguments()
    try:
        totals = convert_folder(
            arguments.shards.absolute(),
            arguments.output.absolute(),
            arguments.language,
            arguments.column,
            connect(arguments.scheduler, arguments.workers),
            show_progress,
        )
    except UsageError as error:
        end(2, str(error))
    except (OSError, ShardError) as error:
        end(1, str(error))
    except KeyboardInterrupt:
        end(128 + signal.SIGINT, "interrupted")
    print(summary(totals))


def end(status: int, message: str) -> NoReturn:
    print(f"shards.py: {message}", file=sys.stderr)
    sys.exit(status)


@contextlib.contextmanager
def holding_interrupts() -> Iterator[None]:
    """Ctrl-C comes to this thread later, and never to the threads and processes that begin here:
    it is this process that ends the others."""
    resource_tracker.ensure_running()  # would let it through again when begun among them
    mask = signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGINT})
    try:
        yield
    finally:
        signal.pthread_sigmask(signal.SIG_SETMASK, mask)


@contextlib.contextmanager
def connect(scheduler: str | None, workers: int) -> Iterator[Client | None]:
    """A client of a cluster, or of so many processes on this machine, or nothing for none."""
    if not scheduler and not workers:
        yield None
        return
    try:
        from distributed import Client, LocalCluster
    except ImportError as error:
        raise UsageError(f"cannot import Dask: {error}") from error

    with contextlib.ExitStack() as stack:
        address, seconds = scheduler, CONNECT_SECONDS
        if not address:
            seconds = OWN_CONNECT_SECONDS
            with holding_interrupts(), refusing("cannot start workers"):
                cluster = LocalCluster(  # type: ignore[no-untyped-call]
                    n_workers=workers,
                    threads_per_worker=1,
                    processes=True,
                    dashboard_address=None,
                    scheduler_kwargs={"dashboard_address": ":0"},  # no port that may be taken
                    silence_logs=logging.CRITICAL,  # main reports what ends a run
                )
            address = stack.enter_context(cluster)
        with refusing(f"no scheduler at {address}"):
            try:
                client = Client(address, timeout=seconds)  # type: ignore[no-untyped-call]
            except ValueError as error:
                raise UsageError(f"no address of a scheduler: {address}: {error}") from error
        yield stack.enter_context(client)


if __name__ == "__main__":
    main()
