"""Draws the pictures of the documentation anew and compares them, pixel by pixel: check_figures.py ROOT PROGRAM

Every picture that Docs/make-figures draws must be in Docs/images as it is drawn now. Letters and edges are drawn by the
system's own libraries: the comparison of pixels holds on the system that the packages are listed for, Debian 12. On
another one the pictures must be as large, and drawings (SVG) the same."""

import os
import platform
import subprocess
import sys
import tempfile


def has_shown_letters():
    """Whether this is the system that the pictures in Docs/images show."""
    system = platform.freedesktop_os_release()
    return (system["ID"], system.get("VERSION_ID")) == ("debian", "12")


def pixels(picture):
    """Size and R'G'B' bytes of a picture."""
    size = subprocess.run(["ffprobe", "-v", "error", "-select_streams", "v", "-show_entries", "stream=width,height",
                           "-of", "csv=p=0", picture], capture_output=True, text=True, check=True).stdout.strip()
    data = subprocess.run(["ffmpeg", "-v", "error", "-i", picture, "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                          capture_output=True, check=True).stdout
    return size, data


def problem(committed, drawn):
    """What is wrong with the committed picture, or None."""
    if not os.path.exists(committed):
        return "is missing"
    if committed.endswith(".svg"):
        with open(committed, encoding="utf-8") as old, open(drawn, encoding="utf-8") as new:
            return None if old.read() == new.read() else "differs from what is drawn now"
    size, data = pixels(committed)
    new_size, new_data = pixels(drawn)
    if size != new_size:
        return f"is {size} pixels, and {new_size} are drawn now"
    if not has_shown_letters():
        return None
    different = sum(data[i:i + 3] != new_data[i:i + 3] for i in range(0, len(data), 3)) if data != new_data else 0
    return f"differs from what is drawn now in {different} pixels" if different else None


def main():
    root, program = sys.argv[1:]
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([os.path.join(root, "Docs", "make-figures"), folder, program], check=True,
                       stdout=subprocess.DEVNULL)
        names = sorted(os.listdir(folder))
        for name in names:
            wrong = problem(os.path.join(root, "Docs", "images", name), os.path.join(folder, name))
            if wrong:
                failures += 1
                print(f"Docs/images/{name} {wrong}: run Docs/make-figures and look at it", file=sys.stderr)
    print(f"{len(names)} pictures drawn, {failures} of them differ")
    return 1 if failures or not names else 0


if __name__ == "__main__":
    sys.exit(main())
