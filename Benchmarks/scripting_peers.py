#!/usr/bin/python3
"""Times the same small scripts in Quillet and in the CAD scripting consoles that are installed, in one run.

Each makes boxes, and then reads area and centre of all their faces. Rounds alternate; the start isn't counted. A box of
Quillet's is a component of a document, with its undo step and its mesh; one of the others is a shape alone. Then a
folder of small transcripts, tested over two processes, beside the same transcripts replayed one by one over two, and all of
them in one process, which has no start but its own.

    Benchmarks/scripting_peers.py [--rounds N] [--boxes N] [--transcripts N] [--build DIR]
"""

import argparse
import concurrent.futures
import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import time

QUILLET = """
import sys, time
import quillet, Design
boxes = int(sys.argv[1])
quillet.new_document()
Design.Box(1, 1, 1)    # loads the kernel
quillet.new_document()
start = time.perf_counter()
for i in range(boxes):
    Design.Box(1, 1, 1, (2 * i, 0, 0))
print("boxes", time.perf_counter() - start)
parts = quillet.model().children
start = time.perf_counter()
faces = [face for part in parts for face in part.faces]
for face in faces:
    face.area, face.centre
print("faces", time.perf_counter() - start)
print("count", len(faces))
"""

GMSH = """
import sys, time
import gmsh
gmsh.initialize()
gmsh.option.setNumber("General.Terminal", 0)
occ = gmsh.model.occ
start = time.perf_counter()
for i in range(int(sys.argv[1])):
    occ.addBox(2 * i, 0, 0, 1, 1, 1)
occ.synchronize()
print("boxes", time.perf_counter() - start)
faces = gmsh.model.getEntities(2)
start = time.perf_counter()
for dimension, tag in faces:
    occ.getMass(dimension, tag), occ.getCenterOfMass(dimension, tag)
print("faces", time.perf_counter() - start)
print("count", len(faces))
"""

DRAW = """
pload MODELING
set start [clock microseconds]
for {set i 0} {$i < BOXES} {incr i} { box b$i [expr 2 * $i] 0 0 1 1 1 }
puts "boxes [expr ([clock microseconds] - $start) / 1e6]"
set faces 0
set start [clock microseconds]
for {set i 0} {$i < BOXES} {incr i} { foreach face [explode b$i f] { sprops $face; incr faces } }
puts "faces [expr ([clock microseconds] - $start) / 1e6]"
puts "count $faces"
exit
"""

TRANSCRIPT = "Design.New\nDesign.Box {0} 2 3\nDesign.Sphere {0}\nBody.CheckVolume box Box1 = {1} mm^3\n"


def told(words, environment):
    output = subprocess.run(words, env=environment, check=True, capture_output=True, text=True, errors="replace",
                            stdin=subprocess.DEVNULL).stdout
    pairs = [line.split(" ") for line in output.splitlines()]
    return {pair[0]: float(pair[1]) for pair in pairs if len(pair) == 2 and pair[0] in ("boxes", "faces", "count")}


def consoles(arguments, folder):
    """What each is started with."""
    quillet = {**os.environ, "PYTHONPATH": arguments.build + "/root/lib/python", "QUILLET_PROFILE_DIR": folder + "/profile"}
    found = {"quillet": (["/usr/bin/python3", "-c", QUILLET, str(arguments.boxes)], quillet)}
    if subprocess.run(["/usr/bin/python3", "-c", "import gmsh"], capture_output=True).returncode == 0:
        found["gmsh"] = (["/usr/bin/python3", "-c", GMSH, str(arguments.boxes)], dict(os.environ))
    if draw := shutil.which("occt-draw"):
        script = pathlib.Path(folder, "draw.tcl")
        script.write_text(DRAW.replace("BOXES", str(arguments.boxes)))
        # Its commands are found by the libraries' names without a version, which only the files for developers have.
        for library in pathlib.Path("/usr/lib/x86_64-linux-gnu").glob("libTK*.so.7"):
            pathlib.Path(folder, library.name.removesuffix(".7")).symlink_to(library)
        found["occt-draw"] = ([draw, "-b", "-f", str(script)], {**os.environ, "LD_LIBRARY_PATH": folder})
    return found


def compare(arguments, folder):
    best = {}
    for _ in range(arguments.rounds):
        for name, (words, environment) in consoles(arguments, folder).items():
            for what, value in told(words, environment).items():
                best.setdefault(name, {})[what] = min(value, best.get(name, {}).get(what, value))
        for link in pathlib.Path(folder).glob("libTK*.so"):
            link.unlink()
    own = best["quillet"]
    print(f"{'console':12} {'boxes':>8} {'ms':>8} {'x':>6} {'faces':>8} {'ms':>8} {'x':>6}")
    for name, one in best.items():
        if len(one) < 3:
            print(f"{name:12} could not do it")
            continue
        print(f"{name:12} {arguments.boxes:8} {1000 * one['boxes']:8.0f} {one['boxes'] / own['boxes']:6.2f} "
              f"{one['count']:8.0f} {1000 * one['faces']:8.0f} {one['faces'] / own['faces']:6.2f}")


def processor_time():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def compare_folder(arguments, folder):
    program = arguments.build + "/root/bin/quillet"
    transcripts = pathlib.Path(folder, "transcripts")
    transcripts.mkdir()
    for i in range(1, arguments.transcripts + 1):
        transcripts.joinpath(f"{i:03}.txt").write_text(TRANSCRIPT.format(i, 6 * i))

    def replay(path):
        subprocess.run([program, "--headless", "--profile-dir", f"{folder}/p-{path.stem}", "--replay", str(path)], check=True,
                       capture_output=True)

    def one_by_one():
        with concurrent.futures.ThreadPoolExecutor(2) as two:
            list(two.map(replay, sorted(transcripts.iterdir())))

    def tested():
        subprocess.run([program, "--test", str(transcripts), "--jobs", "2"], check=True, capture_output=True)

    all_of_them = pathlib.Path(folder, "all.txt")
    all_of_them.write_text("".join(f"Transcripting.Replay transcripts/{path.name}\nScript.DiscardChanges\nDocument.Close\n"
                                   for path in sorted(transcripts.iterdir())))

    def in_one():
        replay(all_of_them)

    times = {one_by_one: [], in_one: [], tested: []}
    for _ in range(max(2, arguments.rounds // 2)):
        for work, taken in times.items():
            start, used = time.perf_counter(), processor_time()
            work()
            taken.append((time.perf_counter() - start, processor_time() - used))
    (alone, alone_used), (_, least), (together, used) = (min(taken) for taken in times.values())
    print(f"{arguments.transcripts} transcripts over two processes: {alone:.1f} s by themselves, {together:.1f} s by --test, "
          f"{together / alone:.2f} times")
    print(f"in processor time: {alone_used:.1f} s by themselves, {used:.1f} s by --test, {used / alone_used:.2f} times; {least:.1f} s "
          f"all in one process")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--boxes", type=int, default=1000)
    parser.add_argument("--transcripts", type=int, default=200)
    parser.add_argument("--build", default=str(pathlib.Path(__file__).resolve().parent.parent / "build/release"))
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        compare(arguments, folder)
        compare_folder(arguments, folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
