#include "Apps/lanes/TimeMarks.h"

#include <lineup/TimeAxis.h>
#include "Host/Interface/Core/Numeric.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using zelcore::numeric::FloorDivide;
using zelmediatypes::TickTime;

namespace lanes {

std::vector<TimeMark> TimeMarks(TickTime start, TickTime length,
                                const std::function<double(const std::string& text)>& roomTicks) {
    const TickTime end = start + length;
    const TickTime furthest(std::max(std::abs(start.Ticks()), std::abs(end.Ticks())));
    for (TickTime step = lineup::NiceTimeStep(TickTime(1));; step = lineup::NiceTimeStep(TickTime(step.Ticks() + 1))) {
        const TickTime first(-FloorDivide(-start.Ticks(), step.Ticks()) * step.Ticks());
        const TickTime last(FloorDivide(end.Ticks(), step.Ticks()) * step.Ticks());
        // No text between is longer than these two; longer steps never have longer texts.
        const double room = std::max(roomTicks(lineup::TimeLabel(first, step, furthest)),
                                     roomTicks(lineup::TimeLabel(last, step, furthest)));
        if (static_cast<double>(step.Ticks()) < room) {
            continue;
        }
        std::vector<TimeMark> marks;
        for (TickTime mark = first; mark <= end; mark += step) {
            marks.push_back({mark, lineup::TimeLabel(mark, step, furthest)});
        }
        return marks;
    }
}

}  // namespace lanes
