"""The programs of examples/, run as a reader runs them, and their parts where they can go wrong."""

from __future__ import annotations

import doctest
import importlib
import json
import os
import re
import shlex
import socket
import subprocess
import sys
from pathlib import Path
from typing import Any

import pandas as pd
import phoneme
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

PROJECT = Path(__file__).resolve().parent.parent.parent
EXAMPLES = PROJECT / "examples"
DATA = PROJECT / "data"
sys.path.insert(0, str(EXAMPLES))
shards: Any = importlib.import_module("shards")
spark: Any = importlib.import_module("spark")
lexicon: Any = importlib.import_module("lexicon")


def run(program: str, *arguments: object) -> subprocess.CompletedProcess[str]:
    command = [sys.executable, str(EXAMPLES / program), *map(str, arguments)]
    return subprocess.run(
        command, capture_output=True, encoding="utf-8", errors="surrogateescape"
    )


def output_of(tool: str, *arguments: object, data: bytes = b"") -> list[str]:
    """The lines that the tool writes, whatever fails."""
    command = [tool, *map(str, arguments)]
    output = subprocess.run(command, input=data, capture_output=True).stdout
    return output.decode().split("\n")[:-1]


# lexicon.py


@pytest.mark.parametrize(
    ("language", "options"),
    [
        ("cantonese", ["--aliases", DATA / "jyutping_aliases.tsv"]),
        ("cantonese", []),
        ("mandarin", []),
    ],
)
def test_lexicon_is_that_of_the_tool(
    tool: str, tmp_path: Path, language: str, options: list[object]
) -> None:
    words = DATA / f"{language}.tsv"
    result = run("lexicon.py", "-l", language, *options, words, tmp_path)
    assert result.returncode == 0, result.stderr

    reading = ["-l", language, *options, "--column", 2]
    converted = output_of(tool, "convert", "-q", *reading, "--to", "toned-phones", "-i", words)
    rows = [line.split("\t") for line in converted if not line.startswith("# ")]
    expected = {f"{'_'.join(row[0].split())} {row[-1]}" for row in rows if row[-1]}
    written = (tmp_path / "lexicon.txt").read_text(encoding="utf-8").splitlines()
    assert written == sorted(expected)

    findings = output_of(tool, "check", *reading, "--json", words)
    expected_rejects = [(found["line"], found["kind"]) for found in map(json.loads, findings)]
    _, *rejected = (tmp_path / "rejects.tsv").read_text(encoding="utf-8").splitlines()
    rejects = [line.split("\t") for line in rejected]
    assert [(int(row[0]), row[3]) for row in rejects] == expected_rejects
    assert all(row[4] in row[2] for row in rejects)
    assert len(expected) > 2000 and len(rejects) > 10

    lines = {row[0] for row in rejects}
    assert f"{len(rows)} entries: {len(rows) - len(lines)} read, {len(lines)} rejected" in (
        result.stdout
    )


def test_lexicon_tells_what_it_read(tmp_path: Path) -> None:
    words = tmp_path / "words.tsv"
    words.write_bytes(
        "\ufeff# heading\nä b\tni3 hao3\tx\r\n\nb\tNǐ\nc\tng2 hoa3\nd\n\tni3\n".encode()
        + b"x\ry\tni3\xfc\n\xe4\tni3"
    )
    result = run("lexicon.py", "-l", "mandarin", words, tmp_path / "out")
    *lines, last = result.stdout.splitlines()
    assert lines == [
        "7 entries: 3 read, 4 rejected",
        "  missing phone 1: ng2 1",
        "  unknown syllable 1: hoa3 1",
        "  not an entry 1:  1",
        "  no word 1:  1",
        "  invalid UTF-8 1: \udcfc 1",
        "rules applied: tone-mark 1",
        "lexicon: 3 words with their phones",
        "syllables: 4, 2 different; ni3 3, hao3 1",
    ]
    assert re.fullmatch("phones: 4 of 59, never zh ch .* ueng", last)
    files = {
        path.name: path.read_bytes().decode("utf-8", "surrogateescape")
        for path in (tmp_path / "out").iterdir()
    }
    assert files == {
        "lexicon.txt": "b n i3\nä_b n i3 h ao3\n\udce4 n i3\n",
        "rejects.tsv": lexicon.REJECTS_HEADING
        + "\n5\tc\tng2 hoa3\tmissing phone\tng2\t"
        + "\n5\tc\tng2 hoa3\tunknown syllable\thoa3\thao3"
        + "\n6\td\t\tnot an entry\t\t"
        + "\n7\t\tni3\tno word\t\t"
        + "\n8\tx\ry\tni3\udcfc\tinvalid UTF-8\t\udcfc\t\n",
        "syllables.tsv": "ni3\t3\nhao3\t1\n",
    }


@pytest.mark.parametrize(
    ("options", "message"),
    [
        (["nowhere.tsv", "out"], "nowhere.tsv: No such file or directory"),
        ([".", "out"], ".: Is a directory"),
        (["--aliases", "nowhere.tsv", "out"], "nowhere.tsv: No such file or directory"),
        (["--aliases", "latin.tsv", "out"], "latin.tsv: line 1: "),
        (["--aliases", "words.tsv", "words.tsv", "out"], "words.tsv: line 1: "),
        (["words.tsv", "latin.tsv"], "latin.tsv: File exists"),
    ],
)
def test_lexicon_says_what_it_cannot_do(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, options: list[str], message: str
) -> None:
    (tmp_path / "latin.tsv").write_bytes(b"\xef\xbb\xbfa\tni3\r\n\xc3\xa4\tni3\nu\tl\xfc4\n")
    (tmp_path / "words.tsv").write_text("a\tni3\n")
    monkeypatch.chdir(tmp_path)
    result = run("lexicon.py", *options)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.startswith(f"lexicon.py: {message}") and result.stderr.count("\n") == 1
    assert not (tmp_path / "out").exists()


def test_lexicon_has_aliases_of_jyutping_alone(tool: str, tmp_path: Path) -> None:
    options = ["-l", "mandarin", "--aliases", tmp_path / "missing.tsv"]
    result = run("lexicon.py", *options, tmp_path / "out")
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr == "lexicon.py: --aliases does not apply to pinyin input\n"
    command = [tool, "convert", *map(str, options), "--to", "codes"]
    told = subprocess.run(command, input=b"", capture_output=True).stderr.decode()
    assert told.startswith(result.stderr.replace("lexicon.py", "phoneme").strip())
    assert not (tmp_path / "out").exists()


# shards.py


def test_shards_as_a_program(tool: str, tmp_path: Path) -> None:
    folder, output = tmp_path / "shards", tmp_path / "output"
    folder.mkdir()
    content = (DATA / "cantonese.tsv").read_bytes()
    (folder / "one.tsv").write_bytes(content)
    result = run("shards.py", folder, output, "-l", "cantonese", "--workers", 0)
    assert result.returncode == 0
    assert result.stdout.startswith(f"{content.count(10)} lines: ")
    assert result.stderr == f"1 of 1 shards, {content.count(10)} lines\n"
    convert = ["convert", "-q", "-l", "cantonese", "--column", 2, "--to", "codes"]
    written = (output / "converted" / "one.tsv").read_text(encoding="utf-8")
    assert written.split("\n")[:-1] == output_of(tool, *convert, data=content)


def test_shards_cleans_up_and_may_run_again(tmp_path: Path) -> None:
    folder, output = tmp_path / "shards", tmp_path / "output"
    folder.mkdir()
    (folder / "a").write_text("x\tni3\n")
    (folder / ".hidden").write_text("x\tni3\n")
    first = shards.convert_folder(folder, output)
    (output / "converted" / f".a.0123{shards.PART}").write_text("half a li")
    (output / "converted" / "a").write_text("older")
    assert shards.convert_folder(folder, output) == first == {"lines": 1, "converted": 1}
    assert [path.name for path in (output / "converted").iterdir()] == ["a"]
    assert (output / "converted" / "a").read_text() == "x\tni3\t2243\n"
    assert (output / "rejects" / "a").read_text() == ""


@pytest.mark.parametrize("stranger", ["converted/b", "rejects/b", "rejects/b.part"])
def test_shards_does_not_mix_results(tmp_path: Path, stranger: str) -> None:
    folder, output = tmp_path / "shards", tmp_path / "output"
    folder.mkdir()
    (folder / "a").write_text("x\tni3\n")
    shards.prepare(output)
    (output / stranger).write_text("x\tni3\t2243\n")
    with pytest.raises(shards.UsageError, match="holds results of other shards: b"):
        shards.convert_folder(folder, output)


def test_shards_removes_no_file_of_others(tmp_path: Path) -> None:
    folder, other = tmp_path / "shards", tmp_path / "output" / "other" / f".a{shards.PART}"
    folder.mkdir()
    (folder / "a").write_text("x\tni3\n")
    other.parent.mkdir(parents=True)
    other.write_text("kept")
    shards.convert_folder(folder, tmp_path / "output")
    assert other.read_text() == "kept"


def write_shards(folder: Path, content: bytes = b"x\tni3\n") -> Path:
    folder.mkdir(parents=True)
    (folder / "a").write_bytes(content)
    return folder


def contents_of(folder: Path) -> dict[Path, bytes]:
    return {path: path.read_bytes() for path in folder.rglob("*") if path.is_file()}


@pytest.mark.parametrize(
    ("folder", "output"),
    [
        ("in", "in"),
        ("in", "in/out"),
        ("in", "in/far/out"),
        ("out/converted", "out"),
        ("out/rejects", "out"),
        ("out/rejects", "out/../link"),
        ("link/converted", "out"),
    ],
)
def test_shards_does_not_destroy_its_input(tmp_path: Path, folder: str, output: str) -> None:
    (tmp_path / "out").mkdir()
    (tmp_path / "link").symlink_to("out")
    write_shards(tmp_path / folder)
    shards.convert_folder(write_shards(tmp_path / "other"), tmp_path / "out" / "elsewhere")
    before = contents_of(tmp_path)
    result = run("shards.py", tmp_path / folder, tmp_path / output, "--workers", 0)
    assert result.returncode == 2
    (line,) = result.stderr.splitlines()
    assert str((tmp_path / folder).resolve()) in line and "are not apart" in line
    assert contents_of(tmp_path) == before


def test_shards_does_not_replace_what_a_link_leads_to(tmp_path: Path) -> None:
    folder = write_shards(tmp_path / "in")
    shards.convert_folder(folder, tmp_path / "out")
    (folder / "a").unlink()
    (folder / "a").symlink_to(tmp_path / "out" / "converted" / "a")
    with pytest.raises(shards.UsageError, match="are not apart"):
        shards.convert_folder(folder, tmp_path / "out")


def test_shards_refuses_what_is_no_file(tmp_path: Path) -> None:
    folder, output = write_shards(tmp_path / "in"), tmp_path / "out"
    assert_refused(tmp_path / "missing", output, "missing: No such file or directory")
    assert_refused(folder / "a", output, "in/a: Not a directory")
    (tmp_path / "ring").symlink_to("ring")
    assert_refused(tmp_path / "ring", output, "ring: Too many levels of symbolic links")
    (tmp_path / "file").touch()
    assert_refused(folder, tmp_path / "file", "not a folder: .*file")
    assert_refused(folder, tmp_path / "file" / "out", "not a folder: .*file")
    (folder / "a").rename(folder / ".a")
    assert_refused(folder, output, "no shards in .*in")
    odd = folder / "odd"
    odd.mkdir()
    assert_refused(folder, output, f"not a file: {odd}")
    odd.rmdir()
    os.mkfifo(odd)
    assert_refused(folder, output, f"not a file: {odd}")
    odd.unlink()
    odd.symlink_to("missing")
    assert_refused(folder, output, f"not a file: {odd}")
    assert not output.exists()


@pytest.mark.parametrize(
    ("output", "reason"),
    [
        ("/proc/nowhere", "No such file or directory"),
        ("x" * 256, "File name too long"),
        ("ring/out", "Symlink loop|File exists|Too many levels"),  # by the version of Python
        ("done", "Is a directory"),
    ],
)
def test_shards_whose_output_cannot_be_made(tmp_path: Path, output: str, reason: str) -> None:
    folder = write_shards(tmp_path / "in")
    (tmp_path / "ring").symlink_to("ring")
    (tmp_path / "done" / "totals.json").mkdir(parents=True)
    result = run("shards.py", folder, tmp_path / output, "--workers", 0)
    assert (result.returncode, result.stdout) == (2, "")
    place = re.escape(str(tmp_path / output))
    assert re.fullmatch(f"shards.py: cannot write to {place}: ({reason}).*\n", result.stderr)
    assert [path.name for path in tmp_path.rglob("*") if path.is_file()] == ["a"]


def assert_refused(folder: Path, output: Path, message: str) -> None:
    with pytest.raises(shards.UsageError, match=message):
        shards.convert_folder(folder, output)


def test_shards_that_fail_are_named_and_leave_no_totals(tmp_path: Path) -> None:
    # A limit on the size of files stands for a disk that is full.
    folder, output = write_shards(tmp_path / "in"), tmp_path / "out"
    shards.convert_folder(folder, output)
    (folder / "b").write_bytes(b"x\tni3\n" * 10_000)
    command = [sys.executable, EXAMPLES / "shards.py", folder, output, "--workers", "0"]
    limited = ["sh", "-c", 'ulimit -f 20; exec "$@"', "sh", *map(str, command)]
    result = subprocess.run(limited, capture_output=True, encoding="utf-8")
    assert result.returncode == 1
    first, second = result.stderr.splitlines()
    assert first.startswith("1 of 2 shards")
    assert re.fullmatch(r"shards\.py: b: \[Errno 27\] .+", second)
    assert sorted(path.name for path in output.rglob("*")) == ["a", "a", "converted", "rejects"]


@pytest.mark.parametrize("address", ["nowhere", "tcp://127.0.0.1:http", "foo://127.0.0.1:1"])
def test_shards_at_no_address(tmp_path: Path, address: str) -> None:
    folder = write_shards(tmp_path / "in")
    result = run("shards.py", folder, tmp_path / "out", "--scheduler", address)
    assert result.returncode == 2
    (line,) = result.stderr.splitlines()
    assert f"no address of a scheduler: {address}" in line
    assert not (tmp_path / "out").exists()


def refusal_by_main(
    tmp_path: Path,
    monkeypatch: pytest.MonkeyPatch,
    capsys: pytest.CaptureFixture[str],
    *options: str,
) -> str:
    """The only line of a run in this process that begins nothing."""
    folder = write_shards(tmp_path / "in")
    monkeypatch.setattr(sys, "argv", ["shards.py", str(folder), str(tmp_path / "out"), *options])
    with pytest.raises(SystemExit) as end:
        shards.main()
    assert end.value.code == 2
    assert not (tmp_path / "out").exists()
    (line,) = capsys.readouterr().err.splitlines()
    return str(line)


@pytest.mark.parametrize("is_there", [False, True])
def test_shards_with_a_scheduler_that_does_not_answer(
    tmp_path: Path,
    monkeypatch: pytest.MonkeyPatch,
    capsys: pytest.CaptureFixture[str],
    is_there: bool,
) -> None:
    monkeypatch.setattr(shards, "CONNECT_SECONDS", 0.3)
    with socket.create_server(("127.0.0.1", 0)) as silent:
        address = f"tcp://127.0.0.1:{silent.getsockname()[1]}"
        if not is_there:
            silent.close()
        line = refusal_by_main(tmp_path, monkeypatch, capsys, "--scheduler", address)
    assert line.startswith(f"shards.py: no scheduler at {address}: Timed out")


def test_shards_without_dask(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    modules: Any = sys.modules
    monkeypatch.setitem(modules, "distributed", None)
    line = refusal_by_main(tmp_path, monkeypatch, capsys)
    assert line.startswith("shards.py: cannot import Dask: import of distributed halted")


def test_shards_whose_workers_do_not_start(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    def start(**options: Any) -> None:
        raise RuntimeError("Cluster failed to start: Too many open files")

    monkeypatch.setattr("distributed.LocalCluster", start)
    line = refusal_by_main(tmp_path, monkeypatch, capsys)
    assert line == (
        "shards.py: cannot start workers: Cluster failed to start: Too many open files"
    )


def test_shards_may_have_long_names(tmp_path: Path) -> None:
    folder, name = write_shards(tmp_path / "in"), "\u4f60" * 85  # 255 bytes, and no more can be
    (folder / "a").rename(folder / name)
    assert shards.convert_folder(folder, tmp_path / "out")["converted"] == 1
    assert (tmp_path / "out" / "converted" / name).read_bytes() == b"x\tni3\t2243\n"


def test_shards_documentation() -> None:
    result = doctest.testmod(shards)
    assert result.attempted > 0 and result.failed == 0


def test_shards_replaces_a_file_only_by_a_whole_one(tmp_path: Path) -> None:
    path = tmp_path / "file"
    path.write_text("old")
    with pytest.raises(KeyboardInterrupt), shards.replacing(path) as file:
        file.write(b"half")
        raise KeyboardInterrupt
    assert path.read_text() == "old"
    with shards.replacing(path) as file:
        file.write(b"new")
        assert path.read_text() == "old"
    assert path.read_text() == "new"
    assert list(tmp_path.iterdir()) == [path]


def test_shards_reads_in_blocks(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    (tmp_path / "shards").mkdir()
    (tmp_path / "shards" / "a").write_bytes((DATA / "mandarin.tsv").read_bytes())
    whole = shards.convert_folder(tmp_path / "shards", tmp_path / "whole")
    monkeypatch.setattr(shards, "BLOCK_BYTES", 1000)
    in_blocks = shards.convert_folder(tmp_path / "shards", tmp_path / "in_blocks")
    assert in_blocks == whole
    for name in ("converted/a", "rejects/a", "totals.json"):
        expected = (tmp_path / "whole" / name).read_bytes()
        assert (tmp_path / "in_blocks" / name).read_bytes() == expected != b""


pieces = st.sampled_from(
    ["ni", "hǎo", "lu:", "3", "5", " ", "xian", "r5", "PK", "hoa", "你", "0", "ng2"]
)


@settings(deadline=None)
@given(st.lists(st.lists(pieces, max_size=6).map("".join) | st.text(max_size=8), max_size=8))
def test_shards_reads_texts_as_analyze_does(texts: list[str]) -> None:
    for language in ("mandarin", "cantonese"):
        expected = []
        for text in texts:
            analysis = phoneme.analyze(text, language)
            codes = " ".join(str(read.syllable.code) for read in analysis.syllables)
            problem = analysis.problems[0].kind.value if analysis.problems else ""
            expected.append(("" if problem else codes, problem))
        assert shards.convert_texts(texts, language) == expected


@pytest.mark.parametrize(
    ("arguments", "message"),
    [
        (["--column", "0"], "argument --column: 0 is less than 1"),
        (["--workers", "-1"], "argument --workers: -1 is less than 0"),
        (["--workers", "two"], "argument --workers: invalid"),
        (["-l", "english"], "invalid choice: 'english'"),
    ],
)
def test_shards_bad_usage(tmp_path: Path, arguments: list[str], message: str) -> None:
    result = run("shards.py", tmp_path, tmp_path / "output", *arguments)
    assert result.returncode == 2
    assert message in result.stderr


# spark.py


def test_spark_converts_a_series(tool: str) -> None:
    odd = b"# a comment\tni3\n#no comment\tni3\tmore\n\nno field\nx\thoa3\r\n"
    odd += b'x\tni3\xff\n\t\n"\tni3\n'
    too_long = b"x\tni3\t".ljust(shards.LONGEST_LINE + 1, b"x")
    content = odd + (DATA / "mandarin.tsv").read_bytes() + too_long + b"\nlast\tni3\r\n"
    lines = pd.Series(content.split(b"\n")[:-1])
    converted = spark.convert_series(lines.set_axis(lines.index + 5), "mandarin", 2)
    convert = [tool, "convert", "-q", "-l", "mandarin", "--column", "2", "--to", "codes"]
    expected = subprocess.run(convert, input=content, capture_output=True).stdout
    assert b"".join(line + b"\n" for line in converted) == expected
    assert len(converted) == len(lines) > 2000
    assert len(spark.convert_series(pd.Series([], dtype=object), "cantonese", 2)) == 0


def run_pipe_command(
    tool: str, language: str, data: bytes = b""
) -> subprocess.CompletedProcess[bytes]:
    """As RDD.pipe starts it: cut by shlex, without environment, lines in and lines out."""
    command = shlex.split(spark.pipe_command(tool, language, 2))
    return subprocess.run(command, input=data, env=dict[str, str](), capture_output=True)


def test_spark_pipe_command(tool: str, tmp_path: Path) -> None:
    linked = tmp_path / "a tool"
    linked.symlink_to(tool)
    content = (DATA / "mandarin.tsv").read_bytes()
    result = run_pipe_command(str(linked), "mandarin", content)
    assert result.returncode == 0
    convert = ["convert", "-q", "-l", "mandarin", "--column", 2, "--to", "codes"]
    expected = output_of(tool, *convert, data=content)
    assert result.stdout.decode().split("\n")[:-1] == expected
    assert len(expected) == content.count(10)


@pytest.mark.parametrize(("language", "path"), [("klingon", None), ("mandarin", "/nowhere")])
def test_spark_pipe_command_fails_when_the_tool_cannot_run(
    tool: str, language: str, path: str | None
) -> None:
    assert run_pipe_command(path or tool, language).returncode != 0


def test_spark_says_what_it_needs(tmp_path: Path) -> None:
    try:
        importlib.import_module("pyspark")
    except ImportError:
        result = run("spark.py", "udf", DATA / "mandarin.tsv", tmp_path / "output")
        assert result.returncode == 1
        assert result.stderr == "spark.py needs Spark: start it with spark-submit\n"
        assert not (tmp_path / "output").exists()
    else:
        pytest.skip("Spark is installed")


def test_what_programs_say_of_themselves() -> None:
    for program in ("lexicon.py", "shards.py", "spark.py"):
        result = run(program, "--help")
        assert result.returncode == 0
        first = (EXAMPLES / program).read_text(encoding="utf-8").split("\n")[0].strip('"')
        assert first in re.sub(r"\s+", " ", result.stdout)
