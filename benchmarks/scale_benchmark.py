"""Measures the ways of docs/scale.md with one and two workers, and prints its table.

    PYTHONPATH=BUILD/python /usr/bin/python3 benchmarks/scale_benchmark.py TOOL [LINES]

The lines are those of data/mandarin.tsv again and again, a million if not said, in 16 shards. What
each way writes is compared with what the tool writes by itself. A time is the least of three runs:
other work on the machine only ever adds. A cluster is started, and has run once, before the clock.
"""

from __future__ import annotations

import argparse
import contextlib
import itertools
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from typing import Any, Callable

PROJECT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(PROJECT / "examples"))

import shards as example  # noqa: E402

LEXICON = PROJECT / "data" / "mandarin.tsv"
SHARDS = 16
RUNS = 3
BLOCK = "4M"  # for GNU parallel; large enough that starting the tool is little


def make_lexicon(folder: Path, count: int) -> Path:
    """One file of all lines, and the same lines as shards, one after the other."""
    lines = [line for line in LEXICON.read_bytes().splitlines(True) if not line.startswith(b"# ")]
    whole = folder / "lexicon.tsv"
    (folder / "shards").mkdir()
    source = itertools.islice(itertools.cycle(lines), count)
    with whole.open("wb") as file:
        for shard in range(SHARDS):
            size = (shard + 1) * count // SHARDS - shard * count // SHARDS
            content = b"".join(itertools.islice(source, size))
            (folder / "shards" / f"{shard:02}.tsv").write_bytes(content)
            file.write(content)
    return whole


class Measurement:
    def __init__(self, tool: str, folder: Path, count: int) -> None:
        self.count = count
        self.folder = folder
        self.whole = make_lexicon(folder, count)
        self.convert = [tool, "convert", "-q", "-l", "mandarin", "--column", "2", "--to", "codes"]
        self.result = folder / "result.tsv"
        self.run(self.convert)
        self.expected = self.result.read_bytes()

    def run(self, command: list[str]) -> None:
        """From the lexicon to the result. Lines that fail make the status another one than 0."""
        with self.whole.open("rb") as source, self.result.open("wb") as result:
            subprocess.run(command, stdin=source, stdout=result, stderr=subprocess.DEVNULL)

    def command(self, command: list[str]) -> float:
        return self.measure(lambda: self.run(command), self.result.read_bytes)

    def tool(self, workers: int) -> float:
        return self.command([*self.convert, "-j", str(workers)])

    def pipe(self, workers: int) -> float:
        parallel = ["parallel", "--will-cite", "--pipe", "--block", BLOCK, "-k", "-j", str(workers)]
        return self.command([*parallel, *self.convert])

    def pipe_part(self, workers: int) -> float:
        parallel = ["parallel", "--will-cite", "--pipepart", "-a", str(self.whole)]
        return self.command(
            [*parallel, "--block", BLOCK, "-k", "-j", str(workers), *self.convert]
        )

    def process(self, workers: int) -> float:
        assert workers == 1
        return self.measure(lambda: self.run_shards(None), self.read_shards)

    def dask(self, workers: int) -> float:
        with example.connect(None, workers) as client:
            self.run_shards(client)
            return self.measure(lambda: self.run_shards(client), self.read_shards)

    def run_shards(self, client: Any) -> None:
        connection = contextlib.nullcontext(client)
        shards, output = self.folder / "shards", self.folder / "output"
        example.convert_folder(shards, output, connection=connection)

    def read_shards(self) -> bytes:
        paths = sorted((self.folder / "output" / "converted").iterdir())
        return b"".join(path.read_bytes() for path in paths)

    def measure(self, run: Callable[[], None], read: Callable[[], bytes]) -> float:
        """Lines a second."""
        times = []
        for _ in range(RUNS):
            begin = time.monotonic()
            run()
            times.append(time.monotonic() - begin)
        if read() != self.expected:
            sys.exit("what was written is not what the tool writes")
        return self.count / min(times)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("tool", type=Path, help="the tool phoneme")
    parser.add_argument("lines", type=int, nargs="?", default=1_000_000)
    arguments = parser.parse_args()
    count = arguments.lines
    if count < SHARDS:
        parser.error(f"expected a line for each of {SHARDS} shards")
    if not os.access(arguments.tool, os.X_OK):
        parser.error(f"no program: {arguments.tool}")
    with tempfile.TemporaryDirectory() as name:
        measurement = Measurement(str(arguments.tool.resolve()), Path(name), count)
        rows = [
            ("the tool, `-j`", measurement.tool, True),
            ("GNU parallel `--pipe -k`", measurement.pipe, True),
            ("GNU parallel `--pipepart -k`", measurement.pipe_part, True),
            ("`examples/shards.py --workers 0`", measurement.process, False),
            ("`examples/shards.py` on Dask", measurement.dask, True),
        ]
        print("| way | 1 worker, lines a second | 2 workers, lines a second | times 1 |")
        print("|---|---:|---:|---:|")
        for label, measure, is_parallel in rows:
            one = measure(1)
            two = measure(2) if is_parallel else None
            more = f"{two:,.0f} | {two / one:.2f}" if two else "| "
            print(f"| {label} | {one:,.0f} | {more} |", flush=True)
    megabytes = len(measurement.expected) / 1e6
    print(f"\n{count:,} lines, {megabytes:.0f} MB written; {os.cpu_count()} cores.")


if __name__ == "__main__":
    main()
