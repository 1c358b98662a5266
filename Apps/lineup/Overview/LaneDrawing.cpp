#include "Apps/lineup/Overview/LaneDrawing.h"

#include "Apps/lineup/Overview/CairoColour.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cli {

namespace {

constexpr double kEdge = 1.6;         // units: the edges of a band, a traced tone
constexpr double kSilenceLine = 1.6;  // units
constexpr double kHatchStep = 7;      // units between hatching lines
constexpr double kHatchLine = 1;      // units

enum class Kind { kNoData, kSilence, kBand, kTrace };

// One kind and one pair of values, from column `begin` up to but not including `end`.
struct Run {
    std::size_t begin;
    std::size_t end;
    Kind kind;
    float maximum;
    float minimum;
};

// A tone that is traced crosses zero; what tells it from silence is that it leaves zero elsewhere.
bool IsTraced(const lineup::ChannelOverview& channel) {
    for (std::size_t i = 0; i < channel.maxima.size(); ++i) {
        if (channel.maxima[i] == channel.minima[i] && channel.maxima[i] != 0) {
            return true;
        }
    }
    return false;
}

Kind KindOf(float maximum, float minimum, bool traced) {
    if (std::isnan(maximum) || std::isnan(minimum)) {
        return Kind::kNoData;
    }
    if (maximum == minimum) {
        return traced ? Kind::kTrace : Kind::kSilence;
    }
    return Kind::kBand;
}

class LanePen {
public:
    LanePen(cairo_t* context, const lineup::ChannelOverview& channel, const LaneStyle& style)
        : mContext(context), mChannel(&channel), mStyle(&style), mTraced(IsTraced(channel)) {}

    void Draw() {
        for (std::size_t begin = 0; begin < mChannel->maxima.size();) {
            const Run run = RunFrom(begin);
            switch (run.kind) {
                case Kind::kNoData:
                    Hatch(run);
                    break;
                case Kind::kSilence:
                    Silence(run);
                    break;
                case Kind::kBand:
                    Band(run);
                    break;
                case Kind::kTrace:
                    Trace(run);
                    break;
            }
            begin = run.end;
        }
    }

private:
    [[nodiscard]] Run RunFrom(std::size_t begin) const {
        Run run{begin, begin + 1, KindAt(begin), mChannel->maxima[begin], mChannel->minima[begin]};
        while (run.end < mChannel->maxima.size() && KindAt(run.end) == run.kind &&
               (run.kind != Kind::kBand ||
                (mChannel->maxima[run.end] == run.maximum && mChannel->minima[run.end] == run.minimum))) {
            ++run.end;
        }
        return run;
    }
    [[nodiscard]] Kind KindAt(std::size_t column) const {
        return KindOf(mChannel->maxima[column], mChannel->minima[column], mTraced);
    }

    [[nodiscard]] double X(std::size_t column) const {
        const double share = static_cast<double>(column) / static_cast<double>(mChannel->maxima.size());
        return mStyle->lane.x + share * mStyle->lane.width;
    }
    [[nodiscard]] double Y(double amplitude) const {
        return mStyle->lane.y + mStyle->lane.height / 2 * (1 - amplitude / mStyle->scale.top);
    }

    void Fill(const Run& run, double top, double height, double opacity) {
        SetColour(mContext, mStyle->colour, opacity);
        cairo_rectangle(mContext, X(run.begin), top, X(run.end) - X(run.begin), height);
        cairo_fill(mContext);
    }

    void Silence(const Run& run) {
        const double height = kSilenceLine * mStyle->unit;
        Fill(run, Y(0) - height / 2, height, 1);
    }

    // A band that is thinner than its edges looks like silence, which it nearly is.
    void Band(const Run& run) {
        const double edge = kEdge * mStyle->unit;
        const double top = Y(static_cast<double>(run.maximum));
        const double height = Y(static_cast<double>(run.minimum)) - top;
        if (height <= 2 * edge) {
            const double drawn = std::max(height, kSilenceLine * mStyle->unit);
            Fill(run, top + (height - drawn) / 2, drawn, 1);
            return;
        }
        Fill(run, top + edge, height - 2 * edge, mStyle->bandOpacity);
        Fill(run, top, edge, 1);
        Fill(run, top + height - edge, edge, 1);
    }

    void Trace(const Run& run) {
        cairo_new_path(mContext);
        for (std::size_t i = run.begin; i < run.end; ++i) {
            cairo_line_to(mContext, X(i), Y(static_cast<double>(mChannel->maxima[i])));
        }
        cairo_line_to(mContext, X(run.end), Y(static_cast<double>(mChannel->maxima[run.end - 1])));
        SetColour(mContext, mStyle->colour);
        cairo_set_line_width(mContext, kEdge * mStyle->unit);
        cairo_set_line_join(mContext, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(mContext);
    }

    void Hatch(const Run& run) {
        const Rectangle& lane = mStyle->lane;
        cairo_save(mContext);
        cairo_rectangle(mContext, X(run.begin), lane.y, X(run.end) - X(run.begin), lane.height);
        cairo_clip(mContext);
        const double step = kHatchStep * mStyle->unit;
        const auto lines = static_cast<int>((X(run.end) - lane.x + lane.height) / step) + 1;
        for (int i = 0; i < lines; ++i) {
            const double x = lane.x - lane.height + step * i;
            cairo_move_to(mContext, x, lane.y + lane.height);
            cairo_line_to(mContext, x + lane.height, lane.y);
        }
        SetColour(mContext, mStyle->noData);
        cairo_set_line_width(mContext, kHatchLine * mStyle->unit);
        cairo_stroke(mContext);
        cairo_restore(mContext);
    }

    cairo_t* mContext;
    const lineup::ChannelOverview* mChannel;
    const LaneStyle* mStyle;
    bool mTraced;
};

}  // namespace

void DrawWaveform(cairo_t* context, const lineup::ChannelOverview& channel, const LaneStyle& style) {
    LanePen(context, channel, style).Draw();
}

}  // namespace cli
