"""The package in threads, forks, subinterpreters and long-running processes."""

from __future__ import annotations

import gc
import multiprocessing
import os
import signal
import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Any, Callable

import numpy as np
import phoneme
import pytest

WORDS = ["ni3hao3", "xyz3", "Xi'an", "漢字", "ma5", "bei3jing1"] * 50


def _all_results() -> list[Any]:
    return [
        [phoneme.py2ph(word, errors="none") for word in WORDS],
        [phoneme.analyze(word) for word in WORDS],
        phoneme.py2ph_batch(WORDS).tolist(),
        phoneme.analyze_batch(WORDS).tolist(),
    ]


def test_threads_agree() -> None:
    expected = _all_results()
    with ThreadPoolExecutor(8) as pool:
        futures = [pool.submit(_all_results) for _ in range(24)]
        assert all(future.result() == expected for future in futures)


def _large_pair() -> tuple[bytes, Any]:
    count = 1_000_000
    return b"ni3hao3ma5" * count, np.arange(count + 1) * 10


@pytest.mark.parametrize("form", ["pair", "list"])
def test_python_runs_while_a_batch_is_converted(form: str) -> None:
    texts: Any = _large_pair() if form == "pair" else ["ni3hao3ma5" * 20_000] * 50
    begun, done = threading.Event(), threading.Event()

    def convert() -> None:
        begun.set()
        phoneme.py2code_batch(texts)
        done.set()

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)  # nobody takes the lock from who does not give it away
    worker = threading.Thread(target=convert)
    try:
        worker.start()
        begun.wait()
        was_running = not done.is_set()
        worker.join()
    finally:
        sys.setswitchinterval(interval)
    assert was_running and done.is_set()


def test_a_fork_goes_on() -> None:
    expected = phoneme.py2code_batch(WORDS).codes.tolist()
    child = os.fork()
    if child == 0:
        agrees = phoneme.py2code_batch(WORDS).codes.tolist() == expected
        agrees = agrees and phoneme.py2code("ni3", errors="none") == [2243]
        os._exit(0 if agrees else 1)
    _, status = os.waitpid(child, 0)
    assert os.WEXITSTATUS(status) == 0 and os.WIFEXITED(status)


def output_of(code: str) -> str:
    """What a new interpreter prints, and an error when it does not end."""
    result = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, text=True, timeout=120, check=False
    )
    return result.stdout + result.stderr


def test_forks_in_the_middle_of_batches() -> None:
    code = """
import os, sys, threading, numpy, phoneme
texts = ["ni3hao3", "xyz3", "ma5 \u6f22"] * 2000
data = b"ni3hao3ma5" * 4000
pair = (data, numpy.arange(4001) * 10)
expected = phoneme.py2code_batch(texts).codes.tolist()
is_over = False
counts = [0] * 3
def convert(i):
    while not is_over:
        phoneme.normalize_batch(texts) if i == 2 else phoneme.py2ph_batch(pair if i else texts)
        counts[i] += 1
threads = [threading.Thread(target=convert, args=(i,)) for i in range(3)]
for thread in threads:
    thread.start()
agreeing = 0
while agreeing < 30 or min(counts) < 3:
    child = os.fork()
    if child == 0:
        agrees = phoneme.py2code_batch(texts).codes.tolist() == expected
        agrees = agrees and len(phoneme.py2ph_batch(pair).codes) == 12000
        agrees = agrees and len(phoneme.analyze_batch(pair).codes) == 12000
        agrees = agrees and phoneme.normalize_batch(["N\u01d0"]).data.tobytes() == b"ni3"
        os._exit(0 if agrees else 1)
    if os.waitpid(child, 0)[1] != 0:
        break
    agreeing += 1
is_over = True
for thread in threads:
    thread.join()
print(agreeing >= 30)
"""
    assert output_of(code) == "True\n"


# Texts that need all tables: of marks and of suggestions too.
@pytest.mark.parametrize("batch", ["normalize_batch", "analyze_batch"])
def test_forks_in_the_middle_of_the_first_batch(batch: str) -> None:
    # Each child begins with tables that are not made yet, and forks again while they are.
    code = """
import os, signal, threading, time
import phoneme
phoneme.py2code_batch(["ni3"])  # imports NumPy
examples = [("mandarin", "nǐ hoǎ"), ("cantonese", "nei5 lan2"), ("english", "N IY1 X")] * 50
status = 0
for i, (language, text) in enumerate(examples):
    child = os.fork()
    if child == 0:
        signal.alarm(20)
        begun = threading.Event()
        def convert():
            begun.set()
            phoneme.BATCH([text] * 20, language)
        thread = threading.Thread(target=convert)
        thread.start()
        begun.wait()
        end = time.perf_counter() + i * 2e-6
        while time.perf_counter() < end:
            pass
        grandchild = os.fork()
        if grandchild == 0:
            signal.alarm(10)
            os._exit(0 if phoneme.BATCH([text], language).status.size == 1 else 1)
        status = os.waitpid(grandchild, 0)[1]
        thread.join()
        os._exit(0 if status == 0 else 1)
    status = os.waitpid(child, 0)[1]
    if status != 0:
        break
print(i + 1, status)
"""
    assert output_of(code.replace("BATCH", batch)) == "150 0\n"


def test_a_fork_while_another_thread_imports_numpy() -> None:
    # The import waits until the fork is asked for, and then long enough for one that does not wait.
    code = """
import builtins, os, signal, sys, threading, time
import phoneme
asked = threading.Event()
class Slow:
    def find_spec(self, name, path=None, target=None):
        if name == "numpy.core" and threading.current_thread() is thread:
            asked.set()
            time.sleep(0.5)
sys.meta_path.insert(0, Slow())
thread = threading.Thread(target=lambda: phoneme.py2code_batch(["ni3"]))
thread.start()
asked.wait()
child = os.fork()
signal.alarm(20)
codes = phoneme.py2code_batch(["hao3"]).codes.tolist()
if child == 0:
    os._exit(0 if codes == [1173] else 1)
thread.join()
print(os.waitpid(child, 0)[1], codes)
"""
    assert output_of(code) == "0 [1173]\n"


# While a thread makes a call, which may import a module that is slow to find, the process forks.
FORK_IN_A_CALL = """
import os, signal, sys, threading, time
import phoneme
{first}
asked = threading.Event()
class Slow:
    def find_spec(self, name, path=None, target=None):
        if name.startswith("{slow}") and threading.current_thread() is thread:
            asked.set()
            time.sleep(0.5)
sys.meta_path.insert(0, Slow())
def call():
    return {call}
thread = threading.Thread(target=call)
thread.start()
while thread.is_alive() and not asked.wait(0.01):
    pass
child = os.fork()
signal.alarm(20)
result = call()
if child == 0:
    os._exit(0 if result == {result} else 1)
thread.join()
print(os.waitpid(child, 0)[1], result == {result})
"""


def test_a_fork_while_another_thread_reads_the_shipped_aliases() -> None:
    code = FORK_IN_A_CALL.format(
        first="", slow="", call="phoneme.shipped_aliases()['ni']", result="'nei'"
    )
    assert output_of(code) == "0 True\n"


def test_a_fork_while_another_thread_imports_pyarrow(tmp_path: Path) -> None:
    # What to_arrow uses of pyarrow to make an array of strings, after a part that is slow to find.
    (tmp_path / "pyarrow_part.py").touch()
    (tmp_path / "pyarrow.py").write_text(
        "import pyarrow_part\n"
        "class LargeStringArray:\n"
        "    @staticmethod\n"
        "    def from_buffers(count, *buffers):\n"
        "        return count\n"
        "def py_buffer(values):\n"
        "    return values\n",
        "utf-8",
    )
    first = f"sys.path.insert(0, {str(tmp_path)!r})\nbatch = phoneme.normalize_batch(['N\u01d0'])"
    code = FORK_IN_A_CALL.format(
        first=first, slow="pyarrow_part", call="phoneme.to_arrow(batch)", result="1"
    )
    assert output_of(code) == "0 True\n"


def test_numpy_is_imported_once() -> None:
    code = """
from phoneme import _core, py2code_batch
calls, imported = [], _core.import_numpy
_core.import_numpy = lambda: calls.append(imported())
print([py2code_batch(["ni3"])[0] for _ in range(3)], len(calls))
"""
    assert output_of(code) == "[[2243], [2243], [2243]] 1\n"


def test_a_fork_by_the_thread_that_imports_numpy() -> None:
    code = """
import os, signal, sys
import phoneme
class Fork:
    def find_spec(self, name, path=None, target=None):
        global child
        if name == "numpy.core" and child is None:
            child = os.fork()
child = None
signal.alarm(20)
sys.meta_path.insert(0, Fork())
codes = phoneme.py2code_batch(["hao3"]).codes.tolist()
if child == 0:
    os._exit(0 if codes == [1173] else 1)
print(os.waitpid(child, 0)[1], codes)
"""
    assert output_of(code) == "0 [1173]\n"


@pytest.mark.parametrize("method", ["fork", "spawn"])
def test_pools_of_processes(method: str) -> None:
    with multiprocessing.get_context(method).Pool(2) as pool:
        words = ["ni3hao3", "ma5"]
        assert pool.map(phoneme.py2ph, words) == [phoneme.py2ph(word) for word in words]
        with pytest.raises(phoneme.ConversionError, match="'hoa3' at 4"):
            pool.map(phoneme.py2code, ["ni3 hoa3"])


SUBINTERPRETER = """
import sys
{first}
import _xxsubinterpreters as interpreters
other = interpreters.create()
try:
    interpreters.run_string(other, "import phoneme")
except interpreters.RunFailedError as error:
    print(error)
else:
    print("imported")
interpreters.destroy(other)
{last}
"""


@pytest.mark.skipif(sys.version_info >= (3, 13), reason="the test module has another name")
@pytest.mark.parametrize("first", ["", "import phoneme"])
def test_subinterpreters_are_refused(first: str) -> None:
    last = "import phoneme; print(phoneme.py2code('ni3'))"
    code = SUBINTERPRETER.format(first=first, last=last)
    result = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, text=True, check=False
    )
    assert "ImportError" in result.stdout and "not in a subinterpreter" in result.stdout
    assert result.stdout.endswith("[2243]\n") and result.returncode == 0, result.stderr


def test_a_batch_can_be_interrupted() -> None:
    code = """
import _thread, phoneme
def texts():
    for i in range(200_000):
        yield "ni3"
    _thread.interrupt_main()
    while True:
        yield "ni3"
try:
    phoneme.py2code_batch(texts())
except KeyboardInterrupt:
    print("interrupted")
"""
    result = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, text=True, timeout=60, check=False
    )
    assert result.stdout == "interrupted\n", result.stderr


def test_signals_are_seen_within_a_pair_of_few_long_texts() -> None:
    text = b"ni3hao3ma5" * 50_000
    pair = (text * 100, np.arange(101) * len(text))
    seen: list[int] = []
    before = signal.signal(signal.SIGALRM, lambda number, frame: seen.append(number))
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.001, 0.001)
        phoneme.py2code_batch(pair)
        signal.setitimer(signal.ITIMER_REAL, 0)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    # One may be seen before, and one after.
    assert len(seen) > 5


@pytest.mark.parametrize("attempt", range(8))
def test_the_first_batches_of_a_process_in_threads(attempt: int) -> None:
    code = """
import sys, threading, phoneme
assert "numpy" not in sys.modules
sys.setswitchinterval(1e-6)
results = []
def convert():
    results.append(phoneme.py2ph_batch(["ni3hao3"]).codes.tolist())
threads = [threading.Thread(target=convert) for _ in range(8)]
for thread in threads:
    thread.start()
for thread in threads:
    thread.join()
assert results == [[2243, 1173]] * 8
"""
    result = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, text=True, timeout=60, check=False
    )
    assert (result.returncode, result.stderr) == (0, "")


@pytest.mark.parametrize("attempt", range(8))
def test_exits_in_silence_while_threads_convert(attempt: int) -> None:
    code = """
import threading, time, phoneme
texts = ["ni3hao3ma5" * 1000] * 10
def convert():
    while True:
        phoneme.py2code_batch(texts)
for _ in range(4):
    threading.Thread(target=convert, daemon=True).start()
time.sleep(0.05)
"""
    result = subprocess.run(
        [sys.executable, "-c", code], capture_output=True, text=True, timeout=60, check=False
    )
    assert (result.returncode, result.stderr) == (0, "")


def test_the_end_of_a_process_waits_for_a_batch() -> None:
    # The handler runs after the library has freed its tables, and lets the thread go on for the
    # second that it sleeps, the status of the process. What is freed is overwritten.
    code = """
import ctypes, sys, threading, time
libc = ctypes.CDLL(None)
libc.on_exit(libc.sleep, None)
import phoneme
text = "ni3hao3ma5" * 10_000_000
threading.Thread(target=phoneme.py2code_batch, args=([text],), daemon=True).start()
time.sleep(0.2)
sys.exit(1)
"""
    result = subprocess.run(
        [sys.executable, "-c", code],
        env={**os.environ, "MALLOC_PERTURB_": "165"},
        capture_output=True,
        text=True,
        timeout=60,
        check=False,
    )
    assert (result.returncode, result.stderr) == (1, "")


def _resident_bytes() -> int:
    pages = int(Path("/proc/self/statm").read_text().split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


SYLLABLES = phoneme.py2ph("ni3hao3")
PHONE = phoneme.Phone(14, "mandarin")
GAP = phoneme.pr2ph("E n 3", fallback=True)[0]
NORMALIZED = phoneme.normalize_batch(["Nǐ hǎo", "hoa3"])
ALIASES = phoneme.parse_aliases("ai\tngai")
SMALL_PAIR = (b"ni3hao3", np.array([0, 3, 7]))

# A million calls in all, the many cheap ones most often.
LOOPS: list[tuple[str, int, Callable[[], Any]]] = [
    ("py2ph", 200_000, lambda: phoneme.py2ph("ni3hao3")),
    ("py2code", 200_000, lambda: phoneme.py2code("ni3hao3", 10000)),
    ("py2code of bytes", 50_000, lambda: phoneme.py2code(b"ni3")),
    ("py2code of wide text", 50_000, lambda: phoneme.py2code("漢 ni3")),
    ("failures", 100_000, lambda: phoneme.py2ph("xyz3", errors="none")),
    ("pyw2py", 50_000, lambda: phoneme.pyw2py("fangan")),
    ("code2ph", 100_000, lambda: phoneme.code2ph(2243)),
    ("code2py", 50_000, lambda: phoneme.code2py(2243)),
    ("pr2ph", 50_000, lambda: phoneme.pr2ph("E n i 3", fallback=True)),
    ("gaps", 20_000, lambda: phoneme.pr2ph("E n i 3", errors="none")),
    ("spelling", 20_000, lambda: (SYLLABLES[0].spelling, GAP.spelling)),
    ("codes of languages", 20_000, lambda: phoneme.py2code("ni3", "zh-CN")),
    ("pr2ph as ids", 50_000, lambda: phoneme.pr2ph("n i 3", as_ids=True)),
    ("ph2ph", 50_000, lambda: phoneme.ph2ph(b"\x18\x23\x03")),
    ("phone", 50_000, lambda: phoneme.phone("n", "mandarin")),
    ("records", 20_000, lambda: (hash(SYLLABLES[0]), SYLLABLES[0] < SYLLABLES[1], repr(SYLLABLES))),
    ("attributes", 20_000, lambda: (SYLLABLES[0].language, SYLLABLES[0].phones, PHONE.name)),
    ("constructors", 20_000, lambda: phoneme.Syllable(SYLLABLES[0].phones, "mandarin", 1, 2)),
    ("reduce", 20_000, lambda: SYLLABLES[0].__reduce__()),
    ("wrong constructors", 10_000, lambda: _fails(phoneme.Phone, "mandarin", 999)),
    ("wrong languages", 10_000, lambda: _fails(phoneme.py2ph, "ni3", "x")),
    ("other languages", 10_000, lambda: _fails(phoneme.py2ph, "ni3", 77)),
    ("wrong texts", 10_000, lambda: _fails(phoneme.py2ph, None)),
    ("errors", 10_000, lambda: _fails(phoneme.py2ph, "ni3 xyz3")),
    ("batches", 10_000, lambda: phoneme.py2ph_batch(["ni3hao3", "xyz3"])),
    ("pairs", 10_000, lambda: phoneme.py2code_batch(SMALL_PAIR)),
    ("wrong batches", 10_000, lambda: _fails(phoneme.pr2ph_batch, ["n i 3", None])),
    ("pieces", 10_000, lambda: phoneme.pyw2py_batch(["fangan"])),
    ("normalised", 10_000, lambda: phoneme.normalize_batch(["Nǐ hǎo"])),
    ("of normalised", 10_000, lambda: phoneme.py2code_batch(NORMALIZED)),
    ("of its arrays", 10_000, lambda: phoneme.py2code_batch((NORMALIZED.data, NORMALIZED.offsets))),
    ("missing", 10_000, lambda: phoneme.py2code_batch(["ni3", None], errors="none").tolist()),
    ("analyses", 10_000, lambda: phoneme.analyze_batch(["Nǐ hǎo", "hoa3"], aliases=ALIASES)),
    ("items", 10_000, lambda: phoneme.py2ph_batch(["ni3hao3"])[0]),
    ("analysis", 10_000, lambda: phoneme.analyze("Nǐ hoa3")),
    ("lexicon lines", 10_000, lambda: phoneme.lexicon_entry("女 女 [nu:3]", "cedict")),
    ("broken lines", 10_000, lambda: list(phoneme.lexicon_entries([b"a", b"# b"], "tsv", column=3))),
    ("cuts", 10_000, lambda: phoneme.cut_whole("xian", max_cuts=3)),
    ("aliases", 5_000, lambda: phoneme.normalize_jyutping("ai3", aliases={"ai": "ngai"})),
    ("writing", 10_000, lambda: phoneme.marked_pinyin(SYLLABLES)),
]


def _fails(function: Callable[..., Any], *arguments: Any) -> None:
    try:
        function(*arguments)
    except (TypeError, ValueError):
        return
    raise AssertionError("no failure")


def test_a_million_calls_are_looped() -> None:
    assert sum(count for _, count, _ in LOOPS) >= 1_000_000


@pytest.mark.parametrize("name, count, call", LOOPS, ids=[name for name, _, _ in LOOPS])
def test_calls_leave_nothing_behind(name: str, count: int, call: Callable[[], Any]) -> None:
    for _ in range(1000):
        call()
    gc.collect()
    blocks, resident = sys.getallocatedblocks(), _resident_bytes()
    for _ in range(count):
        call()
    gc.collect()
    # A leak of one object a call would be thousands of blocks, one of the library's own memory at
    # least 16 bytes a call.
    assert sys.getallocatedblocks() - blocks < count / 50
    assert _resident_bytes() - resident < max(1 << 20, count * 8)


def test_arguments_keep_their_reference_counts() -> None:
    text, language, batch = "".join(["ni3", "hao3"]), "".join(["manda", "rin"]), ["ni3", "x3"] * 9
    before = [sys.getrefcount(thing) for thing in (text, language, batch, batch[0], None, True)]
    none_before = sys.getrefcount(None)
    for _ in range(10_000):
        phoneme.py2ph(text, language)
        phoneme.py2code(text, language, errors="none")
        phoneme.py2code_batch(batch, language)
        phoneme.pr2ph("E 3", fallback=True)
        phoneme.phone("E", "mandarin", fallback=True)
    after = [sys.getrefcount(thing) for thing in (text, language, batch, batch[0])]
    assert after == before[:4]
    assert abs(sys.getrefcount(None) - none_before) < 100
