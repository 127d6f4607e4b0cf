"""Builds the wheel of this checkout for pip, by means of CMake and without network.

The libraries are linked into the module, so that the wheel does not depend on an installation of
them.
"""

import base64
import hashlib
import pathlib
import re
import subprocess
import sys
import sysconfig
import tempfile
import tomllib
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def _version():
    header = (ROOT / "contracts/DataEngineVersion.h").read_text()
    return ".".join(re.findall(r"define DATAENGINE_VERSION_\w+ (\d+)", header))


def _metadata(project, version):
    lines = ["Metadata-Version: 2.1", f"Name: {project['name']}", f"Version: {version}",
             f"Summary: {project['description']}",
             f"Requires-Python: {project['requires-python']}",
             *(f"Requires-Dist: {name}" for name in project["dependencies"])]
    for extra, names in project["optional-dependencies"].items():
        lines.append(f"Provides-Extra: {extra}")
        lines += [f'Requires-Dist: {name}; extra == "{extra}"' for name in names]
    return "\n".join(lines) + "\n"


def _install(folder):
    """Builds the package and installs it into a folder."""
    with tempfile.TemporaryDirectory() as build:
        options = ["-DCMAKE_BUILD_TYPE=Release", "-DBUILD_SHARED_LIBS=OFF",
                   "-DDATAENGINE_DEVELOPER=OFF", "-DDATAENGINE_TOOLS=OFF", "-DDATAENGINE_PYTHON=ON",
                   f"-DPython3_EXECUTABLE={sys.executable}", "-DDATAENGINE_PYTHON_DIR=."]
        for command in (["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", "-Wno-dev", *options],
                        ["cmake", "--build", build, "--target", "dataengine_python"],
                        ["cmake", "--install", build, "--component", "python", "--strip",
                         "--prefix", folder]):
            subprocess.run(command, check=True)


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Writes the wheel and returns its name, as PEP 517 asks for."""
    project = tomllib.loads((ROOT / "pyproject.toml").read_text())["project"]
    version = _version()
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    tag = f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"
    info = f"{project['name']}-{version}.dist-info"
    name = f"{project['name']}-{version}-{tag}.whl"
    files = {f"{info}/METADATA": _metadata(project, version).encode(),
             f"{info}/WHEEL": (f"Wheel-Version: 1.0\nGenerator: {project['name']}\n"
                               f"Root-Is-Purelib: false\nTag: {tag}\n").encode()}
    with tempfile.TemporaryDirectory() as folder:
        _install(folder)
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if path.is_file():
                files[path.relative_to(folder).as_posix()] = path.read_bytes()
    with zipfile.ZipFile(pathlib.Path(wheel_directory) / name, "w", zipfile.ZIP_DEFLATED) as wheel:
        record = ""
        for path, content in files.items():
            digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).decode().rstrip("=")
            record += f"{path},sha256={digest},{len(content)}\n"
            wheel.writestr(path, content)
        wheel.writestr(f"{info}/RECORD", record + f"{info}/RECORD,,\n")
    return name
