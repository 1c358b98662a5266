"""A program under a watch: what it holds of memory and descriptors, as it goes on and on."""
import contextlib
import os
import pathlib
import signal
import statistics
import subprocess
import time

MEBIBYTE = 1 << 20
MOST_GROWTH = 2 * MEBIBYTE  # from the second quarter of a run to the last: allocators keep a little more now and then
SAMPLE_SECONDS = 1
STAND_STILL_EVERY = 30
STAND_STILL_SECONDS = 2


class Sample:
    def __init__(self, memory, descriptors, ticks):
        self.memory, self.descriptors, self.ticks = memory, descriptors, ticks


def held_by(process):
    """Bytes that belong to it alone and are no file's, open descriptors, clock ticks of processor time."""
    folder = pathlib.Path("/proc", str(process))
    rollup = (folder / "smaps_rollup").read_text().splitlines()
    memory = sum(int(line.split()[1]) * 1024 for line in rollup if line.startswith(("Anonymous:", "Swap:")))
    fields = (folder / "stat").read_text().rpartition(")")[2].split()
    return Sample(memory, len(list((folder / "fd").iterdir())), int(fields[11]) + int(fields[12]))


def faults_of(samples):
    """What is wrong with a program that was seen so, in sentences."""
    quarter = len(samples) // 4
    if quarter == 0:
        return ["it was seen too few times"]
    early, late = samples[quarter:2 * quarter], samples[-quarter:]
    faults = []
    growth = (statistics.median(sample.memory for sample in late) - statistics.median(sample.memory for sample in early))
    if growth > MOST_GROWTH:
        faults.append(f"its memory grew by {growth / MEBIBYTE:.1f} MiB")
    # Some are open for a moment, or closed: as few must be open at the least as were most of the time before.
    usual = statistics.median_low(sample.descriptors for sample in early)
    fewest = min(sample.descriptors for sample in late)
    if fewest > usual:
        faults.append(f"it holds {fewest} descriptors, after {usual}")
    if late[-1].ticks == late[0].ticks:
        faults.append("it stands still")
    return faults


class Watched:
    """A command, or a row of them connected by pipes, that is to go on until it is ended."""

    def __init__(self, name, *commands, environment=None, folder=None):
        self.name, self.samples, self.faults, self.processes = name, [], [], []
        self.log = pathlib.Path(folder, name.replace(" ", "-") + ".log")
        feed = subprocess.DEVNULL
        with open(self.log, "wb") as log:
            for number, command in enumerate(commands):
                last = number == len(commands) - 1
                process = subprocess.Popen(command, stdin=feed, stdout=log if last else subprocess.PIPE, stderr=log,
                                           env=environment, cwd=folder,
                                           start_new_session=True)
                if number:
                    feed.close()
                feed = process.stdout
                self.processes.append(process)
        self.samples = [[] for _ in self.processes]

    def look(self):
        for process, samples in zip(self.processes, self.samples):
            if process.poll() is None:
                samples.append(held_by(process.pid))
            elif not self.faults:
                self.faults.append(f"it ended with {process.returncode}: {self.log.read_text(errors='replace')[-300:]}")

    def stand_still(self, still):
        for process in self.processes:
            if process.poll() is None:
                process.send_signal(signal.SIGSTOP if still else signal.SIGCONT)

    def end(self):
        """What is wrong with it, after all."""
        for process in self.processes:
            with contextlib.suppress(ProcessLookupError):  # all gone
                os.killpg(process.pid, signal.SIGTERM)  # what it started, too
        for process in self.processes:
            try:
                process.wait(20)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                self.faults.append("it did not end when it was told to")
        if not self.faults:
            self.faults = [fault for samples in self.samples for fault in faults_of(samples)]
        return self.faults

    def summary(self):
        held = ", ".join(f"{samples[len(samples) // 4].memory / MEBIBYTE:.1f} to {samples[-1].memory / MEBIBYTE:.1f} MiB, "
                         f"{samples[len(samples) // 4].descriptors} to {samples[-1].descriptors} descriptors"
                         for samples in self.samples if samples)
        return f"{self.name}: {held}"


def watch(programs, seconds, between=lambda: None):
    """Looks at all of them for so long, and lets them stand still now and then, as a machine does that is put to sleep."""
    begun = stood = time.monotonic()
    while time.monotonic() - begun < seconds:
        time.sleep(SAMPLE_SECONDS)
        for program in programs:
            program.look()
        between()
        if time.monotonic() - stood > STAND_STILL_EVERY:
            for still in (True, False):
                for program in programs:
                    program.stand_still(still)
                time.sleep(STAND_STILL_SECONDS if still else 0)
            stood = time.monotonic()
