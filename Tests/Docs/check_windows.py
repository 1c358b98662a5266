"""Takes the pictures of windows anew and compares them, pixel by pixel: check_windows.py ROOT BUNDLE PROGRAM...

Every picture of the settings dialog and of Lineup Studio in Docs/images must look as the programs draw it now. Like
the figures, they hold on Debian 12, whose letters they show; on another system they must be as large."""

import os
import subprocess
import sys
import tempfile

from check_figures import problem


def main():
    root, bundle, *programs = sys.argv[1:]
    images = os.path.join(root, "Docs", "images")
    shown = sorted(name for name in os.listdir(images) if name.startswith(("settings-", "studio-")))
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for program in programs:
            drawing = subprocess.run([program, folder, bundle], stderr=subprocess.PIPE, text=True, check=False,
                                     env={**os.environ, "QT_QPA_PLATFORM": "offscreen", "QT_SCALE_FACTOR": "2"})
            if drawing.returncode != 0:
                sys.exit(f"{program} ended with {drawing.returncode}: {drawing.stderr}")
        for name in shown:
            drawn = os.path.join(folder, name)
            wrong = problem(os.path.join(images, name), drawn) if os.path.exists(drawn) else "is drawn by no program"
            if wrong:
                failures += 1
                print(f"Docs/images/{name} {wrong}: run Docs/make-screenshots and look at it", file=sys.stderr)
    print(f"{len(shown)} pictures of windows, {failures} of them differ")
    return 1 if failures or not shown else 0


if __name__ == "__main__":
    sys.exit(main())
