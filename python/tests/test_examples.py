"""The programs of examples/, run as a reader runs them, and their parts where they can go wrong."""

from __future__ import annotations

import importlib
import json
import re
import shlex
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


no_environment: dict[str, str] = {}


def run(program: str, *arguments: object) -> subprocess.CompletedProcess[str]:
    command = [sys.executable, str(EXAMPLES / program), *map(str, arguments)]
    return subprocess.run(command, capture_output=True, encoding="utf-8")


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
    words.write_text("\ufeff# heading\nä b\tni3 hao3\tx\r\n\nb\tNǐ\nc\tng2 hoa3\nd\n", "utf-8")
    result = run("lexicon.py", "-l", "mandarin", words, tmp_path / "out")
    *lines, last = result.stdout.splitlines()
    assert lines == [
        "4 entries: 2 read, 2 rejected",
        "  unknown syllable 1: hoa3 1",
        "  no phones 1: ng2 1",
        "  not an entry 1:  1",
        "rules applied: tone-mark 1",
        "lexicon: 2 words with their phones",
        "syllables: 3, 2 different; ni3 2, hao3 1",
    ]
    assert re.fullmatch("phones: 4 of 59, never zh ch .* ueng", last)
    files = {path.name: path.read_text("utf-8") for path in (tmp_path / "out").iterdir()}
    assert files == {
        "lexicon.txt": "b n i3\nä_b n i3 h ao3\n",
        "rejects.tsv": lexicon.REJECTS_HEADING
        + "\n5\tc\tng2 hoa3\tunknown syllable\thoa3\thao3"
        + "\n5\tc\tng2 hoa3\tno phones\tng2\t"
        + "\n6\td\t\tnot an entry\t\t\n",
        "syllables.tsv": "ni3\t2\nhao3\t1\n",
    }


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


@pytest.mark.parametrize("stranger", ["converted/b", "rejects/b"])
def test_shards_does_not_mix_results(tmp_path: Path, stranger: str) -> None:
    folder, output = tmp_path / "shards", tmp_path / "output"
    folder.mkdir()
    with pytest.raises(SystemExit, match="no shards in"):
        shards.convert_folder(folder, output)
    (folder / "a").write_text("x\tni3\n")
    shards.prepare(output, ["a"])
    (output / stranger).write_text("x\tni3\t2243\n")
    with pytest.raises(SystemExit, match="holds results of other shards: b"):
        shards.convert_folder(folder, output)


def test_shards_that_cannot_be_read_leave_no_totals(tmp_path: Path) -> None:
    folder, output = tmp_path / "shards", tmp_path / "output"
    folder.mkdir()
    (folder / "a").write_text("x\tni3\n")
    shards.convert_folder(folder, output)
    (folder / "b").mkdir()
    with pytest.raises(IsADirectoryError):
        shards.convert_folder(folder, output)
    assert sorted(path.name for path in output.rglob("*")) == ["a", "a", "converted", "rejects"]


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
        (["--column", "0"], "columns are counted from 1"),
        (["-l", "english"], "invalid choice: 'english'"),
    ],
)
def test_shards_bad_usage(tmp_path: Path, arguments: list[str], message: str) -> None:
    result = run("shards.py", tmp_path, tmp_path / "output", *arguments)
    assert result.returncode == 2
    assert message in result.stderr


# spark.py


def test_spark_reads_a_series() -> None:
    texts = pd.Series(["ni3hao3", None, "hoa3", "yipinguo"], index=[5, 6, 7, 8])
    frame = spark.read_texts(texts, "mandarin")
    assert frame.to_dict("list") == {
        "codes": ["2243 1173", "", "", "3705 2545 1125"],
        "problem": ["", "", "unknown syllable", ""],
    }
    empty = spark.read_texts(pd.Series([], dtype=object), "cantonese")
    assert list(empty.columns) == ["codes", "problem"] and len(empty) == 0


def test_spark_pipe_command(tool: str, tmp_path: Path) -> None:
    # As RDD.pipe starts it: cut by shlex, without environment, lines in and lines out.
    linked = tmp_path / "a tool"
    linked.symlink_to(tool)
    command = shlex.split(spark.pipe_command(str(linked), "mandarin", 2))
    content = (DATA / "mandarin.tsv").read_bytes()
    result = subprocess.run(command, input=content, env=no_environment, stdout=subprocess.PIPE)
    assert result.returncode == 0
    convert = ["convert", "-q", "-l", "mandarin", "--column", 2, "--to", "codes"]
    expected = output_of(tool, *convert, data=content)
    assert result.stdout.decode().split("\n")[:-1] == expected
    assert len(expected) == content.count(10)


@pytest.mark.parametrize(("language", "path"), [("klingon", None), ("mandarin", "/nowhere")])
def test_spark_pipe_command_fails_when_the_tool_cannot_run(
    tool: str, language: str, path: str | None
) -> None:
    command = shlex.split(spark.pipe_command(path or tool, language, 2))
    result = subprocess.run(command, input=b"", env=no_environment, capture_output=True)
    assert result.returncode != 0


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
