#pragma once

namespace lineup {

/// Which of the clip's two cards a frame shows.
enum class Card {
    Auto,  ///< SD for pictures of fewer than 720 lines, HD for all others
    HD,    ///< the arrangement with the luma ramp, drawn in float
    SD,    ///< the standard-definition arrangement, drawn in 8 bits
};

}  // namespace lineup
