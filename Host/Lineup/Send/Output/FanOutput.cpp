#include "Host/Lineup/Send/Output/FanOutput.h"

#include <utility>

namespace lineup {
inline namespace parts {

FanOutput::FanOutput(std::vector<std::unique_ptr<StreamOutput>> outputs) : mOutputs(std::move(outputs)) {}

bool FanOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) {
    bool all = true;
    for (const auto& output : mOutputs) {
        all = output->Write(bytes, moment) && all;
    }
    return all;
}

}  // namespace parts
}  // namespace lineup
