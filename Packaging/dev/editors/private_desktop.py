"""A desktop of its own for programs under test: screen, window manager, session bus, home folder."""
import os
import shutil
import signal
import subprocess
from pathlib import Path

from failure import Failure, wait_until

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
SIZE = (1280, 960)


class PrivateDesktop:
    """Programs that are started here see nothing of the person's: no display, folders, settings or session bus. All of
    them end with it. `folder` holds the home folder, `home`, and what the programs print; it must exist."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.home = self.folder / "home"
        self._children = []
        self.environment = self._fresh_environment()

    def __enter__(self):
        try:
            self._start_screen()
            self._start_bus()
            self.start("openbox", ["openbox"])
            self.start("accessibility", [LAUNCHER, "--launch-immediately"])
            # A program that comes up before them stays without a frame, and its widgets without names.
            wait_until("the window manager runs", 60, lambda: self._succeeds("xdotool", "get_num_desktops"))
            wait_until("the accessibility service runs", 60, lambda: self._succeeds(
                "dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                "org.a11y.Bus.GetAddress"))
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for child in reversed(self._children):
            if child.poll() is None:
                end_group(child)
        self._children.clear()

    def start(self, name, command, **options):
        """Runs a program as the leader of a group of processes; its output goes to NAME.log."""
        with open(self.folder / f"{name}.log", "wb") as log:
            options = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log, "env": self.environment,
                       "cwd": self.home, "start_new_session": True} | options
            try:
                child = subprocess.Popen(command, **options)
            except FileNotFoundError as error:
                raise Failure(f"cannot run {command[0]}: {error.strerror}") from error
        self._children.append(child)
        return child

    def log(self, name):
        return (self.folder / f"{name}.log").read_text(errors="replace")

    def screenshot(self, file, box=None):
        """The screen, or a `box` of it (x, y, width, height), as a PNG file."""
        crop = ["-crop", "{2}x{3}+{0}+{1}".format(*box), "+repage"] if box else []
        subprocess.run(["import", "-window", "root", *crop, "-strip", "-define", "png:compression-level=9", str(file)],
                       env=self.environment, check=True, timeout=30)

    def _succeeds(self, *command):
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=30, check=False).returncode == 0

    def _fresh_environment(self):
        home = self.home
        runtime = self.folder / "runtime"
        for place in (home / ".config", home / ".cache", home / ".local" / "share", home / ".local" / "state", runtime):
            place.mkdir(parents=True, exist_ok=True)
        runtime.chmod(0o700)
        return {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_CACHE_HOME": str(home / ".cache"),
            "XDG_DATA_HOME": str(home / ".local" / "share"),
            "XDG_STATE_HOME": str(home / ".local" / "state"),
            "XDG_RUNTIME_DIR": str(runtime),
            "LC_ALL": "C.UTF-8",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "SDL_AUDIODRIVER": "dummy",
            "NO_AT_BRIDGE": "0",
        }

    def _start_screen(self):
        """Xvfb chooses a free number and writes it down."""
        read, write = os.pipe()
        self.start("xvfb", ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{SIZE[0]}x{SIZE[1]}x24", "-nolisten", "tcp"],
                   pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise Failure("Xvfb did not start:\n" + self.log("xvfb"))
        self.environment["DISPLAY"] = f":{number}"

    def _start_bus(self):
        self.start("bus", ["dbus-daemon", "--session", "--nofork", "--print-address"])
        address = wait_until("the session bus starts", 20, lambda: next(
            (line for line in self.log("bus").splitlines() if line.startswith("unix:")), None))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address


def end_group(child, patience=5):
    """Ends a program and all that it started."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(child.pid, number)
        except ProcessLookupError:
            break
        try:
            child.wait(patience)
        except subprocess.TimeoutExpired:
            continue
    child.wait()


def fresh_folder(folder):
    """`folder`, empty."""
    shutil.rmtree(folder, ignore_errors=True)
    Path(folder).mkdir(parents=True)
    return Path(folder)
