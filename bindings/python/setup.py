"""Builds the extension with CMake, with the library inside of it, so that a wheel needs nothing else."""

import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parents[2]


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        folder = pathlib.Path(self.build_temp).resolve()
        folder.mkdir(parents=True, exist_ok=True)
        options = {
            "CMAKE_BUILD_TYPE": "Release",
            "CMAKE_CXX_FLAGS_RELEASE": "-O2 -DNDEBUG",
            "NORVA_BUILD_PYTHON": "ON",
            "NORVA_PYTHON_STANDALONE": "ON",
            "NORVA_PYTHON": sys.executable,
            "NORVA_BUILD_TESTS": "OFF",
            "NORVA_BUILD_DESKTOP": "OFF",
        }
        definitions = [f"-D{name}={value}" for name, value in options.items()]
        subprocess.run(["cmake", "-S", ROOT, "-B", folder, "-G", "Ninja", *definitions], check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "norva_python"], check=True)
        (built,) = (folder / "python/norva").glob("_norva*.so")
        target = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve()
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(built, target)


version = re.search(r"project\(NorvaExchange VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]
setup(version=version, ext_modules=[Extension("norva._norva", [])], cmdclass={"build_ext": CMakeBuild})
