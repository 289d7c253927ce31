"""The engines of docs/scale.md on this machine: processes of Dask, one of them killed, and GNU
parallel. What they write is compared, byte for byte, with what the tool writes by itself."""

from __future__ import annotations

import importlib
import io
import json
import os
import re
import shlex
import signal
import subprocess
import sys
import time
from collections import Counter
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(PROJECT / "examples"))  # for the workers as well
example: Any = importlib.import_module("shards")

WORKERS = 2
SHARDS = 24
LINES = 6000  # of a shard

# Lines that are written or read in a way of their own.
ODD_LINES = (
    "\ufeff# a comment behind a byte order mark\n"
    "word\tni3hao3\tmore\n"
    "word\tNǐ hǎo\r\n"
    "word\tyipinguo\n"
    "word\t\n"
    "\n"
    "no field\n"
    "# a comment\tni3\n"
    "word\thoa3 PK\n"
    "word\tng2\r\r\n"
    "word\tni3\rhao3\n"
    "word\thello\n"
    "word\tni3"
).encode() + b"\xff\n\tni3\0hao3\nlast\tni3"


def lines_of(content: bytes) -> list[bytes]:
    """Lines end with LF alone, unlike those of splitlines."""
    return list(io.BytesIO(content))


@pytest.fixture(scope="module")
def lines() -> list[bytes]:
    return lines_of((PROJECT / "data" / "mandarin.tsv").read_bytes())


@pytest.fixture(scope="module")
def shards(tmp_path_factory: pytest.TempPathFactory, lines: list[bytes]) -> Path:
    folder = tmp_path_factory.mktemp("shards")
    assert len(lines) > 2000
    for index in range(SHARDS):
        begin = index * 101 % len(lines)
        content = (lines * 4)[begin : begin + LINES]
        (folder / f"{index:02}.tsv").write_bytes(b"".join(content))
    (folder / "odd.tsv").write_bytes(ODD_LINES)
    return folder


@pytest.fixture(scope="module")
def plain(tmp_path_factory: pytest.TempPathFactory, shards: Path) -> Path:
    """What a run in this process writes."""
    output = tmp_path_factory.mktemp("plain")
    example.convert_folder(shards, output)
    return output


def is_running(process: int) -> bool:
    try:
        os.kill(process, 0)
    except ProcessLookupError:
        return False
    return True


def wait_until_gone(processes: set[int]) -> None:
    end = time.monotonic() + 20
    while any(map(is_running, processes)):
        assert time.monotonic() < end, f"still there: {sorted(filter(is_running, processes))}"
        time.sleep(0.05)


@pytest.fixture(scope="module")
def client() -> Iterator[Any]:
    with example.connect(None, WORKERS) as client:
        yield client
        client.wait_for_workers(WORKERS)  # until one that was killed has its successor
        processes = set(client.run(os.getpid).values())
        assert len(processes) == WORKERS
    wait_until_gone(processes)


def files_in(folder: Path) -> dict[str, bytes]:
    paths = (path for path in folder.rglob("*") if path.is_file())
    return {str(path.relative_to(folder)): path.read_bytes() for path in paths}


def test_writes_what_the_tool_writes(
    tool: str, shards: Path, plain: Path, tmp_path: Path
) -> None:
    convert = [tool, "convert", "-q", "-l", "mandarin", "--column", "2", "--to", "codes"]
    rejects = tmp_path / "rejects"
    for name in ("00.tsv", "07.tsv", "odd.tsv"):
        command = [*convert, "--rejects", str(rejects), "-i", str(shards / name)]
        result = subprocess.run(command, capture_output=True)
        assert result.returncode == 1
        assert (plain / "converted" / name).read_bytes() == result.stdout
        assert (plain / "rejects" / name).read_bytes() == rejects.read_bytes() != b""


def counted_by(tool: str, path: Path) -> Counter[str]:
    """What the tool says at its end: "3 lines: 1 converted (diaeresis 1), 1 empty or comments, 1
    failed (bad tone 1)"."""
    command = [tool, "convert", "-l", "mandarin", "--column", "2", "--to", "codes", "-i", str(path)]
    messages = subprocess.run(command, capture_output=True).stderr
    text = lines_of(messages)[-1].decode().replace(" empty or ", " ")
    counts = Counter({name: int(count) for count, name in re.findall(r"(\d+) (\w+)", text)})
    _, _, kinds = text.partition(f"{counts.pop('failed')} failed")
    for kind, count in re.findall(r"([a-z][\w -]*) (\d+)", kinds):
        counts[example.FAILED + kind] = int(count)
    return counts


def test_counts_what_the_tool_counts(tool: str, shards: Path, plain: Path) -> None:
    expected: Counter[str] = Counter()
    for path in shards.iterdir():
        expected.update(counted_by(tool, path))
    totals = json.loads((plain / "totals.json").read_text())
    assert {key: expected[key] for key in totals} == totals
    assert sum(expected[key] for key in totals) == 2 * totals["lines"]
    assert len([key for key in totals if key.startswith(example.FAILED)]) >= 4


def test_loses_and_doubles_nothing_when_a_worker_is_killed(
    client: Any, shards: Path, plain: Path, tmp_path: Path
) -> None:
    before = client.run(os.getpid)
    killed: set[int] = set()

    def kill_one(done: int, count: int, totals: Any) -> None:
        if done < 4 or killed:
            return
        at_work = [address for address, tasks in client.processing().items() if tasks]
        assert at_work and done < count
        killed.add(before[at_work[0]])
        os.kill(before[at_work[0]], signal.SIGKILL)

    totals = example.convert_folder(shards, tmp_path, client=client, progress=kill_one)
    assert len(killed) == 1
    wait_until_gone(killed)
    assert totals["lines"] == SHARDS * LINES + len(lines_of(ODD_LINES))
    assert files_in(tmp_path) == files_in(plain)
    assert len(files_in(plain)) == 2 * (SHARDS + 1) + 1


def test_a_cluster_by_its_address(
    client: Any, shards: Path, plain: Path, tmp_path: Path
) -> None:
    # The program's own functions go to workers that do not have it.
    address = client.cluster.scheduler_address
    program = str(PROJECT / "examples" / "shards.py")
    command = [sys.executable, program, str(shards), str(tmp_path), "--scheduler", address]
    result = subprocess.run(command, cwd=tmp_path, capture_output=True)
    assert result.returncode == 0, result.stderr.decode()
    # On a busy machine Dask has something to say as well.
    steps = re.findall(rb"^(\d+) of (\d+) shards, \d+ lines$", result.stderr, re.MULTILINE)
    assert steps == [(b"%d" % n, b"%d" % (SHARDS + 1)) for n in range(1, SHARDS + 2)]
    assert files_in(tmp_path) == files_in(plain)


def run(command: str, folder: Path, tool: str) -> subprocess.CompletedProcess[bytes]:
    path = f"{Path(tool).parent}{os.pathsep}{os.environ['PATH']}"
    # A home of its own, as parallel keeps a folder there.
    environment = {**os.environ, "PATH": path, "LC_ALL": "C.UTF-8", "HOME": str(folder)}
    return subprocess.run(
        ["sh", "-c", command], cwd=folder, env=environment, capture_output=True
    )


# `{}` takes the options that say what is read and how it is cut into blocks.
CONVERT = "phoneme convert -q -l mandarin --column 2 --to codes"
PARALLEL = "parallel {} -k -j2 " + CONVERT + " --rejects 'rejects/{{#}}'"


@pytest.mark.parametrize(
    "blocks",
    [
        "--pipe --block 100k <lexicon.tsv",
        "--pipe --block 400k <lexicon.tsv",
        "--pipe -N 1000 <lexicon.tsv",
        "--pipepart -a lexicon.tsv --block 300k",
    ],
)
def test_a_pipeline_with_gnu_parallel(
    tool: str, shards: Path, tmp_path: Path, blocks: str
) -> None:
    names = ("odd.tsv", "03.tsv", "04.tsv")  # the byte order mark begins the file
    lexicon = b"".join((shards / name).read_bytes() + b"\n" for name in names)
    (tmp_path / "lexicon.tsv").write_bytes(lexicon)
    (tmp_path / "rejects").mkdir()
    alone = run(f"{CONVERT} --rejects rejects.tsv <lexicon.tsv", tmp_path, tool)
    spread = run(PARALLEL.format(blocks), tmp_path, tool)
    rejects = sorted((tmp_path / "rejects").iterdir(), key=lambda path: int(path.name))
    assert len(rejects) >= 2
    assert spread.stdout == alone.stdout
    assert len(lines_of(alone.stdout)) == len(lines_of(lexicon))
    whole = b"".join(path.read_bytes() for path in rejects)
    assert whole == (tmp_path / "rejects.tsv").read_bytes() != b""
    assert spread.returncode == sum(path.stat().st_size > 0 for path in rejects)


def test_the_commands_of_the_document(tool: str, tmp_path: Path) -> None:
    interpreter = tmp_path / "python3"
    interpreter.write_text(f'#!/bin/sh\nexec {shlex.quote(sys.executable)} "$@"\n')
    interpreter.chmod(0o755)
    examples = PROJECT / "tests" / "tool" / "examples.sh"
    command = f'PATH=$PWD:$PATH {examples} "{tool}" "{PROJECT}" docs/scale.md'
    result = run(command, tmp_path, tool)
    assert result.returncode == 0, (result.stdout + result.stderr).decode()
    shown = re.search(rb"docs/scale.md: (\d+) examples", result.stdout)
    assert shown and int(shown[1]) >= 8
