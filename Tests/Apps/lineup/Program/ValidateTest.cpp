// lineup validate as a person runs it: every check is proved able to fail, by a bundle that is wrong in one way.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

struct FaultRow {
    const char* bundle;
    const char* check;
    const char* outcome;
    const char* text;  // a part of what is found
};

std::ostream& operator<<(std::ostream& out, const FaultRow& row) {
    return out << row.bundle << ", " << row.check;
}

const std::vector<FaultRow> kFaults = {
    {"NoExecutable", "bundle-layout", "failed", "has no executable for this platform"},
    {"NoEntryPoint", "entry-point", "failed", "does not export xImportEntry"},
    {"NoEntryPoint", "steady-tone", "failed", "does not export xImportEntry"},
    {"ExportsMore", "entry-point", "warning", "anotherFunction"},
    {"WrongInitAnswer", "init-answer", "failed", "answered with 0 instead of 400"},
    {"InitTouchesReservedField", "init-answer", "failed", "changed at byte 40"},
    {"RefusesEverything", "reserved-selector", "failed", "answered with 3 instead of 100"},
    {"ServesAnUnknownSelector", "unknown-selectors", "failed", "selector 26 is answered with 0 instead of 3"},
    {"WritesForAnUnknownSelector", "unknown-selectors", "failed", "param2 of selector 26 points at: changed"},
    {"FileFormatsDoNotEnd", "file-formats", "failed", "listed twice"},
    {"AnotherFileType", "file-formats", "failed", "XQNV is not offered"},
    {"RefusesEverything", "file-formats", "failed", "index 0 is answered with 3"},
    {"WritesPastThePixelFormats", "pixel-formats", "failed", "index 1, past the end of the list: changed at byte"},
    {"DescribesAnotherRate", "description-with-settings", "failed", "described at 48000 Hz"},
    {"NoChannels", "description-with-settings", "failed", "content flags"},
    {"DescribesNewClipsAsMono", "description-without-settings", "failed", "described with 1 channels"},
    {"DescriptionTouchesReservedBytes", "description-record", "failed", "changed at byte 239"},
    {"RefusesOddSettings", "hostile-descriptions", "failed", "answered with 3 instead of 0"},
    {"SharesPrivateCopies", "private-copies", "failed", "share one private copy"},
    {"PlaysWithoutSettings", "settings-order", "failed", "answered with 0 instead of 5"},
    {"PrefersThePrivateCopy", "settings-order", "failed", "does not go by the settings"},
    {"LeaksPrivateCopies", "release-frees", "failed", "descriptions that were released leak"},
    {"LeaksWithEveryRequest", "requests-keep-no-memory", "failed", "audio requests leak"},
    {"SettingsOfAnotherSize", "settings-size", "failed", "28 bytes instead of 32"},
    {"DefaultsIgnoreTheHostsRate", "settings-defaults", "failed", "the silent defaults at 44100 Hz"},
    {"DefaultsWritePastTheSettings", "settings-defaults", "failed", "written past: 1 bytes after its end"},
    {"LeavesTheLastSample", "audio-buffers", "failed", "was left unwritten"},
    {"WritesPastTheBlock", "audio-buffers", "failed", "written to past the block"},
    {"WritesAnotherChannel", "audio-buffers", "failed", "channel 7, sample 0 was written and should not be"},
    {"SamplesAreNoNumbers", "audio-buffers", "failed", "is not finite"},
    {"AudioChangesItsRequest", "audio-records", "failed", "changed at byte 8"},
    {"AudioChangesTheSettings", "audio-records", "failed", "changed at byte 0"},
    {"SlightlyTooLoud", "steady-tone", "failed", "instead of"},
    {"SwapsCentreAndSurround", "ident-schedules", "failed", "channel 2"},
    {"RestartsThePhase", "audio-splits", "failed", "does not join"},
    {"PositionsOf32Bits", "audio-far", "failed", "cycles away"},
    {"NothingBeforeTheBeginning", "audio-negative", "failed", "cycles away"},
    {"RoundsTheRate", "odd-rates", "failed", "at 11025 Hz"},
    {"PlaysUnknownIdents", "hostile-audio", "failed", "was written and should not be"},
    {"LeavesTheLastPeak", "peak-buffers", "failed", "was left unwritten"},
    {"PeaksChangeTheirRequest", "peak-records", "failed", "changed at byte 16"},
    {"PeaksRestart", "peak-splits", "failed", "do not join"},
    {"PeaksAreHalfTheAudio", "peaks-match-audio", "failed", "the audio of its time"},
    {"TakesPeakCountsAsUnsigned", "hostile-peaks", "failed", "written to past the block"},
    {"LeavesTheTopLine", "frames-drawn-whole", "failed", "line 0, column 0 was left undrawn"},
    {"DrawsPastTheRow", "frames-drawn-whole", "failed", "outside of its picture"},
    {"FrameChangesItsRequest", "frame-records", "failed", "changed at byte 64"},
    {"DrawsAnyFormat", "frame-formats", "failed", "answered with 0 instead of 3"},
    {"DrawsFramesOfNoSize", "frames-of-no-size", "failed", "drew something"},
    {"RemembersRequests", "any-order", "failed", "is not the same"},
    {"ServesOneThreadOnly", "concurrent-requests", "failed", "answered with 3 instead of 0"},
    {"Aborts", "audio-buffers", "crashed", "SIGABRT"},
    {"ExitsAsIfAllWereWell", "audio-buffers", "crashed", "exit code 0 before the check did"},
    {"AbortsWhenUnloaded", "init-answer", "crashed", "SIGABRT"},
    {"NeverReturns", "audio-buffers --timeout 0.5", "timed out", "within 0.5 s"},
    {"Throws", "audio-buffers", "failed", "threw an exception: out of tape"},
};

std::string IdOf(const FaultRow& row) {
    const std::string check = row.check;
    return check.substr(0, check.find(' '));
}

class Validate : public test::TestFolder {
protected:
    [[nodiscard]] test::RunResult Run(const std::string& arguments) const {
        return test::RunProgram("'" TEST_LINEUP "' validate " + arguments, Folder());
    }
    [[nodiscard]] static std::string Fault(const std::string& name) { return "'" TEST_BUNDLES "/" + name + ".bundle'"; }
};

const std::string kOurs = "'" TEST_BUNDLE "'";

class ValidateFault : public Validate, public testing::WithParamInterface<FaultRow> {};
INSTANTIATE_TEST_SUITE_P(EveryFault, ValidateFault, testing::ValuesIn(kFaults), [](const auto& row) {
    std::string name = std::string(row.param.bundle) + "_" + IdOf(row.param);
    std::ranges::replace(name, '-', '_');
    return name;
});

TEST_P(ValidateFault, IsFoundByItsCheck) {
    const auto result = Run(Fault(GetParam().bundle) + " --json --seed 1 --only " + GetParam().check);
    const bool isFault = std::string(GetParam().outcome) != "warning";
    EXPECT_EQ(result.exitCode, isFault ? 1 : 0) << result.err;
    const json report = json::parse(result.out);
    ASSERT_EQ(report["checks"].size(), 1U);
    EXPECT_EQ(report["checks"][0]["id"], IdOf(GetParam()));
    EXPECT_EQ(report["checks"][0]["outcome"], GetParam().outcome) << report["checks"][0]["text"];
    EXPECT_THAT(report["checks"][0]["text"], HasSubstr(GetParam().text));
    EXPECT_EQ(report["passed"], !isFault);
}

// A bundle that fails for being wrong in another way proves nothing: rows begin with one that passes.
TEST_F(Validate, FindsNothingInOurOwnBundleNorInWhatFaultsAreMadeOf) {
    for (const std::string& bundle : {kOurs, Fault("NothingWrong")}) {
        const auto result = Run(bundle + " --json");
        EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
        const json report = json::parse(result.out);
        for (const json& check : report["checks"]) {
            EXPECT_EQ(check["outcome"], "passed") << check;
        }
    }
}

TEST_F(Validate, EveryCheckIsProvedAbleToFail) {
    std::set<std::string> proved;
    for (const FaultRow& row : kFaults) {
        if (std::string(row.outcome) == "failed") {
            proved.insert(IdOf(row));
        }
    }
    const json list = json::parse(Run("--list --json").out);
    ASSERT_GT(list.size(), 30U);
    for (const json& check : list) {
        EXPECT_EQ(proved.count(check["id"].get<std::string>()), 1U) << check["id"] << " has no bundle that fails it";
    }
}

TEST_F(Validate, RunsEveryCheckOfTheListInItsOrder) {
    const json list = json::parse(Run("--list --json").out);
    const auto result = Run(Fault("RefusesEverything") + " --json");
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    ASSERT_EQ(report["checks"].size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(report["checks"][i]["id"], list[i]["id"]);
        EXPECT_EQ(report["checks"][i]["promise"], list[i]["promise"]);
    }
}

TEST_F(Validate, RunsTheChosenChecksOnce) {
    const json report =
        json::parse(Run(kOurs + " --json --only settings-size --only init-answer --only settings-size").out);
    ASSERT_EQ(report["checks"].size(), 2U);
    EXPECT_EQ(report["checks"][0]["id"], "init-answer");
    EXPECT_EQ(report["checks"][1]["id"], "settings-size");
    EXPECT_EQ(report["tally"]["passed"], 2);
}

TEST_F(Validate, ASeedFindsTheSameAgain) {
    const auto textWith = [&](const std::string& seed) {
        const json report = json::parse(Run(Fault("PositionsOf32Bits") + " --json --only audio-far " + seed).out);
        return std::pair(report["seed"].dump(), report["checks"][0]["text"].get<std::string>());
    };
    const auto [seed, text] = textWith("");
    EXPECT_EQ(textWith("--seed " + seed).second, text);
    EXPECT_EQ(textWith("--seed 18446744073709551615").first, "18446744073709551615");
}

TEST_F(Validate, ShowsAFaultAndHowToSeeItAgain) {
    const auto result = Run(Fault("LeavesTheLastSample") + " --seed 7 --only init-answer --only audio-buffers");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, HasSubstr("seed 7\n"));
    EXPECT_THAT(result.out, HasSubstr("passed     init-answer"));
    EXPECT_THAT(result.out, HasSubstr("FAILED     audio-buffers"));
    EXPECT_THAT(result.out, HasSubstr("was left unwritten"));
    EXPECT_THAT(result.out,
                HasSubstr("again: lineup validate " + Fault("LeavesTheLastSample") + " --only audio-buffers --seed 7"));
    EXPECT_THAT(result.out, HasSubstr("1 passed, 1 failed"));
}

TEST_F(Validate, RunsInItsOwnProcessForADebugger) {
    const auto passed = Run(kOurs + " --in-process --only init-answer");
    EXPECT_EQ(passed.exitCode, 0) << passed.err;
    EXPECT_EQ(Run(Fault("WrongInitAnswer") + " --in-process --only init-answer").exitCode, 1);
    EXPECT_EQ(Run(Fault("Aborts") + " --in-process --only audio-buffers").exitCode, 128 + 6);  // the shell's words
}

TEST_F(Validate, GoesOnAfterACrash) {
    const json report = json::parse(Run(Fault("Aborts") + " --json --only audio-buffers --only settings-size").out);
    EXPECT_EQ(report["checks"][0]["outcome"], "passed");
    EXPECT_EQ(report["checks"][1]["outcome"], "crashed");
}

TEST_F(Validate, LoadsABundleFromAnyFolderThatAPersonNames) {
    namespace fs = std::filesystem;
    const fs::path folder = Folder() / "for all to write in; it's";
    fs::create_directory(folder);
    fs::copy(fs::path(TEST_BUNDLES) / "NothingWrong.bundle", folder / "-b.bundle", fs::copy_options::recursive);
    fs::permissions(folder, fs::perms::all);
    const auto result = test::RunProgram(
        "cd \"" + folder.string() + "\" && '" TEST_LINEUP "' validate --only settings-size -- -b.bundle", Folder());
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
}

TEST_F(Validate, UsedWronglySaysHow) {
    for (const auto& [arguments, text] : std::vector<std::pair<std::string, std::string>>{
             {"", "BUNDLE"},
             {"nowhere/Missing.bundle", "nowhere/Missing.bundle: there is no such folder"},
             {kOurs + " --only no-such-check", "--only no-such-check: is no check"},
             {kOurs + " --only", "--only"},
             {kOurs + " --timeout 0", "--timeout 0: must be above 0"},
             {kOurs + " --timeout nan", "--timeout"},
             {kOurs + " --seed dice", "--seed"},
             {kOurs + " --seed -1", "--seed"},
             {kOurs + " another.bundle", "another.bundle"},
         }) {
        const auto result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments << "\n" << result.out << result.err;
        EXPECT_THAT(result.err, HasSubstr(text)) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
    }
}

TEST_F(Validate, SkipsWhatCannotBeRunAndStillFails) {
    for (const auto& [bundle, outcome, index] : std::vector<std::tuple<std::string, std::string, std::size_t>>{
             {"'" + Folder().string() + "'", "failed", 0},    // a folder that is no bundle
             {Fault("NoEntryPoint"), "failed", 1},            // a bundle that is no importer
             {Fault("AbortsWhenUnloaded"), "crashed", 1}}) {  // one that brings every process down
        const auto result = Run(bundle + " --json");
        EXPECT_EQ(result.exitCode, 1) << bundle;
        const json report = json::parse(result.out);
        EXPECT_EQ(report["passed"], false);
        EXPECT_EQ(report["checks"][index]["outcome"], outcome) << report["checks"][index];
        EXPECT_EQ(report["tally"]["passed"], index);
        EXPECT_EQ(report["tally"]["skipped"], report["checks"].size() - index - 1);
        EXPECT_THAT(report["checks"].back()["text"], HasSubstr(report["checks"][index]["id"].get<std::string>()));
    }
}

TEST_F(Validate, NothingIsSkippedForAWrongInitAnswer) {
    const json report =
        json::parse(Run(Fault("WrongInitAnswer") + " --json --only init-answer --only settings-size").out);
    EXPECT_EQ(report["checks"][0]["outcome"], "failed");
    EXPECT_EQ(report["checks"][1]["outcome"], "failed");
}

#ifdef TEST_UNCOUNTED_HEAP
TEST_F(Validate, SkipsTheSearchForLeaksWhereMemoryCannotBeCounted) {
    const auto result = test::RunProgram("LD_PRELOAD='" TEST_UNCOUNTED_HEAP "' '" TEST_LINEUP "' validate " +
                                             Fault("LeaksPrivateCopies") + " --json --only release-frees",
                                         Folder());
    const json report = json::parse(result.out);
    EXPECT_EQ(report["checks"][0]["outcome"], "skipped");
    EXPECT_THAT(report["checks"][0]["text"], HasSubstr("cannot be counted"));
}
#endif

TEST_F(Validate, ThePageListsTheChecksAsTheProgramDoes) {
    EXPECT_THAT(test::ReadFile(TEST_SOURCE_DIR "/Docs/validate.md"), HasSubstr(Run("--list").out));
}

TEST_F(Validate, TheProcessOfACheckReportsToNobodyElse) {
    // Run by hand it has no one to report to, and that is no success.
    EXPECT_EQ(Run("--run-check init-answer " + kOurs + " 3>&-").exitCode, 1);
}

}  // namespace
