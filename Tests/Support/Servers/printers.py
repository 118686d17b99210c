#!/usr/bin/env python3
"""Starts a real print server (CUPS) with one printer, "Kept", for as long as standard input is open.

At the start it prints its address and the folder where it keeps the documents that arrived (`d00001-001` is the first), or "missing" and
what isn't installed. It belongs to the user who calls and listens on this machine alone.
"""

import getpass
import grp
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

from ports import free_port

CUPSD, LPADMIN = "/usr/sbin/cupsd", "/usr/sbin/lpadmin"
SECONDS_TO_START = 20

SETTINGS = """
Listen 127.0.0.1:{port}
Browsing Off
WebInterface No
DefaultAuthType None
PreserveJobFiles Yes
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
"""
FILES = """
User {user}
Group {group}
SystemGroup {group}
ServerRoot {folder}
StateDir {folder}/state
CacheDir {folder}/cache
RequestRoot {folder}/spool
TempDir {folder}/spool
AccessLog {folder}/access
ErrorLog {folder}/error
PageLog {folder}/page
FileDevice Yes
"""


def start(folder):
    """The server's process and its address, once it has the printer."""
    address = f"127.0.0.1:{free_port()}"
    names = {"folder": folder, "user": getpass.getuser(), "group": grp.getgrgid(os.getgid()).gr_name, "port": address.split(":")[1]}
    for name in "state", "cache", "spool":
        (folder / name).mkdir()
    (folder / "cupsd.conf").write_text(SETTINGS.format(**names))
    (folder / "cups-files.conf").write_text(FILES.format(**names))
    # It would start a message bus by way of a display, and wait for that.
    os.environ.pop("DISPLAY", None)
    server = subprocess.Popen([CUPSD, "-f", "-c", folder / "cupsd.conf", "-s", folder / "cups-files.conf"], stdout=sys.stderr)
    add = [LPADMIN, "-h", address, "-p", "Kept", "-E", "-v", "file:/dev/null"]
    deadline = time.monotonic() + SECONDS_TO_START
    while subprocess.run(add, capture_output=True, check=False).returncode:
        if time.monotonic() > deadline or server.poll() is not None:
            server.kill()
            sys.exit("the print server doesn't start:\n" + (folder / "error").read_text())
        time.sleep(0.05)
    return server, address


def main():
    missing = [file for file in (CUPSD, LPADMIN) if not os.path.exists(file)]
    if missing:
        print("missing", ", ".join(missing), flush=True)
        return
    folder = pathlib.Path(tempfile.mkdtemp(prefix="quillet-printers-"))
    try:
        server, address = start(folder)
        print(address, folder / "spool", flush=True)
        sys.stdin.read()
        server.terminate()
        server.wait()
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
