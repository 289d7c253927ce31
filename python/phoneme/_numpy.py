"""NumPy, which the first batch imports and not the package: few programs make a batch.

A fork while another thread imports would leave the child with a module that is never ready. So the
import is made under a lock, and whoever forks holds it.
"""

from __future__ import annotations

import os
import threading

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
