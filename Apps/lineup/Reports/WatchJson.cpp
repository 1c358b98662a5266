#include "Apps/lineup/Reports/WatchJson.h"

#include "Apps/lineup/Reports/JsonParts.h"

namespace cli {

namespace {

using nlohmann::ordered_json;

constexpr const char* kSchema = "lineup-watch/1";

const char* EventOf(const lineup::WatchedFault& fault) {
    return fault.isMoment ? "fault" : fault.ends ? "fault-ends" : "fault-begins";
}

ordered_json ClocksJson(const lineup::WatchedClocks& clocks) {
    return {{"soundPpm", OrNull(clocks.soundPpm)},
            {"senderPpm", OrNull(clocks.senderPpm)},
            {"arrivalMs", OrNull(clocks.arrivalMs)},
            {"jitterUs", OrNull(clocks.jitterUs)},
            {"unsteadyPpm", OrNull(clocks.unsteadyPpm)}};
}

ordered_json AlignmentJson(const lineup::WatchedAlignment& alignment) {
    return {{"startMs", OrNull(alignment.startMs)},
            {"offsetMs", OrNull(alignment.offsetMs)},
            {"movedMs", OrNull(alignment.movedMs)}};
}

}  // namespace

std::string CycleJson(const lineup::WatchedCycle& cycle) {
    return JsonLine({{"schema", kSchema},
                     {"event", "cycle"},
                     {"number", cycle.number},
                     {"start", cycle.start},
                     {"end", cycle.end},
                     {"verdict", lineup::CheckVerdictName(cycle.verdict)},
                     {"faults", cycle.faults},
                     {"gain", {{"least", OrNull(cycle.leastGain)}, {"most", OrNull(cycle.mostGain)}}},
                     {"card", OrNull(cycle.card)},
                     {"clocks", ClocksJson(cycle.clocks)},
                     {"alignment", AlignmentJson(cycle.alignment)}});
}

std::string WatchedFaultJson(const lineup::WatchedFault& fault) {
    return JsonLine({{"schema", kSchema},
                     {"event", EventOf(fault)},
                     {"begins", fault.begins},
                     {"ends", OrNull(fault.ends)},
                     {"fault", FaultJson(fault.fault)}});
}

std::string WatchSummaryJson(const lineup::WatchReport& report) {
    ordered_json faults = ordered_json::array();
    for (const lineup::WatchedFault& fault : report.faults) {
        faults.push_back({{"begins", fault.begins}, {"ends", OrNull(fault.ends)}, {"fault", FaultJson(fault.fault)}});
    }
    return JsonLine({{"schema", kSchema},
                     {"event", "summary"},
                     {"source", report.source},
                     {"verdict", lineup::CheckVerdictName(report.verdict)},
                     {"expected", OrNull(report.expected)},
                     {"card", OrNull(report.card)},
                     {"seconds", report.seconds},
                     {"cycles", report.cycles},
                     {"rightCycles", report.rightCycles},
                     {"faults", faults},
                     {"moreFaults", report.moreFaults},
                     {"clocks", ClocksJson(report.clocks)},
                     {"alignment", AlignmentJson(report.alignment)},
                     {"notes", NotesJson(report.notes)}});
}

}  // namespace cli
