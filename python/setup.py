"""Builds the extension module from the library's own sources; the rest is in pyproject.toml."""

import re
import shutil
from pathlib import Path

from pybind11.setup_helpers import ParallelCompile, Pybind11Extension, build_ext
from setuptools import setup
from setuptools.command.build_py import build_py

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent

# CMakeLists.txt alone has the project's version.
found = re.search(r"VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text())
if found is None:
    raise SystemExit("CMakeLists.txt has no version of the form 1.2.3")
VERSION = found[1]

# Relative to this folder, as setuptools wants them.
FOLDERS = ["../xstr", "../phoneme", "../notation", "../lexicon", "bindings"]
SOURCES = [
    f"{folder}/{source.name}" for folder in FOLDERS for source in sorted((HERE / folder).glob("*.cc"))
]
STATIC = [(f"{library}_STATIC_DEFINE", None) for library in ("XSTR", "PHONEME", "NOTATION", "LEXICON")]


class BuildPackage(build_py):
    """Adds the alias table, which belongs to the project and not to this folder."""

    def run(self) -> None:
        super().run()
        table = ROOT / "data" / "jyutping_aliases.tsv"
        shutil.copyfile(table, Path(self.build_lib) / "phoneme" / table.name)


ParallelCompile("CMAKE_BUILD_PARALLEL_LEVEL").install()
setup(
    version=VERSION,
    ext_modules=[
        Pybind11Extension(
            "phoneme._core",
            SOURCES,
            include_dirs=[str(ROOT), str(HERE)],
            define_macros=[*STATIC, ("PHONEME_VERSION", f'"{VERSION}"')],
            extra_compile_args=["-O2"],
            # Inside the module, for machines without the library. Nobody else is to see its names.
            extra_link_args=["-l:libutf8proc.a", "-Wl,--exclude-libs,ALL"],
            cxx_std=17,
        )
    ],
    cmdclass={"build_ext": build_ext, "build_py": BuildPackage},
)
