"""The copy of the sources in which mistakes are made, and its build: build/mutation/source, built as ./dev test builds, so
that a compiler cache serves both."""

import json
import os
import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
HOME = ROOT / "build" / "mutation"
SOURCE = HOME / "source"
BUILD = SOURCE / "build" / "release"

os.environ |= {"CCACHE_BASEDIR": str(SOURCE), "CCACHE_NOHASHDIR": "1", "CCACHE_SLOPPINESS": "pch_defines,time_macros"}
os.umask(0o022)  # the program takes up no plug-in that everybody can write to


def quietly(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          check=False, **options)


def ninja(*targets, with_mistake=False):
    """Whether it builds. What a mistake compiles to is not kept in the compiler cache."""
    more = {"CCACHE_READONLY": "1"} if with_mistake else {}
    return quietly("ninja", "-j1" if with_mistake else "-j2", "-C", BUILD, *targets, env={**os.environ, **more})


def build_product():
    """What mistakes are made in; tests are built when they are asked."""
    built = ninja("lineup_cli", "lineup_studio", "lineup-decode", "lineup-check", "lineup-media", "zelui-qt", "BarsAndToneModule", "mltlineup",
                  "gstlineup")
    if built.returncode != 0:
        sys.exit(built.stdout)


def copy_sources():
    """What git would keep, copied where it differs, so that only what changed is compiled again; whether any did."""
    listed = set(quietly("git", "-C", ROOT, "ls-files", "-co", "--exclude-standard").stdout.splitlines())
    changed = False
    for name in listed:
        origin, copy = ROOT / name, SOURCE / name
        if origin.is_file() and (not copy.exists() or origin.read_bytes() != copy.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(origin, copy)
            copy.chmod(origin.stat().st_mode)
            changed = True
    for copy in [path for path in SOURCE.rglob("*") if path.is_file() and not path.is_relative_to(SOURCE / "build")]:
        if str(copy.relative_to(SOURCE)) not in listed:
            copy.unlink()
            changed = True
    return changed


def configure():
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    # A library with a mistake takes the place of the right one without another link of the programs, and a program is
    # not run to list its tests whenever it is linked.
    result = quietly("cmake", "--preset", "release-tests", *launcher, "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                     "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", cwd=SOURCE)
    if result.returncode != 0:
        sys.exit(result.stdout)


def in_tree(path):
    """A path of the build as one of the source tree."""
    return os.path.relpath(os.path.normpath(os.path.join(BUILD, path)), SOURCE)


def inputs_of(target):
    """Everything that a target is made of or needs beside it, libraries that it loads among it, as the build knows it."""
    return {in_tree(line) for line in quietly("ninja", "-C", BUILD, "-t", "inputs", target).stdout.splitlines()}


def objects_by_file():
    """{file of the sources: the objects that it was compiled into, or included by, when they were made last}"""
    found, current = {}, None
    for line in quietly("ninja", "-C", BUILD, "-t", "deps").stdout.splitlines():
        if line and not line.startswith(" "):
            current = in_tree(line.split(":")[0])
        elif line:
            file = in_tree(line.strip())
            if not file.startswith(("..", "build/")):
                found.setdefault(file, set()).add(current)
    return found


def sources_of_units(targets):
    """The sources that are compiled several at once for these targets."""
    units = [unit for target in targets for unit in (BUILD / "units" / target).glob("*.cpp")]
    return {line.split('"')[1] for unit in units for line in unit.read_text().splitlines() if line.startswith("#include")}


def listed_tests():
    listed = subprocess.run(["ctest", "--show-only=json-v1"], cwd=BUILD, stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, check=True)
    return json.loads(listed.stdout)["tests"]
