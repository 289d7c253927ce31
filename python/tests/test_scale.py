"""The engines of docs/scale.md on this machine: processes of Dask, one of them killed, and GNU
parallel. What they write is compared, byte for byte, with what the tool writes by itself."""

from __future__ import annotations

import contextlib
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

import dask
import pytest

PROJECT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(PROJECT / "examples"))  # for the workers as well
example: Any = importlib.import_module("shards")

WORKERS = 2
ALLOWED_DEATHS = 1  # of workers that had a task; 3 is Dask's default
SHARDS = 24
LINES = 6000  # of a shard
LONGEST = 600  # seconds until what hangs is a failure: on a busy machine all takes long

# Lines that are written or read in a way of their own.
ODD_LINES = (
    "\ufeff# a comment after a byte order mark\n"
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
).encode() + b"\xff\n\tni3\0hao3\n"


def long_line(begin: str, more: int = 0) -> bytes:
    """A line as long as the tool takes them, or so many bytes more."""
    return begin.encode().ljust(example.LONGEST_LINE + more, b"x")


ODD_LINES += b"".join(
    (
        long_line("word\tni3\t") + b"\n",
        long_line("word\tni3\t", 1) + b"\n",
        long_line("word\tni3\t", -1) + b"\r\n",  # a carriage return counts
        long_line("word\tni3\t") + b"\r\n",
        long_line("# a comment") + b"\n",
        long_line("# no comment\tni3\t", 1) + b"\n",
        long_line("word\tni3\t", 2 * example.LONGEST_LINE) + b"\n",
        b"last\tni3",
    )
)
ODD_SHARDS = {
    "odd.tsv": ODD_LINES,
    "mark.tsv": b"\xef\xbb\xbf" + long_line("word\tni3\t") + b"\nword\tni3\n",
    "open.tsv": b"word\tni3\n" + long_line("word\tni3\t", 2 * example.LONGEST_LINE),
}


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
        some = (lines * 4)[begin : begin + LINES]
        (folder / f"{index:02}.tsv").write_bytes(b"".join(some))
    for name, content in ODD_SHARDS.items():
        (folder / name).write_bytes(content)
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
    end = time.monotonic() + LONGEST
    while any(map(is_running, processes)):
        assert time.monotonic() < end, f"still there: {sorted(filter(is_running, processes))}"
        time.sleep(0.05)


@pytest.fixture(scope="module")
def client(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Any]:
    # What Dask wants of a worker that has just died, it waits for no longer than this.
    limits = {
        "distributed.comm.timeouts.connect": "10s",
        "distributed.scheduler.allowed-failures": ALLOWED_DEATHS,
        "temporary-directory": str(tmp_path_factory.mktemp("dask")),
    }
    with dask.config.set(limits), example.connect(None, WORKERS) as client:
        yield client
        client.wait_for_workers(WORKERS, LONGEST)  # until one that was killed has its successor
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
    for name in ("00.tsv", "07.tsv", *ODD_SHARDS):
        command = [*convert, "--rejects", str(rejects), "-i", str(shards / name)]
        result = subprocess.run(command, capture_output=True)
        assert result.returncode == (0 if name == "mark.tsv" else 1)
        # Without the difference, which is long to tell.
        assert ((plain / "converted" / name).read_bytes() == result.stdout) is True, name
        assert ((plain / "rejects" / name).read_bytes() == rejects.read_bytes()) is True, name


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
    assert len([key for key in totals if key.startswith(example.FAILED)]) >= 5
    assert totals[example.FAILED + "line too long"] == 5


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

    connection = contextlib.nullcontext(client)
    totals = example.convert_folder(shards, tmp_path, connection=connection, progress=kill_one)
    assert len(killed) == 1
    wait_until_gone(killed)
    odd_lines = sum(len(lines_of(content)) for content in ODD_SHARDS.values())
    assert totals["lines"] == SHARDS * LINES + odd_lines
    assert (files_in(tmp_path) == files_in(plain)) is True
    assert len(files_in(plain)) == 2 * (SHARDS + len(ODD_SHARDS)) + 1


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
    count = SHARDS + len(ODD_SHARDS)
    assert steps == [(b"%d" % n, b"%d" % count) for n in range(1, count + 1)]
    assert (files_in(tmp_path) == files_in(plain)) is True


def test_names_the_shard_that_kills_its_workers(
    client: Any,
    tmp_path: Path,
    monkeypatch: pytest.MonkeyPatch,
    capsys: pytest.CaptureFixture[str],
) -> None:
    (tmp_path / "shards").mkdir()
    for index in range(20):
        (tmp_path / "shards" / f"{index:02}").write_text("word\tni3\n")
    deaths = tmp_path / "deaths"
    convert = example.convert_shard

    def kill(name: str, **arguments: Any) -> Any:
        if name == "07":
            with deaths.open("a") as file:
                file.write("one\n")
            time.sleep(0.5)  # Dask gives no successor to a worker that it does not know yet
            os.kill(os.getpid(), signal.SIGKILL)
        return convert(name, **arguments)

    monkeypatch.setattr(example, "convert_shard", kill)
    command = ["shards.py", str(tmp_path / "shards"), str(tmp_path / "output")]
    address = client.cluster.scheduler_address
    monkeypatch.setattr(sys, "argv", [*command, "--scheduler", address])
    with pytest.raises(SystemExit) as end:
        example.main()
    assert end.value.code == 1
    assert capsys.readouterr().err.splitlines()[-1] == (
        f"shards.py: 07: {ALLOWED_DEATHS + 1} workers died that had this shard alone"
    )
    assert deaths.read_text() == "one\n" * 2 * (ALLOWED_DEATHS + 1)
    assert not (tmp_path / "output" / "converted" / "07").exists()
    assert not (tmp_path / "output" / "totals.json").exists()


def environment_of_dask(folder: Path) -> dict[str, str]:
    """Its files are nobody else's: it reports what workers that were killed have left there."""
    return {**os.environ, "DASK_TEMPORARY_DIRECTORY": str(folder)}


def test_ctrl_c_ends_all_processes_in_one_line(shards: Path, tmp_path: Path) -> None:
    program = str(PROJECT / "examples" / "shards.py")
    process = subprocess.Popen(
        [sys.executable, program, str(shards), str(tmp_path / "output")],
        stderr=subprocess.PIPE,
        start_new_session=True,
        env=environment_of_dask(tmp_path),
    )
    assert process.stderr is not None
    first = process.stderr.readline()
    os.killpg(process.pid, signal.SIGINT)  # as a terminal does
    rest = lines_of(process.communicate(timeout=LONGEST)[1])
    assert process.returncode == 130
    assert [line for line in [first, *rest] if b" shards, " not in line] == [
        b"shards.py: interrupted\n"
    ]
    assert not (tmp_path / "output" / "totals.json").exists()


def run(command: str, folder: Path, tool: str) -> subprocess.CompletedProcess[bytes]:
    path = f"{Path(tool).parent}{os.pathsep}{os.environ['PATH']}"
    # A home of its own, as parallel keeps a folder there.
    environment = {**environment_of_dask(folder), "PATH": path}
    environment.update({"LC_ALL": "C.UTF-8", "HOME": str(folder)})
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


@pytest.mark.parametrize("arguments", [[], ["missing"], [sys.executable, "15"], ["x", "y", "z"]])
def test_the_benchmark_says_how_it_is_used(arguments: list[str]) -> None:
    command = [sys.executable, str(PROJECT / "benchmarks" / "scale_benchmark.py"), *arguments]
    result = subprocess.run(command, capture_output=True)
    assert result.returncode == 2
    assert b"scale_benchmark.py: error: " in result.stderr


def test_the_document_shows_what_is_printed_blank_for_blank(tool: str, tmp_path: Path) -> None:
    document = (PROJECT / "docs" / "scale.md").read_text(encoding="utf-8")
    shown = re.search(r"^    \$ (.+)\n((?:    .+\n)+)", document, re.MULTILINE)
    assert shown and "wc -l" in shown[1]
    (tmp_path / "data").symlink_to(PROJECT / "data")
    printed = run(shown[1], tmp_path, tool).stdout.decode()
    assert printed == shown[2].replace("    ", "")


def test_the_own_scheduler_may_answer_late(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(example, "CONNECT_SECONDS", 0.0)  # as on a machine that is too busy
    with example.connect(None, 1) as client:
        assert client.submit(len, "abc").result() == 3


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
