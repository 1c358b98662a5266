"""Runs a test under the limits that end what a mistake may start: a loop, a wait for something that never comes, memory
without end."""

import os
import resource
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass

TICKS = os.sysconf("SC_CLK_TCK")
PAGE = os.sysconf("SC_PAGE_SIZE")
MOST_RESIDENT = 4 << 30
MOST_FILE = 24 << 30
IDLE_SECONDS = 30  # in which nothing of the test runs or waits for a disk
LOOK_SECONDS = 0.2


@dataclass(frozen=True)
class Outcome:
    passed: bool
    seconds: float  # of the processor
    why: str = ""


def look_at(session):
    """(processor seconds, resident bytes, does any run, process ids) of the processes of a session."""
    ticks, pages, running, ids = 0, 0, False, []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat", encoding="ascii", errors="replace") as file:
                fields = file.read().rpartition(")")[2].split()
        except OSError:
            continue
        if int(fields[3]) == session:
            ids.append(int(entry))
            ticks += sum(map(int, fields[11:15]))
            pages += int(fields[21])
            running |= fields[0] in "RD"
    return ticks / TICKS, pages * PAGE, running, ids


def end_session(session):
    for process in look_at(session)[3]:
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            pass


def limit():
    resource.setrlimit(resource.RLIMIT_FSIZE, (MOST_FILE, MOST_FILE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def watch(child, seconds):
    """Why it was ended, or nothing when it ended by itself."""
    busy_at, busy_seconds = time.monotonic(), 0.0
    while True:
        try:
            child.wait(LOOK_SECONDS)
            return ""
        except subprocess.TimeoutExpired:
            pass
        used, resident, running, _ = look_at(child.pid)
        if running or used > busy_seconds:
            busy_at, busy_seconds = time.monotonic(), used
        if used > seconds:
            return "took too long"
        if resident > MOST_RESIDENT:
            return "took too much memory"
        if time.monotonic() - busy_at > IDLE_SECONDS:
            return "waited without end"


def run(command, seconds, folder, temporary, environment, output):
    """Runs `command` in `folder` with at most so many processor seconds; files that it leaves in `temporary` go."""
    temporary.mkdir(parents=True, exist_ok=True)
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    with open(output, "wb") as log:
        child = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, cwd=folder, preexec_fn=limit,
            start_new_session=True, env={**os.environ, **environment, "TMPDIR": str(temporary)})
        try:
            why = watch(child, seconds)
            if not why and child.returncode < 0:
                why = f"was ended by signal {-child.returncode}"
        finally:
            end_session(child.pid)
            child.wait()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    shutil.rmtree(temporary, ignore_errors=True)
    used = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return Outcome(not why and child.returncode == 0, used, why)
