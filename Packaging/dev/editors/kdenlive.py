"""Kdenlive, as a person uses it: a generator's clip is made, laid on the timeline, saved, rendered."""
import re
import time

from failure import Failure, wait_until
from picture import expect_card, read_screen, shows_card
from private_desktop import end_group

FRAMES = 125
SOUND = "EBU stereo ident 1000 Hz"


class Kdenlive:
    """One run of the program on a PrivateDesktop. Pictures of its windows go to `pictures`."""

    def __init__(self, desktop, screen, launcher, pictures):
        self.desktop = desktop
        self.screen = screen
        self.pictures = pictures
        self.folder = desktop.home / "Videos"
        self.program = desktop.start("kdenlive", [str(launcher), "kdenlive"])

    def wait_for_window(self):
        self.screen.find("menu item", "Project", seconds=120)
        self._wait_for_text("Project Bin", "frame")
        time.sleep(2)  # it goes on laying out its docks

    def make_generator_clip(self):
        """Project > Generators > Bars and Tone: an ident is chosen, the live picture looked at, the clip kept."""
        screen = self.screen
        for name in ("Project", "Generators", "Bars and Tone"):
            screen.click(screen.find("menu item", name))
        dialog = screen.find("dialog", "Bars and Tone")
        preview = next(w for w in screen.all(dialog) if w.role == "image")
        wait_until("the dialog shows the card", 30, lambda: shows_card(read_screen(self.desktop.environment), preview.box()))
        self._picture("kdenlive-generator", dialog)
        screen.click(screen.find("combo box", "Steady tone", dialog))
        screen.press("Down", "Return")
        screen.find("combo box", SOUND, dialog)
        screen.click(screen.find("push button", "OK", dialog))
        self._save_as("bars.mlt")
        text = (self.folder / "bars.mlt").read_text()
        for part in (">barsandtone<", ">ebu-stereo-1000<", ">profile<"):
            if part not in text:
                raise Failure(f"the clip that was made does not say {part}:\n{text}")

    def lay_on_timeline(self):
        """The clip is dragged from the bin to the beginning of the upper empty track."""
        screen = self.screen
        cell = screen.find("table cell", "bars.mlt")
        x, y, _, height = cell.box()
        screen.drag((x + 40, y + height // 2), self._start_of_first_video_track())
        monitor = screen.find("frame", "Project Monitor").box()
        wait_until("the project monitor shows the card", 30, lambda: self._monitor_shows_card(monitor))
        time.sleep(2)
        self._picture("kdenlive-timeline", None)

    def save(self):
        self.screen.press("ctrl+s")
        self._save_as("lineup.kdenlive")
        text = wait_until("the project is saved", 30, lambda: (self.folder / "lineup.kdenlive").read_text())
        entries = re.findall(r'<playlist id="playlist\d+">(.*?)</playlist>', text, re.DOTALL)
        laid = [entry for entry in entries if "<entry" in entry]
        if len(laid) != 2 or any("<blank" in entry for entry in laid):
            raise Failure(f"the clip should start on one video and one audio track; {len(laid)} tracks have it, "
                          f"{sum('<blank' in entry for entry in laid)} of them not at their beginning")

    def render(self):
        """Project > Render: the lossless preset, rendered by the editor's own queue. The file's name."""
        screen = self.screen
        screen.press("ctrl+Return")
        dialog = screen.find("dialog", "Rendering")
        screen.click(screen.find("table cell", "Lossless/HQ", dialog))
        screen.press("Right")
        screen.click(screen.find("table cell", "FFV1 (ffv1+flac)", dialog))
        file = self.folder / "lineup.mkv"
        wait_until(f"the dialog is to write {file}", 10,
                   lambda: any(w.role == "text" and w.text() == str(file) for w in screen.all(dialog)))
        screen.click(screen.find("push button", "Render to File", dialog))
        log = self.folder / "lineup.mkv.log"
        wait_until("rendering begins", 30, lambda: file.exists() or log.exists())
        try:
            # The renderer removes its log when it is done.
            wait_until("the file is rendered", 180, lambda: file.exists() and not log.exists())
        except Failure as error:
            raise Failure(f"{error}; its log says:\n{log.read_text(errors='replace')[-2000:]}") from error
        time.sleep(1)
        self._picture("kdenlive-render", dialog)
        return file

    def end(self):
        end_group(self.program)

    def check_runs(self):
        if self.program.poll() is not None:
            raise Failure(f"Kdenlive ended with status {self.program.returncode}:\n{self.desktop.log('kdenlive')[-2000:]}")

    def _wait_for_text(self, name, role):
        self.check_runs()
        self.screen.find(role, name)

    def _save_as(self, name):
        dialog = self.screen.find("dialog", "Save As")
        self.screen.find("text", "File name:", dialog)
        self.screen.type(str(self.folder / name))
        self.screen.press("Return")
        wait_until(f"{name} is written", 30, lambda: (self.folder / name).exists())

    def _start_of_first_video_track(self):
        """The timeline draws itself; its widget ends the editor's lower left part. Tracks begin right of 169 points of
        headers, and V1 is the second of them, 74 points high, below a ruler of 79."""
        x, y, _, _ = max((w.box() for w in self.screen.all() if w.role == "frame" and w.name == "Offscreen"),
                         key=lambda box: box[1])
        return x + 169, y + 79 + 74 + 20

    def _monitor_shows_card(self, box):
        """The picture lies at an unknown height: as wide as the monitor, or cut off at its right."""
        x, y, width, _ = box
        return shows_card(read_screen(self.desktop.environment), (x, y + 60, width, 400))

    def _picture(self, name, widget):
        file = self.pictures / f"{name}.png"
        self.desktop.screenshot(file, widget.box() if widget else None)
