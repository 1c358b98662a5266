#pragma once

#include <lineup/Scan.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/WriteGatherer.h"
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Values/PictureShape.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace lineup {

/// Puts encoded packets into a file of one format. The file must outlive it. Every method throws Error
/// when the file cannot be written, with the system's cause.
class Muxer {
public:
    /// `reproducible`: even where a format's identifiers should be unique in the world, they are the same each time.
    Muxer(const Container& container, TargetFile& file, bool reproducible);

    /// Whether encoders must keep their headers out of their packets.
    [[nodiscard]] bool WantsGlobalHeaders() const noexcept;

    /// Adds a stream for what an opened encoder makes, and returns its number.
    int AddStream(const AVCodecContext& encoder);

    /// Says which channels a stream of sound has, by FFmpeg's name of their layout, before Begin.
    void Label(int stream, const std::string& layout);

    /// Adds bytes to what the codec tells its decoder ahead of all packets, before Begin.
    void AddToCodecData(int stream, std::span<const std::uint8_t> bytes);

    /// Tags a stream, before Begin.
    void Tag(int stream, std::string_view key, std::string_view value);

    /// Says which part of the picture is to be shown and which fields it has, where the container can.
    void Describe(const PictureShape& shape, Scan scan) {
        mShape = shape;
        mScan = scan;
    }

    /// Writes the file's head; all streams are there by now. `options` go to the muxer beside the container's own.
    void Begin(AvOptions& options);

    /// Writes a packet, timed in `timeBase`, in its turn among the streams' packets. Leaves it blank.
    void Write(AVPacket& packet, int stream, AVRational timeBase);

    /// Writes the file's end. The file is whole now, but for TargetFile::Commit.
    void Finish();

private:
    void Require(int code);
    void PassOn();
    void CompleteHead();
    [[nodiscard]] std::ptrdiff_t NumSounds() const;
    void WriteEnd();

    const Container* mContainer;
    TargetFile* mFile;
    WriteGatherer mGatherer;
    bool mInPieces;  // of which each is kept until it is whole: a movie that is written from front to back
    AvIoContext mIo;
    AvFormatContext mContext;
    PictureShape mShape;
    Scan mScan = Scan::Progressive;
    bool mHeadIsComplete = false;
};

}  // namespace lineup
