"""Builds the Python package as a wheel: CMake compiles the extension and lays the package out.

KV_TR_BUILD_TREE names a build tree that has the package already, which is then taken from there.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent
VERSION = re.search(r"^ *VERSION ([0-9.]+)$", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)


def cmake(*arguments):
    subprocess.run(["cmake", *map(str, arguments)], check=True)


def built(tree):
    """Compiles the package in the folder."""
    options = {f"KV_TR_{part}": "OFF" for part in ("CLI", "QT", "GDAL", "TESTS")}
    options |= {"KV_TR_PYTHON": "ON", "CMAKE_BUILD_TYPE": "Release", "Python_EXECUTABLE": sys.executable}
    try:  # the package index's pybind11 knows where its files for CMake are
        import pybind11

        options["pybind11_DIR"] = pybind11.get_cmake_dir()
    except ImportError:
        pass  # CMake finds that of the system
    generator = ["-G", "Ninja"] if shutil.which("ninja") else []
    cmake("-S", ROOT, "-B", tree, *generator, *(f"-D{name}={value}" for name, value in options.items()))
    cmake("--build", tree, "--parallel", os.cpu_count() or 1)
    return tree


class BuildWithCMake(build_ext):
    def run(self):
        tree = os.environ.get("KV_TR_BUILD_TREE") or built(Path(self.build_temp) / "cmake")
        with tempfile.TemporaryDirectory() as folder:
            cmake("--install", tree, "--component", "python", "--prefix", folder)
            (package,) = Path(folder).rglob("kv_tr/__init__.py")
            shutil.copytree(package.parent, Path(self.build_lib) / "kv_tr", dirs_exist_ok=True)


(ROOT / "build").mkdir(exist_ok=True)
setup(
    version=VERSION.group(1),
    packages=[],
    ext_modules=[Extension("kv_tr._kv_tr", sources=[])],
    cmdclass={"build_ext": BuildWithCMake},
    options={"egg_info": {"egg_base": "build"}},
)
