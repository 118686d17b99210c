#!/usr/bin/env python3
"""Runs litmus, the public tests of WebDAV servers, against one of ours and compares its counts of failures with the known ones.

    litmus.py KIND

Another count means that the server is set up otherwise than it was when the client was tried on it. Exits with 77 if something isn't
installed, unless QUILLET_SERVERS is "required".
"""

import os
import re
import subprocess
import sys

import servers

LITMUS = "/usr/bin/litmus"
# Failures of the suites; None where a suite gives up.
KNOWN = {
    "apache": {"basic": 0, "copymove": 0, "props": 0, "locks": 0},
    "svn": {"basic": 0, "copymove": 3, "props": 8, "locks": 2},
    "nginx": {"basic": 1, "copymove": 3, "props": 4, "locks": None},
    "lighttpd": {"basic": 0, "copymove": 0, "props": 10, "locks": 0},
    "rclone": {"basic": 1, "copymove": 0, "props": 4, "locks": 4},
    "sabre": {"basic": 0, "copymove": 0, "props": 0, "locks": 0},
}
SKIPPED = 77
SECONDS_LIMIT = 120


def failures(server):
    """The count of each suite, and all that litmus printed."""
    environment = {**os.environ, "TESTS": " ".join(KNOWN[server.kind])}
    run = subprocess.run([LITMUS, "--keep-going", server.address, server.user, server.password], env=environment, cwd=server.folder,
                         capture_output=True, timeout=SECONDS_LIMIT, check=False)
    text = run.stdout.decode(errors="replace")
    counts = {}
    for suite, tests, failed in re.findall(r"summary for `(\w+)': of (\d+) tests run: \d+ passed, (\d+) failed", text):
        # A suite that gives up at once has run its first tests alone.
        counts[suite] = None if suite == "locks" and int(tests) <= 3 else int(failed)
    return counts, text


def main():
    kind = sys.argv[1]
    try:
        if not os.path.exists(LITMUS):
            raise servers.Missing(LITMUS)
        with servers.TestServer(kind) as server:
            counts, text = failures(server)
    except servers.Missing as missing:
        print(f"NOTICE: not installed: {missing}")
        return 1 if os.environ.get("QUILLET_SERVERS") == "required" else SKIPPED
    if counts == KNOWN[kind]:
        print(f"As known: {counts}")
        return 0
    print(f"{text}\nFailures of {kind}: {counts}, known: {KNOWN[kind]}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
