#!/usr/bin/env python3
"""What scripts/mutate makes of a line, that it finds all sources of the tool, and that a seed draws the
same changes each time.

mutate.py ROOT
"""

import importlib.machinery
import importlib.util
import pathlib
import re
import subprocess
import sys

# A line of Python, and all that becomes of it.
PYTHON = [
    ("x = a < b", ["x = a <= b"]),
    ("x = a == b and not c", ["x = a != b and not c", "x = a == b or not c", "x = a == b and c"]),
    ("x = a is None or b is not None", ["x = a is not None or b is not None",
                                        "x = a is None and b is not None",
                                        "x = a is None or b is None"]),
    ("x = [i for i in y if i in z]", ["x = [i for i in y if i not in z]"]),
    ("x = a not in b", ["x = a in b"]),
    ("x = a[-1:] + [True]", ["x = a[-2:] + [True]", "x = a[-1:] - [True]", "x = a[-1:] + [False]"]),
    ("x += y // z", ["x -= y // z", "x += y * z"]),
    ("f(*a, **b)", []),
    ("x = 'a + 1'  # b + 1", []),
    ("def f(a: int | None = None, b: 'x' = 1) -> int | None: ...",
     ["def f(a: int | None = None, b: 'x' = 2) -> int | None: ..."]),
    ("@overload\ndef f(a: int = 1) -> int: ...", []),
]
# A function, and how often a statement of it is left out.
STATEMENTS = [
    ('def f():\n    """Text."""\n    return 1 if g() else h()', 0),
    ("def f():\n    x = g(\n        y)\n    x.h()\n    raise x", 3),
]
CPP = [
    ("  mode = 0666;", ["  mode = 439;", ""]),
    ("  if (a < b && c) {", ["  if (a <= b && c) {", "  if (a < b || c) {"]),
]


def load(path):
    loader = importlib.machinery.SourceFileLoader("mutate", str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
    loader.exec_module(module)
    return module


def expect(what, wanted, found):
    if wanted != found:
        sys.exit(f"{what}\n  expected {wanted}\n  found    {found}")


def main():
    root = pathlib.Path(sys.argv[1])
    sys.dont_write_bytecode = True
    mutate = load(root / "scripts" / "mutate")
    for text, wanted in PYTHON:
        found = [after for _, _, after in mutate.python_changes(text)]
        last = text.split("\n")[-1]
        expect(text, sorted(wanted), sorted(line for line in found if line != last))
    for text, count in STATEMENTS:
        found = [after for _, _, after in mutate.python_changes(text)]
        expect(text, count, sum(after.strip() == "pass" for after in found))
    for text, wanted in CPP:
        expect(text, wanted, [after for _, _, after in mutate.cpp_changes("tools/x.cc", text)])
    built = re.findall(r"^  ([a-z_/]+[.]cc)", (root / "tools" / "CMakeLists.txt").read_text(), re.M)
    missing = {f"tools/{source}" for source in built} - set(mutate.all_sources())
    if missing or not built:
        sys.exit(f"never changed: {sorted(missing)} of {len(built)}")
    drawn = [subprocess.run([root / "scripts" / "mutate", "--check", "--sample", "30", "--seed", seed],
                            stdout=subprocess.PIPE, check=True, encoding="utf-8").stdout.splitlines()
             for seed in ("7", "7", "8")]
    expect("how many are drawn", 31, len(drawn[0]))
    expect("the same seed", drawn[0], drawn[1])
    if drawn[0] == drawn[2]:
        sys.exit("another seed draws the same")
    folders = {line.partition("/")[0] for line in drawn[0][1:]}
    if not {"tools", "python", "notation"} <= folders:
        sys.exit(f"drawn from {folders} alone")


if __name__ == "__main__":
    main()
