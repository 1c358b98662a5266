#include <lineup/Limits.h>
#include <lineup/Timecode.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace lineup {

namespace {

/// A frame rate that frames can be labelled at.
struct LabelledRate {
    Rational rate;
    int nominal = 0;  ///< labels a second
    int dropped = 0;  ///< labels left out of most minutes when drop frame is used; 0: cannot be used
};

constexpr std::array<LabelledRate, 10> kLabelledRates = {{
    {{24000, 1001}, 24, 0},
    {{24, 1}, 24, 0},
    {{25, 1}, 25, 0},
    {{30000, 1001}, 30, 2},
    {{30, 1}, 30, 0},
    {{48000, 1001}, 48, 0},
    {{48, 1}, 48, 0},
    {{50, 1}, 50, 0},
    {{60000, 1001}, 60, 4},
    {{60, 1}, 60, 0},
}};

const LabelledRate* Find(Rational rate) {
    if (!IsFrameRate(rate)) {
        return nullptr;
    }
    const auto* const found =
        std::ranges::find_if(kLabelledRates, [rate](const LabelledRate& row) { return SameRatio(row.rate, rate); });
    return found == kLabelledRates.end() ? nullptr : found;
}

// HH:MM:SS:FF, where the last separator may be a semicolon.
bool HasShape(std::string_view text) {
    constexpr std::string_view kShape = "00:00:00:00";
    return std::ranges::equal(text, kShape, [](char given, char wanted) {
        return wanted == '0' ? std::isdigit(static_cast<unsigned char>(given)) != 0 : given == ':' || given == ';';
    });
}

int TwoDigits(std::string_view text, std::size_t at) {
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

}  // namespace

Timecode::Timecode(std::string_view text, Rational frameRate) : mFrameRate(frameRate), mText(text) {
    const auto require = [&](bool holds, std::string_view remedy) {
        if (!holds) {
            throw UsageError("timecode", mText, std::string(remedy));
        }
    };
    require(HasShape(text) && text[2] == ':' && text[5] == ':', "must be HH:MM:SS:FF, or HH:MM:SS;FF for drop frame");
    const LabelledRate* const rate = Find(frameRate);
    require(
        rate != nullptr,
        fmt::format("there is no time code at {}/{} frames a second; there is at 23.976, 24, 25, 29.97, 30, 47.952, "
                    "48, 50, 59.94 and 60",
                    frameRate.num, frameRate.den));

    const int hours = TwoDigits(text, 0);
    const int minutes = TwoDigits(text, 3);
    const int seconds = TwoDigits(text, 6);
    const int frames = TwoDigits(text, 9);
    require(hours < 24 && minutes < 60 && seconds < 60, "must lie between 00:00:00:00 and the end of a day");
    require(frames < rate->nominal, fmt::format("frames count from 00 to {} at this rate", rate->nominal - 1));

    const std::int64_t wholeMinutes = std::int64_t{hours} * 60 + minutes;
    mFrames = (wholeMinutes * 60 + seconds) * rate->nominal + frames;
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): the text has been checked only by now
    mDropFrame = text[8] == ';';
    if (mDropFrame) {
        require(rate->dropped != 0, "drop frame (;) is for 29.97 and 59.94 frames a second; write a colon");
        require(minutes % 10 == 0 || seconds != 0 || frames >= rate->dropped,
                fmt::format("drop frame leaves this number out; the minute begins with ;{:02}", rate->dropped));
        mFrames -= rate->dropped * (wholeMinutes - wholeMinutes / 10);
    }
}

bool Timecode::Labels(Rational frameRate) noexcept {
    return Find(frameRate) != nullptr;
}

std::int64_t Timecode::FramesADay() const noexcept {
    constexpr std::int64_t kMinutes = 24 * 60;
    const LabelledRate& rate = *Find(mFrameRate);
    return kMinutes * 60 * rate.nominal - (mDropFrame ? rate.dropped * (kMinutes - kMinutes / 10) : 0);
}

std::int64_t Timecode::Samples(int sampleRateHz) const noexcept {
    // At most 5.2 million frames a day times 1001 times the rate: 64 bits are enough for any int rate.
    const std::int64_t product = mFrames * mFrameRate.den;
    const std::int64_t whole = product / mFrameRate.num;
    const std::int64_t rest = product % mFrameRate.num;
    return whole * sampleRateHz + (rest * sampleRateHz + mFrameRate.num / 2) / mFrameRate.num;
}

}  // namespace lineup
