#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lineup::sound {

/// An order in which a format or a trade keeps the channels of 5.1.
struct ChannelOrder {
    std::string_view name;
    std::vector<std::string_view> channels;
};

/// All orders but that of files.
[[nodiscard]] std::span<const ChannelOrder> ChannelOrders();

/// The order that `channels` are in, in words, or empty; an empty channel fits anywhere.
[[nodiscard]] std::string_view NameOfOrder(const std::vector<std::string>& channels);

}  // namespace lineup::sound
