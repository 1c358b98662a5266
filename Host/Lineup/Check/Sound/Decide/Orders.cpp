#include "Host/Lineup/Check/Sound/Decide/Orders.h"

#include <algorithm>
#include <array>

namespace lineup::sound {

namespace {

// An order in which a format or a trade keeps the channels of 5.1.
struct ChannelOrder {
    std::string_view name;
    std::array<std::string_view, 6> channels;
};

constexpr std::array<ChannelOrder, 4> kOrders = {{
    {"film order", {"L", "C", "R", "Ls", "Rs", "LFE"}},
    {"the order of AAC", {"C", "L", "R", "Ls", "Rs", "LFE"}},
    {"the order of DTS and of the plug-in", {"L", "R", "Ls", "Rs", "C", "LFE"}},
    {"SMPTE order with the surround pair before C", {"L", "R", "Ls", "Rs", "LFE", "C"}},
}};

bool Fits(const std::vector<std::string>& channels, const ChannelOrder& order) {
    return channels.size() == order.channels.size() &&
           std::ranges::equal(channels, order.channels, [](const std::string& found, std::string_view name) {
               return found.empty() || found == name;
           });
}

}  // namespace

std::string_view NameOfOrder(const std::vector<std::string>& channels) {
    // Half of the channels say nothing about the others' order.
    if (std::ranges::count_if(channels, [](const std::string& name) { return !name.empty(); }) < 4) {
        return {};
    }
    const auto* const found =
        std::ranges::find_if(kOrders, [&](const ChannelOrder& order) { return Fits(channels, order); });
    return found == kOrders.end() ? std::string_view() : found->name;
}

}  // namespace lineup::sound
