#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"
#include "Host/Lineup/Check/Reader/Decoder/HeldGroup.h"
#include "Host/Lineup/Check/Reader/Decoder/PictureSampling.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <cstdint>
#include <optional>

namespace lineup::decoding {

/// The pictures of a recording: packets in; some of the frames out, codes as they are in the file.
class PictureTrack {
public:
    /// Opens the decoder. `origin` is the time stamp, s, of time 0; `length` that of the recording, s, where it is
    /// known. Throws EarlyEnd when these libraries cannot decode it.
    PictureTrack(const AVStream& stream, double origin, std::optional<double> length, bool isStill);

    [[nodiscard]] Picture Facts() const;

    /// Leaves out what comes before the frame that is shown at this place. `isNear`: decoding begins close to it, and
    /// takes every frame.
    void BeginAt(double seconds, bool isNear);

    /// The first frame that came out after a BeginAt close to the place is later than that: decoding is to begin
    /// further back, and then BeginAt is called again.
    [[nodiscard]] bool HasMissed() const noexcept { return mHasMissed; }

    /// The frame of the place has not come out yet, and may lie further back.
    [[nodiscard]] bool MayMiss() const noexcept { return mMayMiss; }

    /// Decodes a packet if its frame is one of those that are looked at, or with null what is left at the end.
    void Decode(const AVPacket* packet, MessageWriter& out);

    /// What there was of pictures, decoded or not.
    [[nodiscard]] PictureEnd Length() const;

private:
    void Count(const AVPacket& packet);
    [[nodiscard]] PacketFacts FactsOf(const AVPacket& packet) const;
    void Send(const AVPacket* packet, MessageWriter& out);
    void Receive(MessageWriter& out);
    [[nodiscard]] double SecondsOf(const AVFrame& frame) const;
    void Take(MessageWriter& out);
    void WriteHeld(MessageWriter& out);
    void Write(MessageWriter& out);
    void WritePlanes(const Frame& head, MessageWriter& out);

    const AVStream* mStream;
    double mOrigin;
    bool mIsStill;
    AvCodecContext mDecoder;
    AvFrame mFrame;
    AvFrame mHeld;
    std::optional<double> mFrom;
    bool mMayMiss = false;
    bool mHasMissed = false;
    PictureSampling mSampling;
    HeldGroup mGroup;
    std::optional<double> mStart;
    double mEnd = 0;
    double mFrameSeconds = 0;
    std::int64_t mPackets = 0;
};

}  // namespace lineup::decoding
