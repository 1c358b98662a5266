#include <lineup/Send.h>
#include "Host/Lineup/Send/Flv/FlvMaker.h"
#include "Host/Lineup/Send/LinearPlan.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/SendPlan.h"
#include "Host/Lineup/Send/Senders.h"

#include <algorithm>

namespace lineup {

namespace {

// A network takes all that it is given, and loses most of it.
void CheckTiming(const SendSettings& settings) {
    const auto isFile = [](const std::string& target) { return SchemeOf(target).empty(); };
    const bool files = std::ranges::all_of(TargetsOf(settings), isFile);
    if (settings.timing == SendTiming::Free && settings.clock == nullptr && !files) {
        throw UsageError("clock", "free", "is for a file or a pipe, which say when they are full");
    }
}

}  // namespace

StreamFormat UsualFormat(const std::string& target) {
    const std::string scheme = SchemeOf(target);
    const bool flv = scheme == "rtmp" || scheme == "rtmps" || (scheme.empty() && target.ends_with(".flv"));
    return flv ? StreamFormat::Flv : StreamFormat::TransportStream;
}

void CheckSend(const Clip& clip, const SendSettings& settings) {
    CheckTiming(settings);
    if (settings.format == StreamFormat::Linear24) {
        static_cast<void>(PlanLinear(clip, settings));
        return;
    }
    if (settings.format == StreamFormat::Flv) {
        CheckFlv(settings);
    }
    SendPlan plan;
    PlanSend(clip, settings, plan);
}

SendStatus Send(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    CheckTiming(settings);
    switch (settings.format) {
        case StreamFormat::Linear24:
            return SendLinearSound(clip, settings, progress);
        case StreamFormat::Flv:
            return SendFlv(clip, settings, progress);
        case StreamFormat::TransportStream:
            break;
    }
    return SendTransportStream(clip, settings, progress);
}

}  // namespace lineup
