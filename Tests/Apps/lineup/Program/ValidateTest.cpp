// lineup validate as a person runs it: every check is proved able to fail, by a bundle that is wrong in one way.
#include "Tests/Faults/Faults.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
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

// A fault, and one of the checks that find it.
struct FoundFault {
    faults::Fault fault;
    faults::Found found;
};

std::ostream& operator<<(std::ostream& out, const FoundFault& each) {
    return out << each.fault.bundle << ": " << each.fault.what << ' ' << each.found.check;
}

std::vector<FoundFault> FoundFaults() {
    std::vector<FoundFault> all;
    for (const faults::Fault& fault : faults::Faults()) {
        for (const faults::Found& found : fault.found) {
            all.push_back({fault, found});
        }
    }
    return all;
}

class Validate : public test::TestFolder {
protected:
    [[nodiscard]] test::RunResult Run(const std::string& arguments) const {
        return test::RunProgram("'" TEST_LINEUP "' validate " + arguments, Folder());
    }
    [[nodiscard]] static std::string Fault(const std::string& name) { return "'" TEST_BUNDLES "/" + name + ".bundle'"; }
};

const std::string kOurs = "'" TEST_BUNDLE "'";

class ValidateFault : public Validate, public testing::WithParamInterface<FoundFault> {};
INSTANTIATE_TEST_SUITE_P(EveryFault, ValidateFault, testing::ValuesIn(FoundFaults()), [](const auto& row) {
    std::string name = std::string(row.param.fault.bundle) + "_" + row.param.found.check;
    std::ranges::replace(name, '-', '_');
    return name;
});

TEST_P(ValidateFault, IsFoundByItsCheck) {
    const faults::Found& found = GetParam().found;
    const auto result =
        Run(Fault(GetParam().fault.bundle) + " --json --seed 1 --only " + found.check + " " + found.arguments);
    const std::string outcome = found.outcome;
    const bool isFault = outcome != "warning" && outcome != "passed";
    EXPECT_EQ(result.exitCode, isFault ? 1 : 0) << result.err;
    const json report = json::parse(result.out);
    ASSERT_EQ(report["checks"].size(), 1U);
    EXPECT_EQ(report["checks"][0]["id"], found.check);
    EXPECT_EQ(report["checks"][0]["outcome"], outcome) << report["checks"][0]["text"];
    EXPECT_THAT(report["checks"][0]["text"], HasSubstr(found.text));
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

// Checks by what came of them.
std::set<std::string> ChecksThat(const json& report, const char* outcome) {
    std::set<std::string> ids;
    for (const json& check : report["checks"]) {
        if (check["outcome"] == outcome) {
            ids.insert(check["id"].get<std::string>());
        }
    }
    return ids;
}

TEST_F(Validate, PassesTheExampleOfThePagesWhole) {
    const auto result = Run(Fault("Grey") + " --json");
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    const json report = json::parse(result.out);
    EXPECT_EQ(report["isBarsAndTone"], false);
    EXPECT_EQ(report["tally"]["passed"], report["checks"].size()) << result.out;
    for (const json& check : report["checks"]) {
        EXPECT_EQ(check["set"], "interface");
    }
}

TEST_F(Validate, PassesAnImporterThatHasNothingInCommonWithOurs) {
    const auto result = Run(Fault("ClickImporter") + " --json");
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    const json report = json::parse(result.out);
    const std::set<std::string> leftOut = {"file-formats", "private-copies", "release-frees",
                                           "peak-buffers", "peak-records",   "peak-splits"};
    EXPECT_EQ(ChecksThat(report, "skipped"), leftOut) << "what it need not serve";
    EXPECT_EQ(report["tally"]["passed"], report["checks"].size() - leftOut.size()) << result.out;
}

TEST_F(Validate, HoldsAForeignBundleToTheClipWhenAPersonSaysSo) {
    const auto result =
        Run(Fault("Grey") + " --clip --seed 1 --only steady-tone --only clip-file-type --only audio-records");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, HasSubstr("promises the interface and the clip of Bars and Tone\n"));
    EXPECT_THAT(result.out, HasSubstr("passed     audio-records"));
    EXPECT_THAT(result.out, HasSubstr("FAILED     steady-tone"));
    EXPECT_THAT(result.out, HasSubstr("--only steady-tone --seed 1 --clip\n")) << "to see it again";
    EXPECT_THAT(Run(Fault("Grey") + " --only init-answer").out, HasSubstr("promises the interface\n"));
}

// What says that it is Bars and Tone: an identifier, a file type.
TEST_F(Validate, HoldsABundleToTheClipThatSaysItIsBarsAndTone) {
    const auto saysSo = [&](const std::string& bundle) {
        return json::parse(Run(bundle + " --json --only init-answer").out)["isBarsAndTone"].get<bool>();
    };
    EXPECT_TRUE(saysSo(kOurs));
    EXPECT_TRUE(saysSo(Fault("NothingWrong"))) << "by its file type";
    EXPECT_FALSE(saysSo(Fault("AnotherFileType")));

    namespace fs = std::filesystem;
    const fs::path renamed = Folder() / "Renamed.bundle";
    fs::copy(fs::path(TEST_BUNDLES) / "AnotherFileType.bundle", renamed, fs::copy_options::recursive);
    std::string info = test::ReadFile(renamed / "Contents/Info.plist");
    const std::string identifier = "org.barsandtone.test.AnotherFileType";
    info.replace(info.find(identifier), identifier.size(), "org.barsandtone.importer");
    std::ofstream(renamed / "Contents/Info.plist") << info;
    EXPECT_TRUE(saysSo("'" + renamed.string() + "'")) << "by its identifier";
}

TEST_F(Validate, NamesTheRequestThatEndedTheProcess) {
    const json report = json::parse(Run(Fault("Aborts") + " --json --only audio-records").out);
    const json& check = report["checks"][0];
    EXPECT_EQ(check["outcome"], "crashed");
    ASSERT_EQ(check["requests"].size(), 1U) << check;
    EXPECT_EQ(check["requests"][0]["selector"], 25);
    EXPECT_EQ(check["requests"][0]["text"],
              "selector 25, audio of 100 samples from 132000 on, settings 01000000 00803b47 02000000 02000000 00000000 "
              "00007a44 0000803e 00000000");
    EXPECT_THAT(check["text"], HasSubstr(check["requests"][0]["text"].get<std::string>()));

    const json unloading = json::parse(Run(Fault("AbortsWhenUnloaded") + " --json --only init-answer").out);
    EXPECT_EQ(unloading["checks"][0]["requests"][0]["selector"], nullptr);
    EXPECT_EQ(unloading["checks"][0]["requests"][0]["text"], "unloading the executable");

    const json passed = json::parse(Run(kOurs + " --json --only init-answer").out);
    EXPECT_THAT(passed["checks"][0]["requests"], IsEmpty());
}

TEST_F(Validate, EveryCheckIsProvedAbleToFail) {
    std::set<std::string> proved;
    for (const FoundFault& each : FoundFaults()) {
        if (std::string(each.found.outcome) == "failed") {
            proved.insert(each.found.check);
        }
    }
    const json list = json::parse(Run("--list --json").out);
    ASSERT_GT(list.size(), 30U);
    for (const json& check : list) {
        EXPECT_EQ(proved.count(check["id"].get<std::string>()), 1U) << check["id"] << " has no bundle that fails it";
    }
}

// A bundle that says nothing promises the interface alone, one that is said to be Bars and Tone both sets.
TEST_F(Validate, RunsEveryCheckOfTheListInItsOrder) {
    const json list = json::parse(Run("--list --json").out);
    const auto result = Run(Fault("RefusesEverything") + " --clip --json");
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    ASSERT_EQ(report["checks"].size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        for (const char* const key : {"id", "set", "promise"}) {
            EXPECT_EQ(report["checks"][i][key], list[i][key]);
        }
    }
    const json interface = json::parse(Run(Fault("RefusesEverything") + " --json").out);
    const auto ofInterface = std::ranges::count_if(list, [](const json& check) { return check["set"] == "interface"; });
    EXPECT_EQ(interface["checks"].size(), ofInterface);
    EXPECT_EQ(interface["checks"].back()["set"], "interface");
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
             {kOurs + " --only no-such-check", "--only no-such-check: is not a check"},
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
             {"'" + Folder().string() + "'", "failed", 0},    // a folder, but not a bundle
             {Fault("NoEntryPoint"), "failed", 1},            // a bundle, but not an importer
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
    // Run by hand it has no one to report to, and fails.
    EXPECT_EQ(Run("--run-check init-answer " + kOurs + " 3>&-").exitCode, 1);
}

}  // namespace
