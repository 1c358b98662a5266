#include <lineup/UsageError.h>
#include "Host/Lineup/Send/MediaFunctions.h"
#include "Host/Lineup/Send/Output/FanOutput.h"
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
#include <vector>

namespace lineup {
inline namespace parts {

StreamOutput::~StreamOutput() = default;

namespace {

// What the media library's protocols carry as a stream of bytes or datagrams.
constexpr std::array<std::string_view, 3> kConnections = {"srt", "rist", "tcp"};

std::unique_ptr<StreamOutput> OpenConnection(const SendSettings& settings, const std::vector<std::uint8_t>& head) {
    std::unique_ptr<StreamOutput> connection;
    FromMediaLibrary<OpenConnectionFunction>(kOpenConnectionName)(settings, head, connection);
    return connection;
}

std::unique_ptr<StreamOutput> OpenPackets(const SendSettings& settings, RtpPayload payload) {
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
        return OpenConnection(settings, {});
    }
    throw UsageError("output", settings.target,
                     scheme.starts_with("rtmp")
                         ? "carries flv: choose --format flv"
                         : "must begin with udp://, rtp://, srt://, rist://, rtmp:// or tcp://, or be a file");
}

std::unique_ptr<StreamOutput> OpenWithHead(const SendSettings& settings, const std::vector<std::uint8_t>& head) {
    if (!settings.pipe && !SchemeOf(settings.target).empty()) {
        return OpenConnection(settings, head);
    }
    auto file = std::make_unique<FileOutput>(settings);
    static_cast<void>(file->Write(head, {}));  // which throws where it cannot
    return file;
}

// What `open` opens for the target, and for each of the others beside it.
template <class Open>
std::unique_ptr<StreamOutput> OpenAll(const SendSettings& settings, const Open& open) {
    if (settings.moreTargets.empty()) {
        return open(settings);
    }
    std::vector<std::unique_ptr<StreamOutput>> outputs;
    outputs.push_back(open(settings));
    for (const std::string& target : settings.moreTargets) {
        SendSettings other = settings;
        other.target = target;
        other.pipe.reset();
        outputs.push_back(open(other));
    }
    return std::make_unique<FanOutput>(std::move(outputs));
}

}  // namespace

std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings, RtpPayload payload) {
    return OpenAll(settings, [payload](const SendSettings& one) { return OpenPackets(one, payload); });
}

std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings, const std::vector<std::uint8_t>& head) {
    return OpenAll(settings, [&head](const SendSettings& one) { return OpenWithHead(one, head); });
}

}  // namespace parts
}  // namespace lineup
