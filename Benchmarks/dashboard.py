#!/usr/bin/python3
"""From a click on the item service's page to the design in the program's window, beside a bare round trip of the same service.

    Benchmarks/dashboard.py [--build DIR] [--rounds N] [--cold N] [--picture FILE]

A team's service, a browser without a screen, and the program on a screen of its own, signed in with a keyring. Two designs are opened in turn
by clicks; then, with no program running, the page's link goes through xdg-open and the desktop entry, as a browser hands it over. Needs
the target item_client, Xvfb, openbox, xdotool, chromium, xdg-utils, dbus and gnome-keyring.
"""

import argparse
import contextlib
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "Tests/Services/Itemhub"), str(HERE.parent / "Tests/UI/Commands/Itemhub"), str(HERE)]
IN_SESSION = "QUILLET_BENCHMARK_SESSION"


def clicked(page, address, item):
    """Presses the button; when that was."""
    page.open(f"{address}dashboard#/items/{item}")
    page.find("p.small", f"Item {item} ")
    page.run("addEventListener('click', () => { window.pressed = Date.now(); }, {capture: true, once: true})")
    page.click("button", "Open in Quillet")
    return page.run("return window.pressed") / 1000


def round_trip(team):
    """The page asks, and is told how it stands."""
    begin = time.perf_counter()
    asked = team.boss("POST", "/program/requests", {"name": "Nothing", "args": {}}).json
    team.boss("GET", f"/program/requests/{asked['id']}")
    took = time.perf_counter() - begin
    team.sql(f"DELETE FROM program_request WHERE id = {asked['id']}")
    return took


def told(name, times, bare):
    middle = statistics.median(times)
    print(f"{name}: {1000 * middle:.0f} ms (from {1000 * min(times):.0f} to {1000 * max(times):.0f}), {middle / bare:.1f} round trips", flush=True)


def measure(options, folder, display):
    import browser
    import service
    from desktop import Desktop, fill, until
    root = pathlib.Path(options.build) / "root"
    service.PROGRAM = str(root / "bin/quillet-itemhub")
    desktop = Desktop(folder, root, display)
    team = service.ServiceTest
    with contextlib.ExitStack() as stack:
        team.addClassCleanup = lambda what, *more: stack.callback(what, *more)
        team.setUpClass()
        team.sql = team.service.sql
        address = f"http://127.0.0.1:{team.service.port}/"
        items = fill(team, desktop, folder)
        bare = statistics.median(round_trip(team) for _ in range(50))
        print(f"a bare round trip: {1000 * bare:.2f} ms", flush=True)
        desktop.sign_in(address, team.boss.token)
        desktop.trust(address)
        page = browser.Browser()
        stack.callback(page.close)
        page.open(team.boss("POST", "/dashboard/links").json["url"])
        page.find("h1", "Home")
        program = subprocess.Popen(["quillet"], env=desktop.environment, stderr=subprocess.DEVNULL)
        try:
            until(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "quillet"], env=desktop.environment,
                                         capture_output=True).stdout)
            desktop.run("sleep", "4")  # It signs in behind its window.
            times = []
            for number in range(options.rounds + 1):
                name = list(items)[number % 2]
                pressed = clicked(page, address, items[name])
                times.append(desktop.shows(name) - pressed)
            told("from a click to the program's window, the first time", times[:1], bare)
            told("from a click to the program's window", times[1:], bare)
            if options.picture:
                desktop.run("import", "-window", "root", options.picture)
        finally:
            program.terminate()
            program.wait()
        times = []
        for number in range(options.cold):
            name = list(items)[number % 2]
            clicked(page, address, items[name])
            link = page.find("a[href^='quillet:']", "Start Quillet").get_attribute("href")
            begun = time.time()
            subprocess.Popen(["xdg-open", link], env=desktop.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            times.append(desktop.shows(name) - begun)
            page.find(".program p", "Done in Quillet.")
            desktop.end_programs()
        told("from the page's link to the window of a program that it starts", times, bare)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default=str(HERE.parent / "build/release"))
    parser.add_argument("--rounds", type=int, default=10)
    parser.add_argument("--cold", type=int, default=3)
    parser.add_argument("--picture", help="where a picture of the screen goes")
    options = parser.parse_args()
    if not os.environ.get(IN_SESSION):
        os.execvpe("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv], {**os.environ, IN_SESSION: "1"})
    import window
    with tempfile.TemporaryDirectory() as name, window.screen() as display:
        manager = subprocess.Popen(["openbox"], env={**os.environ, "DISPLAY": display}, stderr=subprocess.DEVNULL)
        try:
            measure(options, pathlib.Path(name), display)
        finally:
            manager.terminate()
            manager.wait()


if __name__ == "__main__":
    main()
