"""Builds the extension with the project's own CMake build, the library inside it."""

import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE_DIR = pathlib.Path(__file__).resolve().parents[2]


def project_version():
    text = (SOURCE_DIR / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(qoc\s+VERSION\s+([\d.]+)", text).group(1)


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        target = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve()
        build_dir = pathlib.Path(self.build_temp).resolve() / "cmake"
        subprocess.run(
            ["cmake", "-S", SOURCE_DIR, "-B", build_dir, "-DCMAKE_BUILD_TYPE=Release", "-DQOC_BUILD_PYTHON=ON",
             "-DQOC_PYTHON_STATIC=ON", f"-DPython3_EXECUTABLE={sys.executable}", f"-DPYTHON_EXECUTABLE={sys.executable}",
             *(f"-DQOC_{part}=OFF" for part in ("BUILD_TOOLS", "BUILD_TESTS", "BUILD_BENCH", "INSTALL", "WERROR"))],
            check=True)  # fmt: skip
        subprocess.run(["cmake", "--build", build_dir, "--target", "qoc_python", "--parallel"], check=True)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes((build_dir / "bindings" / "python" / "qoc" / target.name).read_bytes())


setup(version=project_version(), ext_modules=[Extension("qoc._qoc", sources=[])], cmdclass={"build_ext": CMakeBuild})
