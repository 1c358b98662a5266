#include "Host/Lineup/Check/Reader/Decoder/Session.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Decoder/MediaInput.h"
#include "Host/Lineup/Check/Reader/Decoder/PictureTrack.h"
#include "Host/Lineup/Check/Reader/Decoder/SoundTrack.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

namespace lineup::decoding {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kNoStream = -1;
constexpr auto kSayEvery = std::chrono::seconds(1);

// Of a feed, what packets bring within this is said together: uncompressed sound may come in 8000 a second.
constexpr auto kTogether = std::chrono::milliseconds(5);

bool IsSound(const AVStream& stream) {
    const AVCodecParameters& parameters = *stream.codecpar;
    return parameters.codec_type == AVMEDIA_TYPE_AUDIO && parameters.ch_layout.nb_channels > 0 &&
           parameters.sample_rate > 0 && parameters.sample_rate <= static_cast<int>(kHighestRate);
}

// The first track of pictures, covers of albums aside.
int FindPictures(const AVFormatContext& format) {
    for (unsigned index = 0; index < format.nb_streams; ++index) {
        const AVStream& stream = *format.streams[index];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
            (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0) {
            return static_cast<int>(index);
        }
    }
    return kNoStream;
}

// A file that is one picture, and no recording.
bool IsStill(const AVFormatContext& format) {
    const std::string_view name = format.iformat->name;
    return format.nb_streams == 1 && (name == "image2" || name.ends_with("_pipe"));
}

// The first time stamp of all these tracks, s.
double Origin(const AVFormatContext& format, const std::vector<unsigned>& sound) {
    double origin = std::numeric_limits<double>::infinity();
    for (const unsigned index : sound) {
        const AVStream& stream = *format.streams[index];
        if (stream.start_time != AV_NOPTS_VALUE) {
            origin = std::min(origin, static_cast<double>(stream.start_time) * av_q2d(stream.time_base));
        }
    }
    return std::isfinite(origin) ? origin : 0;
}

class Session {
public:
    Session(MediaInput& input, MessageWriter& out, const Wanted& wanted, InputKind kind)
        : mInput(&input), mOut(&out), mWanted(wanted), mIsLive(kind != InputKind::File) {}

    void OpenTracks() {
        const int pictures = mWanted.picture ? FindPictures(mInput->Format()) : kNoStream;
        const std::vector<unsigned> sound = ChooseTracks(pictures >= 0);
        mTrackOfStream.resize(mInput->Format().nb_streams);
        for (unsigned index = 0; index < mInput->Format().nb_streams; ++index) {
            mInput->Stream(index).discard = AVDISCARD_ALL;
        }
        const std::vector<unsigned> timed = mWanted.from && sound.empty() ? SoundStreams() : sound;
        const double origin =
            Origin(mInput->Format(), timed.empty() ? std::vector{static_cast<unsigned>(pictures)} : timed);
        OpenSound(sound, origin + mWanted.from.value_or(0));
        if (pictures >= 0) {
            OpenPictures(static_cast<unsigned>(pictures), origin);
        }
        if (mWanted.from) {
            for (const auto& track : mTracks) {
                track->BeginAtOrigin();
            }
            mFromStamp = origin + *mWanted.from;
            GoBack(mFromStamp);
        }
        WriteBegin();
    }

    void OpenSound(const std::vector<unsigned>& sound, double origin) {
        for (const unsigned index : sound) {
            const auto rate = static_cast<std::uint32_t>(mInput->Stream(sound.front()).codecpar->sample_rate);
            mInput->Stream(index).discard = AVDISCARD_DEFAULT;
            auto track = std::make_unique<SoundTrack>(mInput->Stream(index), static_cast<std::uint32_t>(mTracks.size()),
                                                      rate, origin);
            mOut->Write(track->Facts());
            mTrackOfStream[index] = track.get();
            mSoundStream = static_cast<int>(sound.front());
            mTracks.push_back(std::move(track));
        }
    }

    // Where there is sound, it can be checked without its pictures.
    void OpenPictures(unsigned index, double origin) {
        try {
            mPictures.emplace(mInput->Stream(index), origin, Length(), IsStill(mInput->Format()));
        } catch (const EarlyEnd&) {
            if (mTracks.empty()) {
                throw;
            }
            return;
        }
        mInput->Stream(index).discard = AVDISCARD_DEFAULT;
        mPictureStream = static_cast<int>(index);
        mOut->Write(mPictures->Facts());
    }

    void DecodeAll() {
        ReadPackets();
        for (const auto& track : mTracks) {
            track->Decode(nullptr, *mOut);
        }
        if (mPictures) {
            mPictures->Decode(nullptr, *mOut);
            while (mPictures->MayMiss() && mTracks.empty()) {
                GoBack(mFromStamp);
                ReadPackets();
                mPictures->Decode(nullptr, *mOut);
            }
            mOut->Write(mPictures->Length());
        }
        RequireWholeTracks();
    }

private:
    void ReadPackets() {
        const AvPacket packet(RequireMemory(av_packet_alloc()));
        while (mInput->Read(*packet)) {
            const auto index = static_cast<std::size_t>(packet->stream_index);
            SoundTrack* const track = index < mTrackOfStream.size() ? mTrackOfStream[index] : nullptr;
            if (packet->stream_index == mPictureStream) {
                mPictures->Decode(packet.get(), *mOut);
                if (mPictures->HasMissed() && mTracks.empty()) {
                    GoBack(mFromStamp);
                }
                SayWhetherReading();
            } else if (track != nullptr) {
                if (track == mTracks.front().get()) {
                    track->Arrives(std::chrono::duration<double>(Clock::now() - mBegun).count());
                }
                track->Decode(packet.get(), *mOut);
                mNextReading = Clock::now() + kSayEvery;
            } else {
                SayWhetherReading();
            }
            av_packet_unref(packet.get());
            if (mIsLive && Clock::now() >= mNextFlush) {
                mOut->Flush();
                mNextFlush = Clock::now() + kTogether;
            }
        }
    }

    // As many as fit, in the order of the recording.
    std::vector<unsigned> ChooseTracks(bool hasPictures) {
        std::vector<unsigned> chosen;
        std::size_t channels = 0;
        for (unsigned index = 0; index < mInput->Format().nb_streams; ++index) {
            const AVStream& stream = mInput->Stream(index);
            if (!mWanted.sound || !IsSound(stream)) {
                continue;
            }
            const auto more = static_cast<std::size_t>(stream.codecpar->ch_layout.nb_channels);
            if (channels + more > kMostChannels || chosen.size() == kMostTracks) {
                mLeftOut += static_cast<std::uint32_t>(more);
                continue;
            }
            channels += more;
            chosen.push_back(index);
        }
        if (chosen.empty() && !hasPictures) {
            throw EarlyEnd(EndCause::NoSound, !mWanted.sound ? "it has no pictures"
                                              : mLeftOut > 0 ? "its tracks have too many channels"
                                                             : "it has no sound");
        }
        return chosen;
    }

    // Those that places are counted by, where they are not decoded themselves.
    [[nodiscard]] std::vector<unsigned> SoundStreams() const {
        std::vector<unsigned> streams;
        for (unsigned index = 0; index < mInput->Format().nb_streams; ++index) {
            if (IsSound(mInput->Stream(index))) {
                streams.push_back(index);
            }
        }
        return streams;
    }

    // A key frame may be stamped a little later than what it begins. Some kinds of files lead to any packet, with the
    // next key frame behind the place: then further back, and at last to the start.
    void GoBack(double stamp) {
        constexpr double kMostBack = 100;  // s
        const int stream = mPictures ? mPictureStream : mSoundStream;
        const bool isLast = mBack > kMostBack;
        const double target = isLast ? stamp - *mWanted.from : stamp - mBack;
        const bool isThere = stream >= 0 && mInput->Seek(stream, target);
        if (mPictures) {
            mPictures->BeginAt(*mWanted.from, isThere && !isLast);
        }
        mBack *= 4;
    }

    // As the recording says itself, s.
    [[nodiscard]] std::optional<double> Length() const {
        const AVFormatContext& format = mInput->Format();
        const bool isKnown = format.duration != AV_NOPTS_VALUE && format.duration > 0;
        return isKnown ? std::optional(static_cast<double>(format.duration) / AV_TIME_BASE) : std::nullopt;
    }

    void WriteBegin() {
        const AVFormatContext& format = mInput->Format();
        mOut->Write(decoding::Begin{.tracks = static_cast<std::uint32_t>(mTracks.size()),
                                    .leftOut = mLeftOut,
                                    .seconds = Length().value_or(0),
                                    .container = ToField<64>(format.iformat->name)});
        mOut->Flush();
    }

    // A recording may hold hours of pictures between two packets of sound.
    void SayWhetherReading() {
        const std::int64_t bytes = mInput->BytesRead();
        if (Clock::now() >= mNextReading && bytes > mSaidBytes) {
            mNextReading = Clock::now() + kSayEvery;
            mSaidBytes = bytes;
            mOut->Write(Reading{.bytes = bytes});
            mOut->Flush();
        }
    }

    void RequireWholeTracks() const {
        for (const auto& track : mTracks) {
            if (!track->Trouble().empty()) {
                throw EarlyEnd(EndCause::RaggedEnd, "its end cannot be decoded: " + track->Trouble());
            }
        }
    }

    MediaInput* mInput;
    MessageWriter* mOut;
    Wanted mWanted;
    bool mIsLive;
    Clock::time_point mBegun = Clock::now();
    std::optional<PictureTrack> mPictures;
    int mPictureStream = kNoStream;
    int mSoundStream = kNoStream;  // the first
    double mFromStamp = 0;         // s
    double mBack = 0.5;            // s, before that
    std::uint32_t mLeftOut = 0;
    std::vector<std::unique_ptr<SoundTrack>> mTracks;
    std::vector<SoundTrack*> mTrackOfStream;
    Clock::time_point mNextReading = Clock::now() + kSayEvery;
    Clock::time_point mNextFlush;
    std::int64_t mSaidBytes = 0;
};

End Decode(InputKind kind, const std::string& name, std::chrono::milliseconds stall, const Wanted& wanted,
           MessageWriter& out) {
    const auto end = [](EndCause cause, std::string_view reason) {
        return End{.cause = static_cast<std::uint32_t>(cause), .reserved = 0, .reason = ToField<192>(reason)};
    };
    try {
        MediaInput input(kind, name, stall);
        Session session(input, out, wanted, kind);
        session.OpenTracks();
        session.DecodeAll();
        return end(EndCause::Whole, "");
    } catch (const EarlyEnd& early) {
        return end(early.Cause(), early.what());
    } catch (const std::bad_alloc&) {
        return end(EndCause::NoMemory, "decoding it takes more memory than it may");
    }
}

}  // namespace

void DecodeRecording(InputKind kind, const std::string& name, std::chrono::milliseconds stall, const Wanted& wanted,
                     MessageWriter& out) {
    out.Write(Decode(kind, name, stall, wanted, out));
    out.Flush();
}

}  // namespace lineup::decoding
