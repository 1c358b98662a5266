"""The screen as a person uses it: widgets are found by what they are called, and get real events of mouse and keyboard."""
import os
import subprocess
import time

from failure import Failure, wait_until

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402: the version comes first


class Widget:
    """A widget as the accessibility service describes it."""

    def __init__(self, accessible):
        self.accessible = accessible
        self.role = accessible.get_role_name()
        self.name = accessible.get_name() or ""

    def box(self):
        """x, y, width, height on the screen."""
        extents = self.accessible.get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    def centre(self):
        x, y, width, height = self.box()
        return x + width // 2, y + height // 2

    def has(self, state):
        return self.accessible.get_state_set().contains(state)

    def text(self):
        interface = self.accessible.get_text_iface()
        return Atspi.Text.get_text(interface, 0, -1) if interface else ""

    def is_on_screen(self):
        x, y, width, height = self.box()
        return self.has(Atspi.StateType.SHOWING) and width > 0 and height > 0 and x + width > 0 and y + height > 0

    def __repr__(self):
        return f"{self.role} '{self.name}'"


class Screen:
    """Finds widgets of the programs on a PrivateDesktop. Every search has a limit of time."""

    def __init__(self, desktop):
        self.environment = desktop.environment
        # The service is found through this process's own environment.
        os.environ.update({name: self.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})

    def find(self, role, name, within=None, seconds=20):
        """The first widget of the role that is shown and called `name`."""
        return wait_until(f"there is a {role} '{name}'", seconds, lambda: self.look(role, name, within))

    def look(self, role, name, within=None):
        """What `find` finds, or None."""
        return next((w for w in self.all(within) if w.role == role and w.name.replace("&", "") == name and w.is_on_screen()),
                    None)

    def all(self, within=None, depth=16):
        """Every widget there is, or every one within a widget."""
        if within is None:
            desktop = Atspi.get_desktop(0)
            desktop.clear_cache()
            yield from (w for app in children(desktop) for w in self._below(app, depth))
        else:
            yield from self._below(within.accessible, depth)

    def _below(self, accessible, depth):
        try:
            yield Widget(accessible)
            if depth > 0 and accessible.get_child_count() < 300:
                for child in children(accessible):
                    yield from self._below(child, depth - 1)
        except GLib.Error:
            return  # it has gone meanwhile

    def click(self, widget):
        self.click_at(*widget.centre())

    def click_at(self, x, y, button=1):
        self._do("mousemove", "--sync", x, y, "sleep", "0.15", "click", button)
        time.sleep(0.3)

    def drag(self, start, end):
        """Takes what lies at `start` to `end`, by way of points in between, as a hand does."""
        steps = [(start[0] + (end[0] - start[0]) * i // 12, start[1] + (end[1] - start[1]) * i // 12) for i in range(1, 13)]
        self._do("mousemove", "--sync", *start, "sleep", "0.2", "mousedown", 1, "sleep", "0.2")
        for x, y in steps:
            self._do("mousemove", x, y, "sleep", "0.08")
        self._do("sleep", "0.5", "mouseup", 1)
        time.sleep(0.5)

    def press(self, *keys):
        self._do("key", "--clearmodifiers", "--delay", "60", *keys)
        time.sleep(0.3)

    def type(self, text):
        self._do("type", "--clearmodifiers", "--delay", "15", text)
        time.sleep(0.3)

    def _do(self, *arguments):
        try:
            subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True, timeout=30,
                           capture_output=True, text=True)
        except (subprocess.CalledProcessError, subprocess.TimeoutExpired) as error:
            raise Failure(f"xdotool {' '.join(map(str, arguments))}: {error}") from error


def children(accessible):
    for i in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(i)
        if child is not None:
            yield child
