#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"
#include "Host/Lineup/Check/Reader/Decoder/Resampler.h"
#include "Host/Lineup/Check/Reader/Decoder/TrackClock.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lineup::decoding {

/// One sound track: its packets in, its samples out, at their places.
class SoundTrack {
public:
    /// Opens the decoder. `rate` is that of the samples that come out, Hz; `origin` the time stamp, s, of position 0.
    /// Throws EarlyEnd when these libraries cannot decode it.
    SoundTrack(const AVStream& stream, std::uint32_t index, std::uint32_t rate, double origin);

    [[nodiscard]] Track Facts() const;

    /// Leaves out frames that begin before position 0, where decoding began further back.
    void BeginAtOrigin() noexcept { mBeginsAtOrigin = true; }

    /// Decodes a packet, or with null what is left at the end, and writes what comes out. What cannot be decoded is
    /// damage once something after it can.
    void Decode(const AVPacket* packet, MessageWriter& out);

    /// What is decoded next came in at this second of this machine's clock: that is said too.
    void Arrives(double seconds) { mArrived = seconds; }

    /// Why the last packets of the track could not be decoded; empty when they could.
    [[nodiscard]] const std::string& Trouble() const noexcept { return mTrouble; }

private:
    void Receive(MessageWriter& out);
    void TakeFrame(MessageWriter& out);
    void RequireSameKind() const;
    void WriteDamage(const TrackClock::Place& place, MessageWriter& out);
    void Write(const TrackClock::Place& place, MessageWriter& out);
    void WriteResampled(const AVFrame* frame, MessageWriter& out);
    void WriteBlocks(std::int64_t position, const AVFrame& frame, MessageWriter& out) const;
    [[nodiscard]] std::int64_t AtRate(std::int64_t position) const;

    const AVStream* mStream;
    std::uint32_t mIndex;
    std::uint32_t mRate;
    std::uint32_t mOwnRate;
    int mChannels;
    AvCodecContext mDecoder;
    AvFrame mFrame;
    TrackClock mClock;
    double mOrigin;
    std::optional<double> mArrived;
    std::optional<Resampler> mResampler;
    std::int64_t mResampledEnd = 0;
    bool mHasBegun = false;
    bool mBeginsAtOrigin = false;
    std::string mTrouble;
};

}  // namespace lineup::decoding
