#include "Apps/lineup/Overview/OverviewFile.h"

#include "Apps/lineup/Overview/OverviewEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Bytes = std::vector<std::uint8_t>;

DrawOverviewFunction& Drawer() {
    return lineup::DynamicLibrary::Companion(kOverviewLibraryName)
        .Function<DrawOverviewFunction>(kDrawOverviewName, "cannot draw the overview");
}

Bytes Draw(OverviewPicture kind, const OverviewPage& page) {
    Bytes bytes;
    Drawer()(kind, page, bytes);
    return bytes;
}

double Seconds(zelmediatypes::TickTime time) {
    return static_cast<double>(time.Ticks()) / static_cast<double>(zelmediatypes::kTicksPerSecond);
}

}  // namespace

Bytes OverviewPng(const OverviewPage& page) {
    return Draw(OverviewPicture::Png, page);
}

Bytes OverviewSvg(const OverviewPage& page) {
    return Draw(OverviewPicture::Svg, page);
}

std::string OverviewJson(const lineup::WaveformOverview& overview, float sampleRateHz) {
    auto channels = nlohmann::ordered_json::array();
    for (const lineup::ChannelOverview& channel : overview.channels) {
        channels.push_back({{"name", channel.name}, {"max", channel.maxima}, {"min", channel.minima}});
    }
    const nlohmann::ordered_json json = {{"version", 1},
                                         {"sampleRateHz", sampleRateHz},
                                         {"startSample", overview.span.startSample},
                                         {"startSeconds", Seconds(overview.start)},
                                         {"lengthSeconds", Seconds(overview.span.length)},
                                         {"columns", overview.span.columns},
                                         {"channels", channels}};
    return json.dump() + "\n";
}

}  // namespace cli
