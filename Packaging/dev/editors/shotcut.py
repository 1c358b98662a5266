"""Shotcut, as a person uses it: a sample project is opened and shown."""
import re

from failure import Failure, wait_until
from picture import read_screen, shows_card
from private_desktop import end_group

# What its log says of the machine and not of the project.
OF_THE_MACHINE = re.compile(r"Leap|checkForUpdate|Network|jack|Jack|joystick|gamepad", re.IGNORECASE)


def open_sample(desktop, screen, launcher, sample, pictures):
    """Opens a sample project; fails unless its picture is shown, nothing is asked and the log tells of no error."""
    name = f"shotcut-{sample.stem}"
    program = desktop.start(name, [str(launcher), "shotcut", "--noupgrade", str(sample)])

    def opened():
        if program.poll() is not None:
            raise Failure(f"Shotcut ended with status {program.returncode}:\n{desktop.log(name)[-2000:]}")
        asked = next((w for w in screen.all(depth=3) if w.role in ("dialog", "alert") and w.is_on_screen()), None)
        if asked:
            desktop.screenshot(pictures / f"{name}.png")
            raise Failure(f"Shotcut asks something about {sample.name}: {asked}; see {pictures / name}.png")
        return screen.look("frame", f"{sample.name} - Shotcut")

    try:
        window = wait_until(f"Shotcut opens {sample.name}", 90, opened, pause=1)
        wait_until(f"Shotcut shows the card of {sample.name}", 30,
                   lambda: player_shows_card(read_screen(desktop.environment), window.box()), pause=1)
        desktop.screenshot(pictures / f"{name}.png", window.box())
    finally:
        end_group(program)
    errors = [line for line in desktop.log(name).splitlines()
              if ("[Error" in line or "[Fatal" in line or "barsandtone" in line) and not OF_THE_MACHINE.search(line)]
    if errors:
        raise Failure(f"Shotcut's log on {sample.name}:\n" + "\n".join(errors))


def player_shows_card(screen, window):
    """The player draws itself, between panels: its picture is looked for all over the window, at the sizes it has there."""
    left, top, width, height = window
    boxes = ((x, y, size, 8) for y in range(top + 80, top + height // 2, 20) for size in range(316, 328)
             for x in range(left, left + width - size, 2))
    return any(shows_card(screen, box) for box in boxes)
