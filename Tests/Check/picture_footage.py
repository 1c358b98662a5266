"""Photographs and films of games that are no card, out of the Debian packages of Packaging/dependencies/laboratory.txt."""

import os
from dataclasses import dataclass

from sound_files import run

PHOTOGRAPHS = ("lomiri-wallpapers-16.04",)
ENDINGS = (".jpg", ".jpeg", ".png", ".webp", ".tif")
LEAST = 80_000  # bytes: drawings and icons are smaller
# A whole one, parts of it, one turned over; with few colours, which lie in patches then.
VIEWS = ("scale=1280:-2", "crop=iw/2:ih/2:0:0,scale=640:-2", "crop=iw/2:ih/2:iw/2:0,scale=640:-2",
         "crop=iw/2:ih/2:0:ih/2,scale=640:-2", "crop=iw/2:ih/2:iw/2:ih/2,scale=640:-2",
         "crop=iw/3:ih/3,hflip,scale=720:576", "scale=640:-2,eq=contrast=2.5:saturation=2",
         "scale=640:-2,format=gbrp,lutrgb=r=floor(val/85)*85:g=floor(val/85)*85:b=floor(val/85)*85",
         "scale=40:-2:flags=area,scale=640:-2:flags=neighbor")
SIZE = "1280x720"
RATE = 5  # frames a second
STILLS_EVERY = 2  # s


@dataclass(frozen=True)
class Game:
    """One that plays by itself. `skip`: seconds before there is something to see."""

    name: str
    command: str
    skip: int = 4
    seconds: int = 40


def saver(name):
    return f"/usr/libexec/xscreensaver/{name} -root"


def doom(wad):
    """Its demonstrations are games that somebody played."""
    return (f"SDL_AUDIODRIVER=dummy /usr/games/chocolate-doom -iwad /usr/share/games/doom/{wad}.wad -window -geometry {SIZE} "
            "-nosound")


GAMES = (
    Game("Freedoom, phase 1", doom("freedoom1"), 8), Game("Freedoom, phase 2", doom("freedoom2"), 8),
    *(Game(told, saver(name)) for name, told in (
        ("pacman", "Pac-Man"), ("pong", "Pong"), ("penetrate", "Missile Command"), ("blaster", "a space battle"),
        ("greynetic", "rectangles of many colours"), ("popsquares", "squares"), ("metaballs", "a few soft balls"),
        ("xanalogtv", "an analogue television set"), ("slidescreen", "a sliding puzzle"), ("maze", "a maze"))),
)


def photographs(package):
    """The files of the package that hold one."""
    files = run(["dpkg-query", "--listfiles", package]).decode().splitlines()
    return sorted(file for file in files if file.lower().endswith(ENDINGS) and not os.path.islink(file)
                  and os.path.getsize(file) >= LEAST)


def record(work):
    """A film of the game, on a screen that nobody sees. It must move."""
    folder, game = work
    path = os.path.join(folder, f"{game.name.replace(' ', '-').replace(',', '')}.mkv")
    grab = (f"ffmpeg -v error -nostdin -y -f x11grab -framerate {RATE} -video_size {SIZE} -draw_mouse 0 -i $DISPLAY "
            f"-ss {game.skip} -t {game.seconds} -c:v ffv1 -pix_fmt yuv422p {path}")
    run(["xvfb-run", "-a", "-s", f"-screen 0 {SIZE}x24", "sh", "-c",
         f"{game.command} >/dev/null 2>&1 & player=$!; {grab}; status=$?; kill $player; exit $status"])
    frames = run(["ffmpeg", "-v", "error", "-i", path, "-f", "framemd5", "-"]).decode().splitlines()
    different = len({line.split()[-1] for line in frames if not line.startswith("#")})
    if different < game.seconds * RATE / 4:
        raise RuntimeError(f"{game.name} hardly moves: {different} different frames")
    return game.name, path, game.seconds * RATE
