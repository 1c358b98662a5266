#include "Apps/lineup/Overview/OverviewFile.h"

#include <lineup/DynamicLibrary.h>
#include <lineup/Error.h>
#include "Apps/lineup/Overview/OverviewEntry.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Bytes = std::vector<std::uint8_t>;

DrawOverviewFunction& Drawer() {
    // Never unloaded: exceptions it threw may still be on their way when the process ends.
    static const auto* const library = new lineup::DynamicLibrary(lineup::DynamicLibrary::Beside(kOverviewLibraryName));
    void* const symbol = library->Find(kDrawOverviewName);
    if (symbol == nullptr) {
        throw lineup::Error(
            fmt::format("cannot draw the overview: {} has no {}", kOverviewLibraryName, kDrawOverviewName));
    }
    return *reinterpret_cast<DrawOverviewFunction*>(symbol);
}

Bytes Draw(OverviewPicture kind, const lineup::WaveformOverview& overview, const OverviewHeading& heading,
           const OverviewLayout& layout, const OverviewTheme& theme) {
    Bytes bytes;
    Drawer()(kind, overview, heading, layout, theme, bytes);
    return bytes;
}

double Seconds(zelmediatypes::TickTime time) {
    return static_cast<double>(time.Ticks()) / static_cast<double>(zelmediatypes::kTicksPerSecond);
}

}  // namespace

Bytes OverviewPng(const lineup::WaveformOverview& overview, const OverviewHeading& heading,
                  const OverviewLayout& layout, const OverviewTheme& theme) {
    return Draw(OverviewPicture::Png, overview, heading, layout, theme);
}

Bytes OverviewSvg(const lineup::WaveformOverview& overview, const OverviewHeading& heading,
                  const OverviewLayout& layout, const OverviewTheme& theme) {
    return Draw(OverviewPicture::Svg, overview, heading, layout, theme);
}

std::string OverviewJson(const lineup::WaveformOverview& overview, float sampleRateHz) {
    auto channels = nlohmann::ordered_json::array();
    for (const lineup::ChannelOverview& channel : overview.channels) {
        channels.push_back({{"name", channel.name}, {"max", channel.maxima}, {"min", channel.minima}});
    }
    const auto start = zelmediatypes::FrameRateFromHz(sampleRateHz) * overview.span.startSample;
    const nlohmann::ordered_json json = {{"version", 1},
                                         {"sampleRateHz", sampleRateHz},
                                         {"startSample", overview.span.startSample},
                                         {"startSeconds", Seconds(start)},
                                         {"lengthSeconds", Seconds(overview.span.length)},
                                         {"columns", overview.span.columns},
                                         {"channels", channels}};
    return json.dump() + "\n";
}

}  // namespace cli
