#include "Apps/lineup/Reports/CheckLanes.h"

#include "Apps/lanes/LaneColours.h"
#include "Apps/lanes/LevelScale.h"
#include "Apps/lanes/TimeMarks.h"
#include "Apps/lineup/Reports/Markup.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace cli {

namespace {

constexpr int kLeft = 90;  // what names and levels take
constexpr int kRight = 10;
constexpr int kTop = 6;
constexpr int kLaneHeight = 54;
constexpr int kLaneStep = 62;
constexpr int kAxisHeight = 26;
constexpr int kColumns = kCheckLanesWidth - kLeft - kRight;
constexpr int kTextWidth = 7;  // of a digit at the size of times
constexpr const char* kFaultColour = "#c02020";
constexpr const char* kExpectedColour = "#202020";

std::string Hex(lanes::Rgb colour) {
    return fmt::format("#{:06x}", colour);
}

std::size_t Points(const lineup::SoundLanes& lanes) {
    return lanes.found.empty() ? 0 : lanes.found.front().size();
}

// The highest of the points that fall into each column.
std::vector<double> Columns(std::span<const float> points) {
    std::vector<double> columns(kColumns, 0);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::size_t first = i * points.size() / columns.size();
        const std::size_t last = std::max(first + 1, (i + 1) * points.size() / columns.size());
        for (std::size_t p = first; p < std::min(last, points.size()); ++p) {
            columns[i] = std::max(columns[i], static_cast<double>(std::abs(points[p])));
        }
    }
    return columns;
}

// A shape around the lane's centre line: along the top from left to right, and back along the bottom.
std::string Outline(std::span<const float> points, double middle) {
    static const lanes::LevelScale scale = lanes::LevelScale::Decibels();
    std::string there;
    std::string back;
    double before = -1;
    const std::vector<double> columns = Columns(points);
    for (std::size_t i = 0; i <= columns.size(); ++i) {
        const double height = i < columns.size() ? scale.Height(columns[i]) * kLaneHeight / 2 : 0;
        if (height == before) {
            continue;
        }
        const auto x = kLeft + static_cast<int>(i);
        const double last = std::max(before, 0.0);
        there += fmt::format(" {},{:.1f} {},{:.1f}", x, middle - last, x, middle - height);
        back.insert(0, fmt::format(" {},{:.1f} {},{:.1f}", x, middle + height, x, middle + last));
        before = height;
    }
    return there + back;
}

std::string NameOf(const lineup::SoundReport& sound, std::size_t input) {
    const bool isKnown = input < sound.channels.size() && sound.channels[input].channel;
    return fmt::format("{} {}", input + 1, isKnown ? *sound.channels[input].channel : "");
}

std::string Lane(const lineup::SoundReport& sound, std::size_t input) {
    const lanes::LaneColours& colours = lanes::LaneColours::Light();
    const int top = kTop + static_cast<int>(input) * kLaneStep;
    const double middle = top + kLaneHeight / 2.0;
    std::string text = fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"{}\"/>\n", kLeft, top,
                                   kColumns, kLaneHeight, Hex(colours.lane));
    text += fmt::format("<text x=\"6\" y=\"{}\" fill=\"{}\">{}</text>\n", middle + 4, Hex(colours.title),
                        Escaped(NameOf(sound, input)));
    text += fmt::format("<polygon class=\"found\" points=\"{}\" fill=\"{}\"/>\n",
                        Outline(sound.lanes.found[input], middle).substr(1), Hex(colours.Waveform(input)));
    if (input < sound.lanes.expected.size()) {
        text += fmt::format(
            "<polygon class=\"expected\" points=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"1\" "
            "stroke-opacity=\"0.7\"/>\n",
            Outline(sound.lanes.expected[input], middle).substr(1), kExpectedColour);
    }
    return text;
}

std::string Axis(const lineup::SoundLanes& shown, double bottom) {
    const lanes::LaneColours& colours = lanes::LaneColours::Light();
    const double length = shown.step * static_cast<double>(Points(shown));
    const auto ticks = [](double seconds) {
        return TickTime(std::llround(seconds * static_cast<double>(kTicksPerSecond)));
    };
    const auto room = [length](const std::string& text) {
        const auto width = static_cast<double>(text.size() + 2) * kTextWidth;
        return width / kColumns * length * static_cast<double>(kTicksPerSecond);
    };
    std::string text;
    for (const lanes::TimeMark& mark : lanes::TimeMarks(ticks(shown.start), ticks(length), room)) {
        const double seconds = static_cast<double>(mark.time.Ticks()) / static_cast<double>(kTicksPerSecond);
        const double x = kLeft + (seconds - shown.start) / length * kColumns;
        text += fmt::format(
            "<path d=\"M{0:.1f} {1} V{2:.1f}\" stroke=\"{3}\" stroke-opacity=\"0.5\"/>"
            "<text x=\"{0:.1f}\" y=\"{4:.1f}\" text-anchor=\"middle\" fill=\"{5}\">{6}</text>\n",
            x, kTop, bottom, Hex(colours.grid), bottom + 16, Hex(colours.text), Escaped(mark.text));
    }
    return text;
}

std::string FaultMarks(const lineup::CheckReport& report, double bottom) {
    const lineup::SoundLanes& shown = report.sound->lanes;
    const double length = shown.step * static_cast<double>(Points(shown));
    std::string text;
    for (const lineup::CheckFault& fault : report.faults) {
        if (!fault.at || *fault.at < shown.start || *fault.at > shown.start + length) {
            continue;
        }
        const double x = kLeft + (*fault.at - shown.start) / length * kColumns;
        text += fmt::format(
            "<path class=\"fault\" d=\"M{:.1f} {} V{:.1f}\" stroke=\"{}\" stroke-width=\"1.5\">"
            "<title>{}</title></path>\n",
            x, kTop, bottom, kFaultColour, Escaped(fault.text));
    }
    return text;
}

}  // namespace

int CheckLanesHeight(const lineup::CheckReport& report) {
    const bool isEmpty = !report.sound || Points(report.sound->lanes) == 0 || report.sound->lanes.step <= 0;
    return isEmpty ? 0 : kTop + static_cast<int>(report.sound->lanes.found.size()) * kLaneStep + kAxisHeight;
}

std::string CheckLanes(const lineup::CheckReport& report) {
    if (CheckLanesHeight(report) == 0) {
        return "";
    }
    std::string text = "<g font-family=\"DejaVu Sans, sans-serif\" font-size=\"12\">\n";
    for (std::size_t input = 0; input < report.sound->lanes.found.size(); ++input) {
        text += Lane(*report.sound, input);
    }
    const double bottom = CheckLanesHeight(report) - kAxisHeight;
    return text + Axis(report.sound->lanes, bottom) + FaultMarks(report, bottom) + "</g>\n";
}

}  // namespace cli
