#pragma once

#include <cstdint>
#include <optional>

namespace lineup::decoding {

/// A packet, before anything of it is decoded.
struct PacketFacts {
    double seconds = 0;
    bool isKey = false;
    bool isDamaged = false;
    std::int64_t bytes = 0;
};

/// Which frames of a recording are decoded: all of a short one, a few hundred of a long one, evenly; and where a frame
/// needs those before it, those that need none. A still card makes packets of one size: where one has another,
/// something changes, and more frames are taken.
class PictureSampling {
public:
    static constexpr int kMostFrames = 250;
    static constexpr int kMostMore = 250;  ///< because of their size; of a stream, no more than that at once

    enum class Taken : std::uint8_t {
        No,
        Alone,
        WithGroup,  ///< and whatever it needs, from the last key packet on, as far as it was not taken yet
    };

    /// `frameRate` and `length` (s) are 0 where they are not known.
    PictureSampling(bool standAlone, double frameRate, double length);

    /// However long it is.
    void TakeAll() noexcept { mTakesAll = true; }

    /// Of the next packet, in the order of the file.
    [[nodiscard]] Taken Takes(const PacketFacts& packet);

private:
    [[nodiscard]] bool IsUnusual(const PacketFacts& packet, bool standsAlone);
    [[nodiscard]] bool IsDue(double seconds);

    bool mTakesAll = false;
    bool mKeysOnly = false;
    bool mIsStream = false;
    double mStep = 0;  // s
    std::int64_t mTaken = 0;
    std::int64_t mMore = 0;
    bool mIsFollowing = false;  // to the end of a group
    double mUsualAlone = 0;     // bytes
    double mUsualOther = 0;
    std::optional<double> mNext;
};

}  // namespace lineup::decoding
