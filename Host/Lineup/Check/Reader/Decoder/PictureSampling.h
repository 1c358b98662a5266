#pragma once

#include <cstdint>
#include <optional>

namespace lineup::decoding {

/// Which frames of a recording are decoded: all of a short one, a few hundred of a long one, evenly; and where a frame
/// needs those before it, those that need none.
class PictureSampling {
public:
    static constexpr int kMostFrames = 250;

    /// `frameRate` and `length` (s) are 0 where they are not known.
    PictureSampling(bool standAlone, double frameRate, double length);

    /// Whether the next packet, in the order of the file, is to be decoded. `seconds` is its time.
    [[nodiscard]] bool Takes(double seconds, bool isKey);

private:
    bool mTakesAll = false;
    bool mKeysOnly = false;
    double mStep = 0;  // s
    std::int64_t mTaken = 0;
    std::optional<double> mNext;
};

}  // namespace lineup::decoding
