"""Builds the extension with CMake, which knows how the library is compiled."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

here = Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, ext: Extension) -> None:
        build = Path(os.environ.get("BK_PARSER_BUILD", here / "build" / "cmake")).resolve()
        options = os.environ.get("BK_PARSER_CMAKE_OPTIONS", "").split()
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []
        configure = ["cmake", "-S", str(here), "-B", str(build), *generator, f"-DPython_EXECUTABLE={sys.executable}"]
        subprocess.run([*configure, "-DCMAKE_UNITY_BUILD=ON", "-DCMAKE_UNITY_BUILD_BATCH_SIZE=16", *options], check=True)
        subprocess.run(["cmake", "--build", str(build), "--target", "_core", "--parallel"], check=True)
        target = Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(next(file for file in build.glob("_core*") if file.suffix in (".so", ".pyd")), target)


setup(ext_modules=[Extension("bk_parser._core", [])], cmdclass={"build_ext": CMakeBuild})
