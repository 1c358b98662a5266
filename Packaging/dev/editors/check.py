"""The MLT producer in the editors themselves, on a screen that nobody sees. See Docs/mlt.md."""
import argparse
import sys
import time
from pathlib import Path

from failure import Failure
from kdenlive import FRAMES, Kdenlive
from private_desktop import PrivateDesktop, fresh_folder
from rendered import expect_pictures, expect_sound


def say(sentence):
    print(sentence, file=sys.stderr, flush=True)


def check_kdenlive(desktop, screen, launcher, lineup, folder):
    editor = Kdenlive(desktop, screen, launcher, folder)
    try:
        editor.wait_for_window()
        editor.make_generator_clip()
        say("   Kdenlive: Project, Generators, Bars and Tone shows the card and makes a clip")
        editor.lay_on_timeline()
        editor.save()
        say("   Kdenlive: the clip lies on the timeline, the project is saved")
        file = editor.render()
        say(f"   Kdenlive: {file.name} is rendered by its own queue")
    except Exception:
        desktop.screenshot(folder / "failed.png")
        editor.check_runs()
        raise
    finally:
        editor.end()
    say("   " + expect_pictures(file, lineup, folder, FRAMES))
    say("   " + expect_sound(file, lineup, folder, FRAMES // 25, "--ident", "ebu-stereo-1000"))


def check_shotcut(desktop, screen, launcher, folder):
    from shotcut import open_sample
    samples = sorted((launcher.parent.parent / "share" / "lineup" / "samples").glob("*.mlt"))
    if not samples:
        raise Failure("no sample projects were installed")
    for sample in samples:
        open_sample(desktop, screen, launcher, sample, folder)
        say(f"   Shotcut: {sample.name} opens and shows the card")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="of the prepared home folder, home; also gets logs and pictures")
    parser.add_argument("lineup", help="the program lineup")
    parser.add_argument("editors", nargs="*", default=["kdenlive", "shotcut"], help="kdenlive, shotcut; both unless named")
    arguments = parser.parse_args()
    start = time.monotonic()
    launcher = arguments.folder / "home" / ".local" / "bin" / "lineup-mlt"
    try:
        with PrivateDesktop(arguments.folder) as desktop:
            from screen import Screen  # it is bound to the desktop of its process when it is loaded
            screen = Screen(desktop)
            if "kdenlive" in arguments.editors:
                check_kdenlive(desktop, screen, launcher, arguments.lineup, arguments.folder)
            if "shotcut" in arguments.editors:
                check_shotcut(desktop, screen, launcher, arguments.folder)
    except Failure as failure:
        say(f"check-editors: {failure}")
        say(f"Logs and pictures are in {arguments.folder}.")
        return 1
    say(f"   {time.monotonic() - start:.0f} s; logs and pictures are in {arguments.folder}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
