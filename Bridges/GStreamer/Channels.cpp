#include "Bridges/GStreamer/Channels.h"

#include <lineup/ChannelLayout.h>

#include <gst/audio/audio.h>

namespace gstreamer {

namespace {

struct Speaker {
    GstAudioChannelPosition side;
    GstAudioChannelPosition rear;
};

// The plug-in's channels: L, R, Ls, Rs, C, LFE.
constexpr std::array<Speaker, kMostChannels> kSpeakers = {{
    {GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT, GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT},
    {GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT, GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT},
    {GST_AUDIO_CHANNEL_POSITION_SIDE_LEFT, GST_AUDIO_CHANNEL_POSITION_REAR_LEFT},
    {GST_AUDIO_CHANNEL_POSITION_SIDE_RIGHT, GST_AUDIO_CHANNEL_POSITION_REAR_RIGHT},
    {GST_AUDIO_CHANNEL_POSITION_FRONT_CENTER, GST_AUDIO_CHANNEL_POSITION_FRONT_CENTER},
    {GST_AUDIO_CHANNEL_POSITION_LFE1, GST_AUDIO_CHANNEL_POSITION_LFE1},
}};

}  // namespace

std::vector<std::size_t> ChannelOrder(int count) {
    std::vector<std::size_t> order;
    for (const int channel : lineup::FindChannelLayout(kMostChannels)->fileOrder) {
        if (channel < count) {
            order.push_back(static_cast<std::size_t>(channel));
        }
    }
    return order;
}

std::uint64_t SpeakersOf(int count, bool rear) {
    std::uint64_t mask = 0;
    for (std::size_t channel = 0; count > 1 && channel < static_cast<std::size_t>(count); ++channel) {
        const Speaker& speaker = kSpeakers.at(channel);
        mask |= std::uint64_t{1} << static_cast<unsigned>(rear ? speaker.rear : speaker.side);
    }
    return mask;
}

}  // namespace gstreamer
