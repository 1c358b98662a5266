"""The tests that ./dev arm64 leaves out, or takes a sample of, where what is built runs emulated: the one table of them."""
from typing import NamedTuple


class Row(NamedTuple):
    """Tests whose whole names `names`, a regular expression, fits; why; and of how many of them one runs, 0 if none does.

    What is sampled runs the first of its tests in order of their numbers, and from there every `one_of`-th.
    """

    names: str
    reason: str
    one_of: int = 0


LATER = "not run to its end emulated yet"

# The first row that fits a test decides.
LEFT_OUT = (
    Row(r"PlaceTrust\.(RefusesWhatBelongsToSomebodyElse|RefusesALinkThatSomebodyElseMade)",
        "the namespace that emulated.sh makes knows one user alone, who can give no file away"),
    Row(r"(HostileDecoder\.IsNotMistakenForARecordingWhereItIsMissing|RunInChild\.ThrowsWhenThereIsNoSuchProgram)",
        "qemu-user lets no process share its memory with the one that it starts, by which that one says that it cannot"),
    Row(r"Mlt\.LongRun\..*", "the memory that it watches would be qemu-user's own"),
    Row(r"Docs\.CommandsRun\.Docs/host-interface", "its host is compiled for this machine, and loads no bundle for another"),
    Row(r"Docs\.CommandsRun\.Docs/checking", "the program adds that its decoder keeps its rights, as it does below qemu-user"),
    Row(r"Start\.(OfInfoLoads|OfAWaveFile|OfNumbers).*", "the linker lists the libraries of qemu-user beside the program's"),
    Row(r"EveryFault/ValidateFault\.IsFoundByItsCheck/NeverReturns_audio_buffers",
        "the half second that it gives is over before the emulated program has come so far"),
    Row(r"Laboratory\..*", "recordings by the hundred take hours; the tests of Check hold single ones of each kind"),
    Row(r"FormatTable\.TheLargestPicturesAreWritten", LATER),
    Row(r"ScanFiles\.SayWhichFieldIsFirstInEveryContainerAndCodecThatHasFields", LATER),
    Row(r"SoundWatch\.("
        r"TellsWhenAFaultBeginsAndWhenItEnds|TellsACycleAfterTheOtherAndNoFaultOfAnUndamagedFeed|"
        r"MeasuresWhatACodecLeavesAndSaysWhatStaysOpen|KnowsHowFastTheSoundIsToAMillionth|"
        r"TellsTheSendersClockInEachCycleOnceItIsKnown|SaysThatThereIsNoLineup|"
        r"TakesNoMoreMemoryTheLongerItGoesOn)", LATER),
    Row(r"Check\.("
        r"WritesAReportOfEachKind|WatchesOneFeedThatCanBeRead)", LATER),
)
