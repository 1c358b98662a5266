#include "Host/Lineup/Export/Media/Muxer.h"

#include "Host/Lineup/Export/Media/FfmpegVersions.h"
#include "Host/Lineup/Export/Media/MovieHead.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <string>

namespace lineup {

namespace {

// Of the media library's own buffer, which holds single numbers until the next field.
constexpr int kBufferBytes = 1 << 12;

WriteGatherer& FileOf(void* opaque) {
    return *static_cast<WriteGatherer*>(opaque);
}

int WriteBytes(void* opaque, BytesToWrite bytes, int count) {
    WriteGatherer& file = FileOf(opaque);
    if (file.Write({bytes, static_cast<std::size_t>(count)})) {
        return count;
    }
    return AVERROR(file.Errno() != 0 ? file.Errno() : ENOMEM);
}

std::int64_t SeekTo(void* opaque, std::int64_t offset, int whence) {
    WriteGatherer& file = FileOf(opaque);
    switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return file.Size();
        case SEEK_SET:
            break;
        case SEEK_CUR:
            offset += file.Position();
            break;
        case SEEK_END:
            offset += file.Size();
            break;
        default:
            return AVERROR(EINVAL);
    }
    return file.Seek(offset) ? offset : AVERROR(file.Errno());
}

AvIoContext OpenIo(WriteGatherer& file, bool canSeek, bool isHeld) {
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (buffer == nullptr) {
        throw std::bad_alloc();
    }
    AVIOContext* const io = avio_alloc_context(buffer, kBufferBytes, /*write_flag=*/1, &file, nullptr, &WriteBytes,
                                               canSeek || isHeld ? &SeekTo : nullptr);
    if (io == nullptr) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    io->seekable = canSeek ? AVIO_SEEKABLE_NORMAL : 0;
    io->direct = 1;  // packets come to WriteBytes in their own memory
    return AvIoContext(io);
}

AvFormatContext OpenContext(const Container& container, AVIOContext& io) {
    AVFormatContext* context = nullptr;
    RequireAv(avformat_alloc_output_context2(&context, nullptr, std::string(container.muxer).c_str(), nullptr),
              fmt::format("cannot write a .{} file", container.format.extension));
    context->pb = &io;
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    return AvFormatContext(context);
}

}  // namespace

Muxer::Muxer(const Container& container, TargetFile& file, bool reproducible)
    : mContainer(&container),
      mFile(&file),
      mGatherer(file),
      mInPieces(container.describesCleanPart && !file.CanSeek()),
      mIo(OpenIo(mGatherer, file.CanSeek(), mInPieces)),
      mContext(OpenContext(container, *mIo)) {
    // The same settings make the same bytes, but where a format's identifiers must be unique in the world.
    if (!container.uniqueIdentifiers || reproducible) {
        mContext->flags |= AVFMT_FLAG_BITEXACT;
    }
}

void Muxer::Require(int code) {
    mFile->ThrowIfFailed();
    RequireAv(code, fmt::format("cannot write {}", mFile->Target().string()));
}

bool Muxer::WantsGlobalHeaders() const noexcept {
    return (mContext->oformat->flags & AVFMT_GLOBALHEADER) != 0;
}

int Muxer::AddStream(const AVCodecContext& encoder) {
    AVStream* const stream = avformat_new_stream(mContext.get(), nullptr);
    if (stream == nullptr) {
        throw std::bad_alloc();
    }
    Require(avcodec_parameters_from_context(stream->codecpar, &encoder));
    stream->time_base = encoder.time_base;
    stream->avg_frame_rate = encoder.framerate;
    stream->r_frame_rate = encoder.framerate;
    stream->sample_aspect_ratio = encoder.sample_aspect_ratio;
    stream->disposition |= AV_DISPOSITION_DEFAULT;  // each belongs to the whole; none is another's alternative
    return stream->index;
}

void Muxer::Label(int stream, const std::string& layout) {
    Require(av_channel_layout_from_string(&mContext->streams[stream]->codecpar->ch_layout, layout.c_str()));
}

void Muxer::AddToCodecData(int stream, std::span<const std::uint8_t> bytes) {
    AVCodecParameters& codec = *mContext->streams[stream]->codecpar;
    const auto old = static_cast<std::size_t>(codec.extradata_size);
    auto* const data =
        static_cast<std::uint8_t*>(av_realloc(codec.extradata, old + bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    if (data == nullptr) {
        throw std::bad_alloc();
    }
    std::ranges::copy(bytes, data + old);
    std::fill_n(data + old + bytes.size(), AV_INPUT_BUFFER_PADDING_SIZE, std::uint8_t{0});
    codec.extradata = data;
    codec.extradata_size = static_cast<int>(old + bytes.size());
}

void Muxer::Tag(int stream, std::string_view key, std::string_view value) {
    Require(av_dict_set(&mContext->streams[stream]->metadata, std::string(key).c_str(), std::string(value).c_str(), 0));
}

void Muxer::Begin(AvOptions& options) {
    options.Set(mFile->CanSeek() ? mContainer->options : mContainer->pipeOptions);
    for (const CodecOption& tag : mContainer->tags) {
        Require(av_dict_set(&mContext->metadata, std::string(tag.name).c_str(), std::string(tag.value).c_str(), 0));
    }
    if (mInPieces) {
        mGatherer.Hold();
    }
    Require(avformat_write_header(mContext.get(), options.Address()));
    options.RequireAllUsed(mContainer->muxer);
}

void Muxer::Write(AVPacket& packet, int stream, AVRational timeBase) {
    packet.stream_index = stream;
    av_packet_rescale_ts(&packet, timeBase, mContext->streams[stream]->time_base);
    Require(av_interleaved_write_frame(mContext.get(), &packet));
    if (mInPieces) {
        PassOn();
    }
}

// The muxer goes back to a head's or a fragment's fields until it has written the whole of it.
void Muxer::PassOn() {
    avio_flush(mIo.get());
    if (mGatherer.Held().empty()) {
        return;
    }
    if (!mHeadIsComplete) {
        CompleteHead();
        ForgetSampleTimes(mGatherer.Held());  // which are in the fragments
    }
    mGatherer.Release();
    mGatherer.Hold();
    mIo->pos = mGatherer.Position();  // which the head's completion has moved
}

void Muxer::Finish() {
    if (mInPieces) {
        WriteEnd();
        PassOn();
    } else if (mContainer->describesCleanPart) {
        // What interleaving still holds back belongs to the pictures and sounds, not to what follows them.
        Require(av_interleaved_write_frame(mContext.get(), nullptr));
        avio_flush(mIo.get());
        mGatherer.Hold();
        WriteEnd();
        CompleteHead();
        mGatherer.Release();
    } else {
        WriteEnd();
    }
    mGatherer.Flush();
    Require(mIo->error);
}

// The head is among what is kept.
void Muxer::CompleteHead() {
    SetCleanAperture(mGatherer.Held(), mShape.cleanWidth, mShape.cleanHeight);
    if (mContainer->describesFields) {
        AddFieldOrder(mGatherer.Held(), mScan);
    }
    NameCodedSurround(mGatherer.Held(), kTagOfCodedSurround);
    if (NumSounds() > 1) {  // or a player takes the first
        LeaveTrackGroups(mGatherer.Held());
    }
    mHeadIsComplete = true;
}

std::ptrdiff_t Muxer::NumSounds() const {
    return std::count_if(mContext->streams, mContext->streams + mContext->nb_streams,
                         [](const AVStream* stream) { return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO; });
}

void Muxer::WriteEnd() {
    Require(av_write_trailer(mContext.get()));
    avio_flush(mIo.get());
}

}  // namespace lineup
