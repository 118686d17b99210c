"""A film of a model on a turntable, as pictures; and as a film, where ffmpeg is installed.

    python3 Examples/turntable.py model.step film/ --frames 120
"""

import argparse
import math
import pathlib
import shutil
import subprocess

import quillet

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
options.add_argument("folder", type=pathlib.Path)
options.add_argument("--frames", type=int, default=60)
options.add_argument("--width", type=int, default=960)
options.add_argument("--height", type=int, default=600)
chosen = options.parse_args()

quillet.open_document(chosen.model)
chosen.folder.mkdir(parents=True, exist_ok=True)
camera = quillet.camera
camera.fit()
target, up = camera.target, (0.0, 0.0, 1.0)
reach = math.dist(camera.eye, target)
# Nothing is to leave the picture while it turns, so that the frame holds the ball around the model.
bounds = quillet.model().bounds
ball = math.dist(*bounds) if bounds else 1
for frame in range(chosen.frames):
    angle = 2 * math.pi * frame / chosen.frames
    eye = (target[0] + reach * 0.87 * math.cos(angle), target[1] + reach * 0.87 * math.sin(angle),
           target[2] + reach * 0.5)
    camera.set(eye=eye, target=target, up=up, width=ball * chosen.width / chosen.height, height=ball)
    quillet.picture(chosen.width, chosen.height).save(chosen.folder / f"frame{frame:04}.png")
print(f"{chosen.frames} pictures")
if shutil.which("ffmpeg"):
    subprocess.run(["ffmpeg", "-y", "-loglevel", "error", "-framerate", "30", "-i", str(chosen.folder / "frame%04d.png"),
                    "-pix_fmt", "yuv420p", str(chosen.folder / "film.mp4")], check=True)
