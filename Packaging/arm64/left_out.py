"""The tests that ./dev arm64 leaves out, or takes a sample of, where what is built runs emulated: the one table of them."""
from typing import NamedTuple


class Row(NamedTuple):
    """Tests whose whole names `names`, a regular expression, fits; why; and of how many of them one runs, 0 if none does.

    What is sampled runs the first of its tests in order of their numbers, and from there every `one_of`-th.
    """

    names: str
    reason: str
    one_of: int = 0


LATER = "not run emulated yet"

# The first row that fits a test decides.
LEFT_OUT = (
    Row(r"PlaceTrust\.(RefusesWhatBelongsToSomebodyElse|RefusesALinkThatSomebodyElseMade)",
        "the namespace that emulated.sh makes knows one user alone, who can give no file away"),
    Row(r"(HostileDecoder\.IsNotMistakenForARecordingWhereItIsMissing|RunInChild\.ThrowsWhenThereIsNoSuchProgram)",
        "qemu-user lets no process share its memory with the one that it starts, by which that one says that it cannot"),
    Row(r"Mlt\.LongRun\..*", "the memory that it watches would be qemu-user's own"),
    Row(r"Docs\.CommandsRun\.Docs/host-interface", "its host is compiled for this machine, and loads no bundle for another"),
    Row(r"Docs\.CommandsRun\.Docs/checking", "the program adds that its decoder keeps its rights, as it does below qemu-user"),
    Row(r"Laboratory\..*", "recordings by the hundred take hours; the tests of Check hold single ones of each kind"),
    Row(r"FormatTable\.TheLargestPicturesAreWritten", LATER),
    Row(r"ScanFiles\.SayWhichFieldIsFirstInEveryContainerAndCodecThatHasFields", LATER),
    Row(r"PictureWatch\.("
        r"SaysNothingOfPicturesThatShowNoCardUnlessOneIsDue|SaysWhenNoMorePicturesCome)", LATER),
    Row(r"Relay\.LosesAndDelaysWhatTheWatchThenNames", LATER),
    Row(r"SoundWatch\.("
        r"TellsWhenAFaultBeginsAndWhenItEnds|TellsACycleAfterTheOtherAndNoFaultOfAnUndamagedFeed|"
        r"MeasuresWhatACodecLeavesAndSaysWhatStaysOpen|KnowsHowFastTheSoundIsToAMillionth|"
        r"TellsTheSendersClockInEachCycleOnceItIsKnown|SaysThatThereIsNoLineup|"
        r"TakesNoMoreMemoryTheLongerItGoesOn)", LATER),
    Row(r"Check\.("
        r"PrintsALineOfJsonForEachRecordingInTheirOrder|EndsWithTheWorstOfSeveral|"
        r"SaysNothingQuietlyUnlessSomethingIsWrong|ReadsFromPipesAndStandardInput|"
        r"LooksAtTheStretchThatItIsToldTo|LetsMoreBeOffWhereItIsToldTo|WritesAReportOfEachKind|"
        r"ReplacesAReportAsAWholeOrNotAtAll|IsColouredOnATerminalAlone|ShowsOnATerminalHowFarItIs|"
        r"EndsByTheSignalThatStopsIt|TeachesItsUse|WatchesAStreamThatAnotherProgramSends|"
        r"WatchesOneFeedThatCanBeRead)", LATER),
    Row(r"Validate\.("
        r"RunsEveryCheckOfTheListInItsOrder|RunsTheChosenChecksOnce|ASeedFindsTheSameAgain|"
        r"ShowsAFaultAndHowToSeeItAgain|RunsInItsOwnProcessForADebugger|GoesOnAfterACrash|"
        r"LoadsABundleFromAnyFolderThatAPersonNames|UsedWronglySaysHow|SkipsWhatCannotBeRunAndStillFails|"
        r"NothingIsSkippedForAWrongInitAnswer|SkipsTheSearchForLeaksWhereMemoryCannotBeCounted|"
        r"ThePageListsTheChecksAsTheProgramDoes|TheProcessOfACheckReportsToNobodyElse)", LATER),
    Row(r"Start\.("
        r"OfInfoLoadsNothingButThePlugInAndTheLanguagesOwnLibraries|OfAWaveFileLoadsNoMoreThanThat|"
        r"OfNumbersAndDefaultSettingsLoadsNoMoreThanThat|OfAMovieLoadsTheMediaLibrariesAndNoDrawingOnes|"
        r"OfAnOverviewLoadsTheDrawingLibraryAndNoMediaOnes)", LATER),
    Row(r"Lossless/IdentFilesIn\.("
        r"HoldEachBlitsBurstUnderItsChannelsName/mov|HoldEachBlitsBurstUnderItsChannelsName/mkv|"
        r"HoldEachBlitsBurstUnderItsChannelsName/wav|HoldEachEbuBurstUnderItsChannelsName/mov|"
        r"HoldEachEbuBurstUnderItsChannelsName/mkv|HoldEachEbuBurstUnderItsChannelsName/wav)", LATER),
    Row(r"Idents/CycleFiles\.("
        r"SwitchOnTheSample/Stereo1000|SwitchOnTheSample/Stereo400|SwitchOnTheSample/Multichannel|"
        r"SwitchOnTheSample/Blits)", LATER),
    Row(r"EveryFault/ValidateFault\.("
        r"IsFoundByItsCheck/NeverReturns_audio_buffers|"
        r"IsFoundByItsCheck/PlaysOddRatesInEightChannels_hostile_audio|"
        r"IsFoundByItsCheck/RemembersRequests_any_order|IsFoundByItsCheck/LeavesTheLastPeak_peak_buffers|"
        r"IsFoundByItsCheck/PeaksUpsideDown_peak_buffers|"
        r"IsFoundByItsCheck/PeaksChangeTheirRequest_peak_records|"
        r"IsFoundByItsCheck/PeaksRestart_peak_splits|"
        r"IsFoundByItsCheck/PeaksAreHalfTheAudio_peaks_match_audio|"
        r"IsFoundByItsCheck/TakesPeakCountsAsUnsigned_hostile_peaks|"
        r"IsFoundByItsCheck/LeavesTheTopLine_frames_drawn_whole|"
        r"IsFoundByItsCheck/DrawsPastTheRow_frames_drawn_whole|"
        r"IsFoundByItsCheck/DrawsFloatAlone_frames_drawn_whole|"
        r"IsFoundByItsCheck/DrawsFloatAlone_frame_records|IsFoundByItsCheck/DrawsFloatAlone_card_bars|"
        r"IsFoundByItsCheck/FrameChangesItsRequest_frame_records|"
        r"IsFoundByItsCheck/DrawsAnyFormat_frame_formats|"
        r"IsFoundByItsCheck/DrawsFramesOfNoSize_frames_of_no_size|"
        r"IsFoundByItsCheck/SwapsTheChroma_card_bars)", LATER),
)
