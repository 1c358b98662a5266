#pragma once

#include <lineup/Api.h>
#include <lineup/Rational.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace lineup {

/// A SMPTE time code: a label for a frame at one frame rate, from 00:00:00:00 up to the last frame of
/// a day. Drop-frame labels leave out the first two numbers (four at 59.94) of every minute that is
/// not a multiple of ten, so that they keep up with the clock at 29.97 and 59.94 frames a second.
class LINEUP_API Timecode {
public:
    /// Reads "HH:MM:SS:FF", or "HH:MM:SS;FF" for drop frame. Throws UsageError (option "timecode")
    /// for another shape, a number out of range, a dropped number, drop frame at a rate that has
    /// none, and a frame rate that has no time code: rates are 24, 25, 30, 48, 50 and 60, and those of
    /// them divisible by 6 also times 1000/1001.
    Timecode(std::string_view text, Rational frameRate);

    /// Whether frames at this rate can be labelled at all.
    [[nodiscard]] static bool Labels(Rational frameRate) noexcept;

    [[nodiscard]] Rational FrameRate() const noexcept { return mFrameRate; }
    [[nodiscard]] bool DropFrame() const noexcept { return mDropFrame; }

    /// Frames from 00:00:00:00 to this one.
    [[nodiscard]] std::int64_t Frames() const noexcept { return mFrames; }

    /// The frames of a whole day, after which labels begin again.
    [[nodiscard]] std::int64_t FramesADay() const noexcept;

    /// Samples from 00:00:00:00 to this frame, to the nearest: the time that the frames really take,
    /// 3603.6 s for 01:00:00:00 at 29.97 without drop frame.
    [[nodiscard]] std::int64_t Samples(int sampleRateHz) const noexcept;

    /// "HH:MM:SS:FF" or "HH:MM:SS;FF".
    [[nodiscard]] const std::string& Text() const noexcept { return mText; }

private:
    Rational mFrameRate;
    bool mDropFrame = false;
    std::int64_t mFrames = 0;
    std::string mText;
};

}  // namespace lineup
