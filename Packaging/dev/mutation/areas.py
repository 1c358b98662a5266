"""The areas that the score is told by, and the tests that are asked about a mistake in each."""

SOURCES = ("include", "Src", "Host", "Apps", "Bridges")

# Where the tests are that may notice a mistake in a folder, if they link it or run it. Others would pass it by.
TESTS = {
    "include": ("Tests/Host", "Tests/Apps", "Tests/Bridges"),
    "Src": ("Tests/Src",),
    "Host/Interface": ("Tests/Host", "Tests/Src"),
    "Host/Services": ("Tests/Host", "Tests/Src", "Tests/Apps/lineup", "Tests/Architecture", "Tests/Fuzz"),
    "Host/Desktop": ("Tests/Host/Desktop", "Tests/Apps/studio", "Tests/Docs", "Tests/Fuzz"),
    "Host": ("Tests",),
    "Host/Lineup": ("Tests/Host", "Tests/Apps", "Tests/Bridges", "Tests/Fuzz", "Tests/Docs"),
    "Host/Lineup/Check": ("Tests/Host/Lineup/Check", "Tests/Apps", "Tests/Check", "Tests/Docs", "Tests/Fuzz"),
    "Host/Lineup/Send": ("Tests/Host/Lineup/Send", "Tests/Apps/lineup", "Tests/Docs", "Tests/Fuzz"),
    "Host/Lineup/Validation": ("Tests/Host/Lineup/Validation", "Tests/Apps/lineup"),
    "Apps": ("Tests",),
    "Apps/lanes": ("Tests/Apps", "Tests/Docs"),
    "Apps/lineup": ("Tests/Apps", "Tests/Host/Desktop", "Tests/Docs"),
    "Apps/manual": ("Tests/Apps/manual",),
    "Apps/studio": ("Tests/Apps/studio", "Tests/Docs"),
    "Bridges": ("Tests/Bridges",),
}


def area_of(file):
    """The folder that its mistakes are counted with: a room of Host/Lineup, a folder of Src, Host, Apps or Bridges."""
    folders = file.split("/")[:-1]
    if folders[0] == "include":
        return "include"
    return "/".join(folders[: 3 if folders[:2] == ["Host", "Lineup"] else 2])


def test_folders(file):
    return TESTS[max((folder for folder in TESTS if file.startswith(f"{folder}/")), key=len)]
