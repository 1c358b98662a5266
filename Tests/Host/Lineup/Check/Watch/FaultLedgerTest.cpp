#include "Host/Lineup/Check/Watch/FaultLedger.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

namespace {

using lineup::CheckFault;
using lineup::FaultLedger;
using lineup::WatchedFault;
using Names = std::vector<std::string>;

CheckFault FaultOf(const std::string& id, double at = 0, double measured = 0) {
    CheckFault fault;
    fault.id = id;
    fault.inputs = {1};
    fault.at = at;
    fault.measured = measured;
    fault.unit = "s";
    return fault;
}

// A ledger of stretches that begin every ten seconds, from 0 on: what is told, and what is kept.
struct Ledger {
    // `stretches`: an "x" for each that has the fault.
    void Take(const std::string& id, const std::string& stretches) {
        for (const char stretch : stretches) {
            ledger.TakeStanding(stretch == 'x' ? std::vector{FaultOf(id)} : std::vector<CheckFault>(), next,
                                [](double first, double last, auto&&...) { return (first + last) / 2; });
            next += 10;
        }
    }

    std::vector<double> begun;
    std::vector<double> ended;
    lineup::WatchListener listener{
        .onCycle = {},
        .onBegins = [this](const WatchedFault& fault) { begun.push_back(fault.begins); },
        .onEnds = [this](const WatchedFault& fault) { ended.push_back(fault.ends.value_or(-1)); },
        .progress = {}};
    lineup::WatchReport report;
    FaultLedger ledger{listener, report};
    double next = 0;
};

TEST(FaultLedger, TellsWhatStandsInTwoStretchesAndEndsWhereItIsMissedInTwo) {
    struct Case {
        const char* id;
        const char* stretches;
        std::vector<double> begun;
        std::vector<double> ended;
    };
    for (const Case& watched : std::vector<Case>{
             {"hum", "-xx--", {5}, {25}},
             {"hum", "xx--", {0}, {15}},      // from the start on
             {"hum", "-x-x-x--", {}, {}},     // never twice in a row
             {"hum", "-xx-xx--", {5}, {55}},  // missed once
             {"hum", "-xx-", {5}, {}},        // not yet
             {"hum", "-xx--xx--", {5, 45}, {25, 65}},
             {"level-changes", "-xxxxxx--", {}, {}},
             {"level-changes", "-xxxxxxx--", {5}, {75}},
         }) {
        Ledger all;
        all.Take(watched.id, watched.stretches);
        EXPECT_EQ(all.begun, watched.begun) << watched.id << watched.stretches;
        EXPECT_EQ(all.ended, watched.ended) << watched.id << watched.stretches;
    }
}

TEST(FaultLedger, AtTheEndWhatWasSeenOnceCountsAndStands) {
    Ledger all;
    all.Take("hum", "-xx---x");
    all.ledger.Finish();
    EXPECT_EQ(all.begun, (std::vector<double>{5, 55}));
    ASSERT_EQ(all.report.faults.size(), 2U);
    EXPECT_EQ(all.report.faults[0].ends, 25);
    EXPECT_FALSE(all.report.faults[1].ends);
    Ledger moving;
    moving.Take("level-changes", "-x");
    moving.ledger.Finish();
    EXPECT_TRUE(moving.begun.empty());
}

TEST(FaultLedger, SaysWhatWasThereWithinATime) {
    Ledger all;
    all.Take("hum", "-xx--");
    all.ledger.TakeMoments(std::vector{FaultOf("click", 30)});
    all.Take("noise", "xx");  // from 45 s on
    for (const auto& [start, end, ids] :
         std::vector<std::tuple<double, double, Names>>{{0, 5, {}},
                                                        {0, 5.1, {"hum"}},
                                                        {24.9, 30, {"hum"}},
                                                        {25, 30, {}},
                                                        {30, 31, {"click"}},
                                                        {20, 45.1, {"hum", "click", "noise"}},
                                                        {30.1, 45, {}},
                                                        {70, 80, {"noise"}}}) {
        EXPECT_EQ(all.ledger.IdsWithin(start, end), ids) << start << ", " << end;
    }
    all.ledger.Forget(25.1);
    EXPECT_EQ(all.ledger.Recent().size(), 1U);
    all.ledger.Forget(30);
    EXPECT_EQ(all.ledger.Recent().size(), 1U);
    all.ledger.Forget(30.1);
    EXPECT_EQ(all.ledger.Recent().size(), 0U);
}

TEST(FaultLedger, TellsAMomentOnceThoughItIsFoundAgainCloseBy) {
    for (const auto& [id, at, lasts, isNew] : std::vector<std::tuple<const char*, double, double, bool>>{
             {"click", 50.09, 0, false},
             {"click", 49.91, 0, false},
             {"click", 50.11, 0, true},
             {"click", 49.89, 0, true},
             {"click", 50.39, 0.3, false},  // while it lasts, and a little more
             {"click", 50.41, 0.3, true},
             {"level-changes", 51.4, 0, false},
             {"level-changes", 51.6, 0, true},
         }) {
        Ledger all;
        all.ledger.TakeMoments(std::vector{FaultOf("click", 50, lasts)});
        all.ledger.TakeMoments(std::vector{FaultOf(id, at)});
        EXPECT_EQ(all.begun.size(), isNew ? 2U : 1U) << id << " at " << at;
    }
}

TEST(FaultLedger, KeepsAsManyAsAReportHasRoomForAndCountsTheRest) {
    Ledger all;
    for (std::size_t i = 0; i < lineup::WatchReport::kMostFaults + 3; ++i) {
        all.ledger.TakeMoments(std::vector{FaultOf("click", static_cast<double>(i))});
        all.ledger.Forget(static_cast<double>(i));
    }
    EXPECT_EQ(all.report.faults.size(), lineup::WatchReport::kMostFaults);
    EXPECT_EQ(all.report.moreFaults, 3);
}

}  // namespace
