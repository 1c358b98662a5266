"""The areas that the score is told by, and the tests that are asked about a mistake in each."""

SOURCES = ("include", "Src", "Host", "Apps", "Bridges")

# Folders whose files are counted together: the longest that fits counts.
AREAS = (
    "include",
    "Src/BarsAndToneImporter", "Src/ToneGenerator", "Src/ToneSettingsDialog", "Src/VectorPrimitives",
    "Host/Interface", "Host/Services", "Host/Desktop",
    "Host/Lineup/Values", "Host/Lineup/Plugin", "Host/Lineup/Clip", "Host/Lineup/Picture", "Host/Lineup/Files",
    "Host/Lineup/Export", "Host/Lineup/Validation",
    "Apps/lineup", "Apps/manual", "Apps/studio", "Bridges/MLT",
)

# Where the tests are that may notice a mistake in a folder, if they link it or run it. Others would pass it by.
TESTS = {
    "include": ("Tests/Host", "Tests/Apps", "Tests/Bridges"),
    "Src": ("Tests/Src",),
    "Host/Interface": ("Tests/Host", "Tests/Src"),
    "Host/Services": ("Tests/Host", "Tests/Src", "Tests/Apps/lineup", "Tests/Architecture", "Tests/Fuzz"),
    "Host/Desktop": ("Tests/Host/Desktop", "Tests/Apps/studio", "Tests/Fuzz"),
    "Host/Lineup": ("Tests/Host", "Tests/Apps", "Tests/Bridges", "Tests/Fuzz", "Tests/Docs"),
    "Host/Lineup/Validation": ("Tests/Host/Lineup/Validation", "Tests/Apps/lineup"),
    "Apps/lineup": ("Tests/Apps", "Tests/Host/Desktop", "Tests/Docs"),
    "Apps/manual": ("Tests/Apps/manual",),
    "Apps/studio": ("Tests/Apps/studio",),
    "Bridges/MLT": ("Tests/Bridges",),
}


def longest(file, folders):
    return max((folder for folder in folders if file.startswith(folder + "/")), key=len)


def area_of(file):
    return longest(file, AREAS)


def test_folders(file):
    return TESTS[longest(file, TESTS)]
