#pragma once

#include <array>
#include <string_view>

namespace lineup {

/// Pictures of fewer lines are of standard definition.
inline constexpr int kFewestHdLines = 720;

/// Which of the clip's two cards a frame shows.
enum class Card {
    Auto,  ///< SD for pictures of fewer than kFewestHdLines, HD for all others
    HD,    ///< the arrangement with the luma ramp, drawn in float
    SD,    ///< the standard-definition arrangement, drawn in 8 bits
};

struct CardName {
    std::string_view name;
    Card card;
};

/// The cards as files, command lines and properties call them; the one that is used unasked first.
inline constexpr std::array<CardName, 3> kCardNames = {
    {{"auto", Card::Auto}, {"hd", Card::HD}, {"sd", Card::SD}},
};

}  // namespace lineup
