"""The examples of the READMEs, as the programs of somebody who checks types."""

from __future__ import annotations

import ast
import json
import os
import re
import shutil
import site
import subprocess
import sys
from pathlib import Path

import phoneme
import pytest

PROJECT = Path(__file__).resolve().parents[2]

# What the examples do not show: where None can be, and where it cannot.
MORE = """
import phoneme
from typing import List, Optional

phone: phoneme.Phone = phoneme.phone("n")
perhaps: Optional[phoneme.Phone] = phoneme.phone("n", errors="none")
answer: Optional[phoneme.Phone] = phoneme.phone("n", fallback=True)
names: List[str] = [
    phone.name
    for syllables in (
        phoneme.py2ph("ni3"),
        phoneme.pr2ph("n i 3"),
        phoneme.ph2ph(b""),
        [phoneme.code2ph(2243)],
        [read.syllable for read in phoneme.analyze("ni3").syllables],
        phoneme.analyze_batch(["ni3"])[0] or [],
    )
    for syllable in syllables
    for phone in syllable.phones
]
gaps: List[str] = [
    phone.name
    for syllable in phoneme.pr2ph("E 3", fallback=True)
    for phone in syllable.phones
    if phone is not None
]
entry: phoneme.LexiconEntry[str] = phoneme.lexicon_entry("a ni3", "kaldi")
texts: List[bytes] = [entry.text for entry in phoneme.lexicon_entries([b"a ni3"], "kaldi")]
spelling: str = phoneme.code2py(2243) + phoneme.py2ph("ni3")[0].spelling
codes: List[Optional[List[int]]] = phoneme.py2code_batch(["ni3", None], errors="none").tolist()
again: phoneme.CodeBatch = phoneme.py2code_batch(phoneme.normalize_batch(iter(["ni3"])))
"""


def _program(text: str) -> str:
    """The examples of a text, with what a session shows of itself printed."""
    lines = re.findall(r"^    (?:>>>|\.\.\.) ?(.*)$", text, re.MULTILINE)
    assert len(lines) >= 5
    module = ast.parse("\n".join(lines))
    for statement in module.body:
        if isinstance(statement, ast.Expr):
            shown = ast.Name("print", ast.Load())
            statement.value = ast.Call(shown, [statement.value], [])
    return ast.unparse(module) + "\n"


@pytest.fixture(scope="module")
def programs(tmp_path_factory: pytest.TempPathFactory) -> Path:
    folder = tmp_path_factory.mktemp("programs")
    (folder / "more.py").write_text(MORE, "utf-8")
    for name in ("README.md", "python/README.md"):
        program = _program((PROJECT / name).read_text("utf-8"))
        (folder / (name.replace("/", "_")[:-3] + ".py")).write_text(program, "utf-8")
    return folder


def _check(programs: Path, command: list[str], **environment: str) -> None:
    assert len(list(programs.glob("*.py"))) == 3
    result = subprocess.run(
        command, cwd=programs, env={**os.environ, **environment}, capture_output=True
    )
    assert result.returncode == 0, result.stdout.decode() + result.stderr.decode()


PACKAGES = str(Path(phoneme.__file__).parents[1])


def test_examples_pass_mypy(programs: Path) -> None:
    # Of the package itself the errors are shown elsewhere.
    mypy = [sys.executable, "-m", "mypy", "--strict", "--follow-imports=silent"]
    # mypy finds an installed package by itself, and refuses to be shown the way.
    path = {} if PACKAGES in site.getsitepackages() else {"MYPYPATH": PACKAGES}
    _check(programs, [*mypy, "--cache-dir", "cache", "."], **path)


@pytest.mark.skipif(shutil.which("pyright") is None, reason="scripts/test-python installs pyright")
def test_examples_and_public_types_pass_pyright(programs: Path, tmp_path: Path) -> None:
    (tmp_path / "programs").symlink_to(programs)
    (tmp_path / "installed").symlink_to(PACKAGES)
    wrong = 'import phoneme\nname: str = phoneme.phone("n", errors="none").name\n'
    (tmp_path / "wrong.py").write_text(wrong, "utf-8")
    public = [f"installed/phoneme/{name}" for name in ("__init__.py", "_core.pyi")]
    settings = {
        "typeCheckingMode": "strict",
        "include": ["programs", "wrong.py", *public],
        "extraPaths": ["installed"],
    }
    (tmp_path / "pyrightconfig.json").write_text(json.dumps(settings), "utf-8")
    command = ["pyright", "--pythonpath", sys.executable, "--outputjson"]
    result = subprocess.run(command, cwd=tmp_path, capture_output=True, check=False)
    report = json.loads(result.stdout)
    assert report["summary"]["filesAnalyzed"] == len(list(programs.glob("*.py"))) + 1 + len(public)
    found = [(Path(entry["file"]).name, entry["rule"]) for entry in report["generalDiagnostics"]]
    assert found == [("wrong.py", "reportOptionalMemberAccess")], report["generalDiagnostics"]
