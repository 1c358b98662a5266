#include <lineup/Send.h>
#include "Host/Lineup/Send/LinearPlan.h"
#include "Host/Lineup/Send/SendPlan.h"
#include "Host/Lineup/Send/Senders.h"

namespace lineup {

void CheckSend(const Clip& clip, const SendSettings& settings) {
    if (settings.format == StreamFormat::Linear24) {
        static_cast<void>(PlanLinear(clip, settings));
        return;
    }
    SendPlan plan;
    PlanSend(clip, settings, plan);
}

SendStatus Send(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    const bool linear = settings.format == StreamFormat::Linear24;
    return (linear ? SendLinearSound : SendTransportStream)(clip, settings, progress);
}

}  // namespace lineup
