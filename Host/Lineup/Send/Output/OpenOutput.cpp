#include <lineup/UsageError.h>
#include "Host/Lineup/Send/MediaFunctions.h"
#include "Host/Lineup/Send/Output/FileOutput.h"
#include "Host/Lineup/Send/Output/RtpOutput.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/Output/UdpOutput.h"
#include "Host/Lineup/Send/SendEntry.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace lineup {
inline namespace parts {

StreamOutput::~StreamOutput() = default;

namespace {

// What the media library's protocols carry as a stream of bytes or datagrams.
constexpr std::array<std::string_view, 3> kConnections = {"srt", "rist", "tcp"};

}  // namespace

std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings, RtpPayload payload) {
    const std::string scheme = settings.pipe ? std::string() : SchemeOf(settings.target);
    if (scheme.empty()) {
        return std::make_unique<FileOutput>(settings);
    }
    if (scheme == "udp" || scheme == "rtp") {
        auto datagrams = std::make_unique<UdpOutput>(ParseStreamUrl(settings.target), settings.notice);
        if (scheme == "udp") {
            return datagrams;
        }
        return std::make_unique<RtpOutput>(std::move(datagrams), payload);
    }
    if (std::ranges::find(kConnections, scheme) != kConnections.end()) {
        std::unique_ptr<StreamOutput> connection;
        FromMediaLibrary<OpenConnectionFunction>(kOpenConnectionName)(settings, connection);
        return connection;
    }
    throw UsageError("output", settings.target,
                     "must begin with udp://, rtp://, srt://, rist:// or tcp://, or be a file");
}

}  // namespace parts
}  // namespace lineup
