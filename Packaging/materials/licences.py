"""Licences of Debian packages, as SPDX writes them."""
import pathlib
import re

import copyright

# Debian's short names; GPL, LGPL and AGPL are put together from their parts below.
SPDX_NAMES = {
    "expat": "MIT", "mit": "MIT", "x11": "X11", "isc": "ISC", "zlib": "Zlib", "bsd-2-clause": "BSD-2-Clause",
    "bsd-3-clause": "BSD-3-Clause", "bsd-4-clause": "BSD-4-Clause", "apache-2.0": "Apache-2.0", "apache-2": "Apache-2.0",
    "bsl-1.0": "BSL-1.0", "wtfpl-2": "WTFPL", "mpl-1.1": "MPL-1.1", "mpl-2.0": "MPL-2.0", "ftl": "FTL", "curl": "curl",
    "cc0": "CC0-1.0", "bsd-2": "BSD-2-Clause", "bsd-3": "BSD-3-Clause",
    "bsd-3-clause-clear": "BSD-3-Clause-Clear", "isc-license": "ISC", "afl-2.1": "AFL-2.1", "tu-berlin-2.0": "TU-Berlin-2.0",
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

# Copyright files that are written for people, read by one: the licence of what is built of the source, and words of the file
# that say so. A file that has other words by now is given whole instead.
READ_BY_PEOPLE = {
    "fontconfig": ("HPND-sell-variant", "Permission to use, copy, modify, distribute, and sell this software"),
    "gnutls28": ("LGPL-2.1-or-later", "The main library is licensed under GNU Lesser General Public License (LGPL) version 2.1+"),
    "libdrm": ("MIT", "Permission is hereby granted, free of charge, to any person obtaining a copy of this software"),
    "libgcrypt20": ("LGPL-2.1-or-later", "License (library): LGPLv2.1+"),
    "libproxy": ("LGPL-2.1-or-later", "either version 2.1 of the License, or (at your option) any later version"),
    "libselinux": ("libselinux-1.0", "This library (libselinux) is public domain software, i.e. not copyrighted."),
    "libtasn1-6": ("LGPL-2.1-or-later", "The library itself is licensed as LGPLv2.1+"),
    "libwebp": ("BSD-3-Clause", "Neither the name of Google nor the names of its contributors may be used to endorse"),
    "libxau": ("MIT-open-group", "Except as contained in this notice, the name of The Open Group shall not be used"),
    "libxdmcp": ("MIT-open-group", "Except as contained in this notice, the name of The Open Group shall not be used"),
    "libxfixes": ("HPND-sell-variant AND MIT", "Permission to use, copy, modify, distribute, and sell this software"),
    "libxrender": ("HPND-sell-variant", "Permission to use, copy, modify, distribute, and sell this software"),
    "numactl": ("LGPL-2.1-only", "libnuma is under the GNU Lesser General Public License, v2.1."),
    "pixman": ("MIT", "The following is the MIT license, agreed upon by most contributors."),
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


def operators_between(parts, operators):
    """a, "and", b as one text."""
    return " ".join(part for pair in zip(parts, [word.upper() for word in operators] + [""]) for part in pair).strip()


def expression(text, name_of=spdx_name):
    """Debian's "LGPL-3 or GPL-2, and Expat" as an SPDX expression, names as name_of gives them; None when it gives one as
    None. A comma binds less than the words."""
    groups = re.split(r",\s*(and|or)\s+", text)
    parts = []
    for group in groups[::2]:
        words = re.split(r"\s+(and|or)\s+", group)
        names = [name_of(word) for word in words[::2]]
        if None in names:
            return None
        parts.append(operators_between(names, words[1::2]))
        if len(groups) > 1 and len(names) > 1:
            parts[-1] = f"({parts[-1]})"
    return operators_between(parts, groups[1::2])


def copyright_file(package):
    return pathlib.Path("/usr/share/doc", package.split(":")[0], "copyright")


class Licence:
    """What is said of a package: an SPDX expression of the licences of most of its files; the texts of those that SPDX has no
    name for, reference -> (name, text). Where no licence can be told the expression stands for the whole copyright file, or is
    NOASSERTION where there is no such file; why_not says why."""

    def __init__(self, package, source):
        self.expression, self.texts, self.why_not = "NOASSERTION", {}, ""
        if source in OF_PACKAGES:
            self.expression = OF_PACKAGES[source]
            return
        file = copyright_file(package)
        text = file.read_text(errors="replace") if file.exists() else ""
        self.why_not = self._read(text, source, file) if text.strip() else f"there is no {file}"
        if self.why_not and text.strip():
            self.expression = f"LicenseRef-{re.sub(r'[^A-Za-z0-9.]+', '-', source)}-copyright"
            self.texts = {self.expression: (f"{source}, all notices", text)}
            self.why_not += "; it is given whole"

    def _read(self, text, source, file):
        if not copyright.is_readable(text):
            told, words = READ_BY_PEOPLE.get(source, (None, None))
            if told and words in re.sub(r"\s+", " ", text):
                self.expression = told
                return ""
            return f"{file} is written for people: it has no field Format"
        synopses = copyright.main_licences(text)
        if not synopses:
            return f"{file} describes the licence of most files without naming it"
        found = [expression(synopsis, lambda name: spdx_name(name) or self._reference(text, source, name))
                 for synopsis in synopses]
        if None in found:
            return f"{file} names a licence whose text it does not have: {synopses[found.index(None)]}"
        self.expression = found[0] if len(found) == 1 else " AND ".join(
            f"({part})" if " OR " in part else part for part in found)
        return ""

    def _reference(self, text, source, name):
        body = copyright.licence_text(text, name)
        if not body:
            return None
        reference = "LicenseRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", f"{source}-{name}").strip("-")
        self.texts[reference] = (name, body)
        return reference
