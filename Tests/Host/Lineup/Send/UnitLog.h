#pragma once

#include <cstdint>
#include <deque>
#include <istream>
#include <map>
#include <string>
#include <vector>

namespace test {

/// Pictures and frames of sound as another program noted them: that they are an even step apart, and that each is what
/// came a cycle before it.
class UnitLog {
public:
    /// Of a stream: so many units are a cycle, and stamps may be so far from even.
    struct Lane {
        std::size_t repeats = 0;
        std::int64_t unevenness = 0;
        std::int64_t units = 0;
        std::int64_t stamp = 0;
        std::int64_t step = 0;
        std::deque<std::string> last;
    };

    UnitLog(Lane picture, Lane sound) : mLanes{{kPicture, std::move(picture)}, {kSound, std::move(sound)}} {}

    /// FFmpeg's framecrc: "stream, dts, pts, duration, size, checksum", the picture being stream 0.
    void ReadFrameCrc(std::istream& text);

    /// GStreamer's checksumsink: "h:mm:ss.nnnnnnnnn checksum", of 32 digits for pictures and 40 for sound.
    void ReadChecksums(std::istream& text);

    [[nodiscard]] std::int64_t Pictures() const { return mLanes.at(kPicture).units; }
    [[nodiscard]] std::int64_t SoundFrames() const { return mLanes.at(kSound).units; }

    std::int64_t errors = 0;
    std::vector<std::string> firstErrors;

private:
    static constexpr int kPicture = 0;
    static constexpr int kSound = 1;

    void Take(int lane, std::int64_t stamp, const std::string& content);
    void Complain(const std::string& text);

    std::map<int, Lane> mLanes;
};

}  // namespace test
