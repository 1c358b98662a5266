#include "Apps/lineup/Commands/WatchRun.h"

#include "Apps/lineup/Reports/CheckTable.h"
#include "Apps/lineup/Reports/WatchJson.h"
#include "Apps/lineup/Reports/WatchText.h"
#include "Apps/lineup/Terminal/Interrupt.h"
#include "Apps/lineup/Terminal/StatusLine.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>

namespace cli {

namespace {

class WatchTalk {
public:
    explicit WatchTalk(const WatchStyle& style) : mStyle(style), mLine(!style.json && !style.quiet) {}

    // Whoever reads along sees a line as soon as it is there.
    void Print(const std::string& text) const {
        mLine.Clear();
        fmt::print("{}", text);
        std::fflush(stdout);
    }

    void Show(double seconds) {
        if (std::floor(seconds) > mShown) {
            mShown = std::floor(seconds);
            mLine.Show(PlaceText(mShown) + " heard");
        }
    }

    void Cycle(const lineup::WatchedCycle& cycle) const {
        if (mStyle.json) {
            Print(CycleJson(cycle) + "\n");
        } else if (!mStyle.quiet) {
            Print(CycleText(cycle));
        }
    }

    void Fault(const lineup::WatchedFault& fault) const {
        Print(mStyle.json ? WatchedFaultJson(fault) + "\n" : WatchedFaultText(fault));
    }

    void End(const lineup::WatchReport& report) const {
        if (mStyle.json) {
            Print(WatchSummaryJson(report) + "\n");
        } else if (!mStyle.quiet || report.verdict == lineup::CheckVerdict::CannotTell) {
            Print(WatchSummaryText(report));
        }
    }

private:
    WatchStyle mStyle;
    StatusLine mLine;
    double mShown = -1;
};

}  // namespace

lineup::CheckVerdict WatchFeed(const std::string& recording, const std::shared_ptr<const lineup::Importer>& importer,
                               const lineup::CheckSettings& settings, const WatchStyle& style) {
    WatchTalk talk(style);
    const auto tell = [&talk](const lineup::WatchedFault& fault) { talk.Fault(fault); };
    const lineup::WatchListener listener{
        .onCycle = [&talk](const lineup::WatchedCycle& cycle) { talk.Cycle(cycle); },
        .onBegins = tell,
        .onEnds = tell,
        .progress =
            [&talk](double seconds, std::optional<double>) {
                talk.Show(seconds);
                return Interrupted() == 0;
            },
    };
    const lineup::WatchReport report = lineup::Watch(recording, importer, settings, listener);
    talk.End(report);
    return report.verdict;
}

}  // namespace cli
