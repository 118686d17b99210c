"""Makes the package that pip installs into an environment: it says where the installed program keeps its module, which is what
`import quillet` finds then. So module and program can't be of different versions, and building needs no compiler.

The program is `quillet` on the search path, or the one that QUILLET_PROGRAM names.
"""

import base64
import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import zipfile


def program():
    named = os.environ.get("QUILLET_PROGRAM") or shutil.which("quillet")
    if not named:
        sys.exit("The quillet program is not on the search path: install it first, or name it in QUILLET_PROGRAM.")
    found = pathlib.Path(named).resolve()
    modules = found.parents[1] / "lib/python"
    if not (modules / "_quillet.so").is_file():
        sys.exit(f"{found} came without its module {modules}/_quillet.so: install the package python3-quillet.")
    return found, modules


def version(of):
    told = subprocess.run([of, "--version"], check=True, capture_output=True, text=True).stdout
    return told.split()[1]


def suits(modules):
    """Whether the environment's Python can open the module, which is made for one version of it."""
    code = "import sys; sys.path.insert(0, sys.argv[1]); import quillet"
    tried = subprocess.run([sys.executable, "-c", code, modules], capture_output=True, text=True)
    if tried.returncode:
        sys.exit(f"{sys.executable} can't use the module in {modules}:\n{tried.stderr}")


def recorded(name, content):
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}\n"


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    found, modules = program()
    suits(modules)
    number = version(found)
    tag = f"py{sys.version_info.major}{sys.version_info.minor}-none-any"
    told = f"quillet-{number}.dist-info"
    files = {
        "quillet.pth": f"{modules}\n",
        f"{told}/METADATA": f"Metadata-Version: 2.1\nName: quillet\nVersion: {number}\nSummary: The module of the program in {modules}\n"
                            f"License: Apache-2.0\nRequires-Python: =={sys.version_info.major}.{sys.version_info.minor}.*\n",
        f"{told}/WHEEL": f"Wheel-Version: 1.0\nGenerator: quillet\nRoot-Is-Purelib: true\nTag: {tag}\n",
    }
    record = "".join(recorded(name, text.encode()) for name, text in files.items()) + f"{told}/RECORD,,\n"
    name = f"quillet-{number}-{tag}.whl"
    with zipfile.ZipFile(os.path.join(wheel_directory, name), "w") as wheel:
        for path, text in {**files, f"{told}/RECORD": record}.items():
            wheel.writestr(path, text)
    return name
