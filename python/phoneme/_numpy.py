"""NumPy and pyarrow, which the first batch that needs them imports: few programs make a batch.

A fork while another thread imports would leave the child with a module that is never ready. So the
import is made under a lock, and whoever forks holds it.
"""

from __future__ import annotations

import os
import threading
from typing import Any

from phoneme import _core

# Reentrant, for a fork by the very thread that imports.
_lock = threading.RLock()
_is_imported = False

if hasattr(os, "register_at_fork"):
    os.register_at_fork(
        before=_lock.acquire, after_in_parent=_lock.release, after_in_child=_lock.release
    )


def import_numpy() -> None:
    """Imports NumPy, if this is not done yet; to be called before anything makes an array."""
    global _is_imported
    if _is_imported:
        return
    with _lock:
        _core.import_numpy()
        _is_imported = True


def import_pyarrow() -> Any:
    """The module pyarrow; an ImportError where it is not installed."""
    with _lock:
        import pyarrow
    return pyarrow
