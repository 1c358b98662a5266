#include "Host/Lineup/Check/Sound/Decide/Orders.h"

#include <algorithm>

namespace lineup::sound {

namespace {

const std::vector<ChannelOrder> kOrders = {
    {"film order", {"L", "C", "R", "Ls", "Rs", "LFE"}},
    {"the order of AAC", {"C", "L", "R", "Ls", "Rs", "LFE"}},
    {"the order of DTS and of the plug-in", {"L", "R", "Ls", "Rs", "C", "LFE"}},
    {"SMPTE order with the surround pair before C", {"L", "R", "Ls", "Rs", "LFE", "C"}},
    {"film order with LFE before the surround pair", {"L", "C", "R", "LFE", "Ls", "Rs"}},
};

bool Fits(const std::vector<std::string>& channels, const ChannelOrder& order) {
    return channels.size() == order.channels.size() &&
           std::ranges::equal(channels, order.channels, [](const std::string& found, std::string_view name) {
               return found.empty() || found == name;
           });
}

}  // namespace

std::span<const ChannelOrder> ChannelOrders() {
    return kOrders;
}

std::string_view NameOfOrder(const std::vector<std::string>& channels) {
    // Half of the channels say nothing about the others' order.
    if (std::ranges::count_if(channels, [](const std::string& name) { return !name.empty(); }) < 4) {
        return {};
    }
    const auto found = std::ranges::find_if(kOrders, [&](const ChannelOrder& order) { return Fits(channels, order); });
    return found == kOrders.end() ? std::string_view() : found->name;
}

}  // namespace lineup::sound
