#include <lineup/Send.h>
#include "Host/Lineup/Send/LinearPlan.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/SendPlan.h"
#include "Host/Lineup/Send/Senders.h"

namespace lineup {

namespace {

// A network takes all that it is given, and loses most of it.
void CheckTiming(const SendSettings& settings) {
    const bool file = settings.pipe || SchemeOf(settings.target).empty();
    if (settings.timing == SendTiming::Free && settings.clock == nullptr && !file) {
        throw UsageError("clock", "free", "is for a file or a pipe, which say when they are full");
    }
}

}  // namespace

void CheckSend(const Clip& clip, const SendSettings& settings) {
    CheckTiming(settings);
    if (settings.format == StreamFormat::Linear24) {
        static_cast<void>(PlanLinear(clip, settings));
        return;
    }
    SendPlan plan;
    PlanSend(clip, settings, plan);
}

SendStatus Send(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    CheckTiming(settings);
    const bool linear = settings.format == StreamFormat::Linear24;
    return (linear ? SendLinearSound : SendTransportStream)(clip, settings, progress);
}

}  // namespace lineup
