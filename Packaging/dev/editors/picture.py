"""What the screen shows, as numbers."""
import subprocess

from failure import Failure

# The 75 % bars of the card from left to right: gray, yellow, cyan, green, magenta, red, blue. R', G', B' of 8 bits.
BARS = [(191, 191, 191), (191, 191, 0), (0, 191, 191), (0, 191, 0), (191, 0, 191), (191, 0, 0), (0, 0, 191)]
# They take the middle three quarters of the picture's width.
FIRST = 0.125
WIDTH = 0.75 / 7
# An 8-bit screen, and 8 bits of Y'CbCr before that.
TOLERANCE = 4


def read_screen(environment):
    """Width, height and the bytes R, G, B of each pixel of the screen."""
    run = subprocess.run(["import", "-window", "root", "-depth", "8", "rgb:-"], env=environment, capture_output=True,
                         check=True, timeout=30)
    size = subprocess.run(["xdotool", "getdisplaygeometry"], env=environment, capture_output=True, check=True,
                          text=True, timeout=30).stdout.split()
    return int(size[0]), int(size[1]), run.stdout


def expect_card(screen, box):
    """Fails unless the card's upper bars are shown in `box` (x, y, width, height on the screen)."""
    columns, _, pixels = screen
    x, y, width, height = box
    line = y + height // 4
    for i, bar in enumerate(BARS):
        at = 3 * (line * columns + x + int(width * (FIRST + (i + 0.5) * WIDTH)))
        shown = tuple(pixels[at:at + 3])
        if any(abs(a - b) > TOLERANCE for a, b in zip(shown, bar)):
            raise Failure(f"bar {i + 1} of the card should be {bar} at {at // 3 % columns},{line}; there is {shown}")


def shows_card(screen, box):
    try:
        expect_card(screen, box)
    except Failure:
        return False
    return True
