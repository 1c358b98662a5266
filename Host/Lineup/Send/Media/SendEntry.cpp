#include "Host/Lineup/Send/SendEntry.h"

#include "Host/Lineup/Send/Media/AvOutput.h"
#include "Host/Lineup/Send/Media/CodedGroup.h"

#include <type_traits>

// What liblineup looks up by name for streams.
namespace lineup {

extern "C" {

LINEUP_API void lineupCodeGroup(const Clip& clip, const PicturePlan& plan, int frames,
                                std::vector<std::vector<std::uint8_t>>& units) {
    units = CodeGroup(clip, plan, frames);
}

LINEUP_API void lineupOpenSoundCoder(const SoundPlan& plan, std::unique_ptr<SoundCoder>& coder) {
    coder = OpenSoundCoder(plan);
}

LINEUP_API void lineupOpenConnection(const SendSettings& settings, const std::vector<std::uint8_t>& head,
                                     std::unique_ptr<StreamOutput>& output) {
    output = std::make_unique<AvOutput>(settings, head);
}
}

static_assert(std::is_same_v<decltype(lineupCodeGroup), CodeGroupFunction>);
static_assert(std::is_same_v<decltype(lineupOpenSoundCoder), OpenSoundCoderFunction>);
static_assert(std::is_same_v<decltype(lineupOpenConnection), OpenConnectionFunction>);

}  // namespace lineup
