"""Licences of Debian packages, as SPDX writes them."""
import pathlib
import re

# Debian's short names; GPL, LGPL and AGPL are put together from their parts below.
SPDX_NAMES = {
    "expat": "MIT", "mit": "MIT", "x11": "X11", "isc": "ISC", "zlib": "Zlib", "bsd-2-clause": "BSD-2-Clause",
    "bsd-3-clause": "BSD-3-Clause", "bsd-4-clause": "BSD-4-Clause", "apache-2.0": "Apache-2.0", "apache-2": "Apache-2.0",
    "bsl-1.0": "BSL-1.0", "wtfpl-2": "WTFPL", "mpl-1.1": "MPL-1.1", "mpl-2.0": "MPL-2.0", "ftl": "FTL", "curl": "curl",
    "libpng": "Libpng", "openssl": "OpenSSL", "artistic": "Artistic-1.0", "cc0-1.0": "CC0-1.0", "ofl-1.1": "OFL-1.1",
    # fmt's exception is part of no list: object code needs no notice.
    "expat with embedded exception": "MIT",
}

# Packages whose copyright file is written for people, or speaks of sources that are not what is built of them.
OF_PACKAGES = {
    "gcc-12": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "gcc-14": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "glibc": "LGPL-2.1-or-later",
    "linux": "GPL-2.0-only WITH Linux-syscall-note",
    "cairo": "LGPL-2.1-only OR MPL-1.1",
    "libxcb": "X11",
    "ffmpeg": "GPL-2.0-or-later",  # Debian builds it with its parts under the GPL
    "mlt": "LGPL-2.1-or-later",
    "glib2.0": "LGPL-2.1-or-later",
    "gst-plugins-base1.0": "LGPL-2.0-or-later",
    "gstreamer1.0": "LGPL-2.0-or-later",
    "icu": "ICU",
    "qt6-tools": "LGPL-3.0-only OR GPL-2.0-only",  # its libraries; its programs are under the GPL
}

GNU = re.compile(r"(a|l)?gpl-(\d)(?:\.(\d))?(\+)?$")


def spdx_name(name):
    """One licence's name; None when this does not know it."""
    name = name.strip().lower()
    gnu = GNU.match(name)
    if gnu:
        kind, major, minor, later = gnu.groups()
        return f"{(kind or '').upper()}GPL-{major}.{minor or 0}-{'or-later' if later else 'only'}"
    return SPDX_NAMES.get(name)


def expression(text):
    """Debian's "LGPL-3 or GPL-2" as an SPDX expression; None when a name in it is unknown."""
    if spdx_name(text):
        return spdx_name(text)
    words = re.split(r"(?:,\s*)?\b(and|or)\b", text)
    names = [spdx_name(word) for word in words[::2]]
    if None in names:
        return None
    operators = [word.upper() for word in words[1::2]]
    return " ".join(part for pair in zip(names, operators + [""]) for part in pair).strip()


def copyright_file(package):
    return pathlib.Path("/usr/share/doc", package.split(":")[0], "copyright")


def of_package(package, source):
    """The licence of most of a package's files as an SPDX expression, NOASSERTION when it cannot be told."""
    if source in OF_PACKAGES:
        return OF_PACKAGES[source]
    file = copyright_file(package)
    text = file.read_text(errors="replace") if file.exists() else ""
    if not text.startswith("Format:"):
        return "NOASSERTION"
    for paragraph in re.split(r"\n\s*\n", text):
        fields = dict(re.findall(r"^([A-Za-z-]+):[ \t]*(.*)$", paragraph, re.MULTILINE))
        if fields.get("Files", "").split()[:1] == ["*"]:
            return expression(fields.get("License", "")) or "NOASSERTION"
    return "NOASSERTION"
