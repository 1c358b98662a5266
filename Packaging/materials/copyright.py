"""Debian's machine-readable copyright files."""
import re


def paragraphs(text):
    """Each a field -> its value, the lines that continue it too."""
    for block in re.split(r"\n\s*\n", text):
        fields, name = {}, None
        for line in block.splitlines():
            match = re.match(r"([A-Za-z][A-Za-z-]*):[ \t]*(.*)$", line)
            if match:
                name = match[1]
                fields[name] = match[2]
            elif name and line[:1] in (" ", "\t"):
                fields[name] += "\n" + line.strip()
        yield fields


def is_readable(text):
    return re.match(r"Format(-Specification)?:", text) is not None


def main_licences(text):
    """Synopses of the licences of most files: that of "*", and where there is no such paragraph, all but those of Debian's
    own files."""
    found = []
    for fields in paragraphs(text):
        files = fields.get("Files", "").split()
        synopsis = fields.get("License", "").split("\n")[0].strip()
        if files[:1] == ["*"]:
            return [synopsis] if synopsis else []
        if files and synopsis and not all(file.startswith("debian/") for file in files) and synopsis not in found:
            found.append(synopsis)
    return found


def licence_text(text, name):
    """The text of a licence that the file gives under a name, for one paragraph or for all; empty where it gives none."""
    for fields in paragraphs(text):
        synopsis, _, body = fields.get("License", "").partition("\n")
        if synopsis.strip().lower() == name.strip().lower() and body:
            return re.sub(r"(?m)^\.$", "", body)
    return ""
