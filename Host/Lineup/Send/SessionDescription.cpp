#include <lineup/Send.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Send/LinearPlan.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>
#include <vector>

namespace lineup {

std::string DescribeSession(const Clip& clip, const SendSettings& settings) {
    CheckSend(clip, settings);
    if (settings.pipe || SchemeOf(settings.target) != "rtp") {
        throw UsageError("sdp", settings.target, "describes what goes to rtp:// alone");
    }
    const StreamUrl url = ParseStreamUrl(settings.target);
    const bool six = url.host.find(':') != std::string::npos;
    const auto ttl = url.options.find("ttl");
    const std::string address = fmt::format("IN {} {}", six ? "IP6" : "IP4", url.host);
    std::string text = fmt::format("v=0\r\no=- 0 0 {}\r\ns=Bars and Tone\r\nc={}{}\r\nt=0 0\r\n", address, address,
                                   ttl == url.options.end() || six ? "" : "/" + ttl->second);
    if (settings.format == StreamFormat::TransportStream) {
        const int type = static_cast<int>(RtpPayload::TransportStream);
        return text + fmt::format("m=video {} RTP/AVP {}\r\na=rtpmap:{} MP2T/90000\r\n", url.port, type, type);
    }
    const LinearPlan plan = PlanLinear(clip, settings);
    const int type = static_cast<int>(RtpPayload::Sound);
    constexpr double kUsAMs = 1000;
    text += fmt::format("m=audio {} RTP/AVP {}\r\na=rtpmap:{} L24/{}/{}\r\na=ptime:{:g}\r\n", url.port, type, type,
                        plan.sampleRateHz, plan.channels.size(), settings.packetUs / kUsAMs);
    const int channels = clip.NumChannels();
    const std::vector<std::string_view> groups(static_cast<std::size_t>(settings.copies), channels == 6   ? "51"
                                                                                          : channels == 2 ? "ST"
                                                                                                          : "M");
    return text + fmt::format("a=fmtp:{} channel-order=SMPTE2110.({})\r\n", type, fmt::join(groups, ","));
}

}  // namespace lineup
