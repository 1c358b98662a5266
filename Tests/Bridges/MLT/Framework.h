#pragma once

#include "Tests/Bridges/PlugInSound.h"

#include <framework/mlt.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The framework in this process, with the module under test among its own.
namespace test {

struct CloseProfile {
    void operator()(mlt_profile_s* profile) const { mlt_profile_close(profile); }
};
struct CloseProducer {
    void operator()(mlt_producer_s* producer) const { mlt_producer_close(producer); }
};
struct CloseFrame {
    void operator()(mlt_frame_s* frame) const { mlt_frame_close(frame); }
};
struct CloseConsumer {
    void operator()(mlt_consumer_s* consumer) const { mlt_consumer_close(consumer); }
};
struct ClosePlaylist {
    void operator()(mlt_playlist_s* playlist) const { mlt_playlist_close(playlist); }
};
using Profile = std::unique_ptr<mlt_profile_s, CloseProfile>;
using Producer = std::unique_ptr<mlt_producer_s, CloseProducer>;
using Frame = std::unique_ptr<mlt_frame_s, CloseFrame>;
using Consumer = std::unique_ptr<mlt_consumer_s, CloseConsumer>;
using Playlist = std::unique_ptr<mlt_playlist_s, ClosePlaylist>;

/// Frames a second.
struct Fps {
    int num;
    int den;
};

inline constexpr Fps kPal{25, 1};
inline constexpr Fps kNtsc{30000, 1001};

/// The repository of the framework, made when first asked for.
mlt_repository Repository();

/// A profile of `width` x `height` square pixels.
Profile MakeProfile(Fps fps, int width = 1920, int height = 1080);

using PropertyList = std::vector<std::pair<std::string, std::string>>;

/// The producer under test, without the framework's own conversions around it.
Producer MakeClip(mlt_profile_s& profile, const PropertyList& properties = {}, const char* argument = nullptr);

/// The producer with the framework's conversions around it, as programs make it.
Producer MakeWholeClip(mlt_profile_s& profile, const char* argument);

/// The next frame of a service.
Frame NextFrame(mlt_service service);

/// What a frame gives when asked for `count` samples.
struct FrameSound {
    Planes planes;
    int rateHz = 0;
    mlt_audio_format format = mlt_audio_none;
    std::string layout;
};
FrameSound SoundOf(mlt_frame_s& frame, int rateHz, int channels, int count);

/// The sound of the next `frames` frames, asked for as consumers do: the first one's length is that of frame
/// `firstOnTimeline` of their own timeline.
Planes ReadFrames(mlt_service service, Fps fps, int frames, int rateHz = 48000, int channels = 2,
                  int firstOnTimeline = 0);

/// The sample that frame `position` starts with, to the nearest.
std::int64_t SampleAt(std::int64_t position, Fps fps, int rateHz);

/// What the framework logged while one of these lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    [[nodiscard]] std::string Text() const;
};

}  // namespace test
