"""What the system knows of files and packages: dpkg, the dynamic loader, ninja."""
import pathlib
import re
import subprocess


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def needed(file):
    """The names of libraries that a file is linked to."""
    return set(re.findall(r"\(NEEDED\).*\[(.*)\]", run("env", "LC_ALL=C", "readelf", "--dynamic", str(file))))


def loaded(file):
    """Name -> file of every library that the loader takes for it, those of its libraries too."""
    lines = run("ldd", str(file)).splitlines()
    found = {}
    for line in lines:
        match = re.match(r"\s*(?:(\S+) => )?(/\S+) \(0x", line)
        if match:
            path = pathlib.Path(match[2])
            found[match[1] or path.name] = path
        elif "not found" in line:
            raise SystemExit(f"{file} needs what is not here: {line.strip()}")
    return found


def real(path):
    """As dpkg knows it: /lib is a link to /usr/lib, and packages name either."""
    path = pathlib.Path(path).resolve()
    return [str(path)] + ([str(path)[4:]] if str(path).startswith("/usr/lib") else [])


def owners(paths):
    """Path -> Debian package that it belongs to."""
    names = {name: path for path in paths for name in real(path)}
    found = {}
    ordered = sorted(names)
    for start in range(0, len(ordered), 1000):
        # Ends with 1 where one of them is nobody's.
        output = subprocess.run(["dpkg-query", "-S", *ordered[start:start + 1000]], capture_output=True, text=True).stdout
        for line in output.splitlines():
            packages, _, path = line.rpartition(": ")
            if path in names and not packages.startswith("diversion "):
                found[names[path]] = packages.split(", ")[0]
    return found


def facts(packages):
    """Package -> (version, source, homepage)."""
    form = "${binary:Package}\\t${Version}\\t${source:Package}\\t${Homepage}\\n"
    lines = [line.split("\t") for line in run("dpkg-query", "-W", "-f", form, *sorted(packages)).splitlines()]
    known = {name: (version, source, homepage) for name, version, source, homepage in lines}
    known.update({name.split(":")[0]: facts for name, facts in known.items()})
    return known


def headers(build, rooms=("Src/", "Host/", "Apps/", "Bridges/")):
    """The system's headers that went into what the product is made of."""
    found, ours = set(), False
    for line in run("ninja", "-C", str(build), "-t", "deps").splitlines():
        if not line.startswith(" "):
            ours = line.startswith(rooms)
        elif ours and line.strip().startswith("/usr/"):
            found.add(line.strip())
    return found
