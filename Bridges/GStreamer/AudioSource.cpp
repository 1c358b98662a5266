#include "Bridges/GStreamer/AudioSource.h"

#include <lineup/Error.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>
#include <lineup/Limits.h>
#include <lineup/SettingsFile.h>
#include <lineup/ToneChoice.h>
#include "Bridges/GStreamer/Channels.h"
#include "Bridges/GStreamer/Importers.h"
#include "Bridges/GStreamer/Properties.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace gstreamer {

namespace {

enum AudioProperty : guint { kIdent = 1, kFrequency, kLevel, kSettings, kSamplesPerBuffer };

constexpr int kUsualRateHz = 48000;
constexpr int kUsualChannels = 2;
constexpr int kMostSamplesPerBuffer = 1 << 20;

constexpr double kUsualFrequencyHz = lineup::BarsAndToneInfo().frequency;

// That of the gain that a new clip has, which is exact only when nobody asks for it in decibels.
double UsualLevelDb() {
    return lineup::DbFromGain(lineup::BarsAndToneInfo().amplitude);
}

std::optional<double> UnlessUsual(const GValue& value, double usual) {
    const double asked = g_value_get_double(&value);
    return asked == usual ? std::nullopt : std::optional(asked);
}

const lineup::Ident* IdentOf(int value) {
    return value == 0 ? nullptr : &lineup::Idents()[static_cast<std::size_t>(value) - 1];
}

GValue FormatNames() {
    GValue list = G_VALUE_INIT;
    gst_value_list_init(&list, static_cast<guint>(AudioFormats().size()));
    for (const AudioFormat& row : AudioFormats()) {
        GValue name = G_VALUE_INIT;
        g_value_init(&name, G_TYPE_STRING);
        g_value_set_static_string(&name, gst_audio_format_to_string(row.format));
        gst_value_list_append_and_take_value(&list, &name);
    }
    return list;
}

/// Caps of everything that a clip can be, with its channels left out.
Caps AnySound() {
    GstStructure* const any =
        gst_structure_new("audio/x-raw", "layout", G_TYPE_STRING, "interleaved", "rate", GST_TYPE_INT_RANGE,
                          lineup::kLowestSampleRateHz, lineup::kHighestSampleRateHz, nullptr);
    GValue formats = FormatNames();
    gst_structure_take_value(any, "format", &formats);
    return Caps(gst_caps_new_full(any, nullptr));
}

/// The same with channels from `fewest` to `most`.
void AppendChannels(GstCaps& caps, int fewest, int most) {
    const Caps more = AnySound();
    GstStructure* const structure = gst_structure_copy(gst_caps_get_structure(more.get(), 0));
    if (fewest == most) {
        gst_structure_set(structure, "channels", G_TYPE_INT, fewest, nullptr);
    } else {
        gst_structure_set(structure, "channels", GST_TYPE_INT_RANGE, fewest, most, nullptr);
    }
    gst_caps_append_structure(&caps, structure);
}

void SetSpeakers(GstCaps& caps, std::uint64_t speakers) {
    gst_structure_set(gst_caps_get_structure(&caps, gst_caps_get_size(&caps) - 1), "channel-mask", GST_TYPE_BITMASK,
                      speakers, nullptr);
}

void DescribeAudio(GstElementClass& type) {
    gst_element_class_set_static_metadata(&type, "Line-up tone and channel idents", "Source/Audio",
                                          "Computes the sound of a line-up clip: a steady tone, or an ident of EBU "
                                          "stereo, EBU 5.1 or BLITS",
                                          "Bars and Tone");
    const Caps caps = AudioSource::Possible();
    gst_element_class_add_pad_template(&type, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps.get()));
    GObjectClass& object = type.parent_class.parent_class;
    gst_type_mark_as_plugin_api(SoundEnum(), GstPluginAPIFlags{});
    InstallProperty(object, kIdent,
                    g_param_spec_enum("ident", "Ident", "Which sequence says what the channels are; tone: none",
                                      SoundEnum(), 0, kReadWrite));
    InstallProperty(object, kFrequency,
                    g_param_spec_double("frequency", "Frequency", "Of the steady tone, Hz; below half the sample rate",
                                        1, lineup::kHighestSampleRateHz / 2.0, kUsualFrequencyHz, kWhilePlaying));
    InstallProperty(object, kLevel,
                    g_param_spec_double("level", "Level", "Of the steady tone's peak, dBFS; -300 is silence",
                                        lineup::kSilenceDb, 0, UsualLevelDb(), kWhilePlaying));
    InstallProperty(object, kSettings,
                    g_param_spec_string("settings", "Settings",
                                        "A settings file (.batn) or document (.lineup) that says all of the sound: "
                                        "its sample rate and channels too",
                                        nullptr, kReadWrite));
    InstallProperty(object, kSamplesPerBuffer,
                    g_param_spec_int("samplesperbuffer", "Samples per buffer", "How many samples go into a buffer", 1,
                                     kMostSamplesPerBuffer, 1024, kReadWrite));
}

}  // namespace

struct AudioSource::Playing {
    Playing(const std::shared_ptr<const lineup::Importer>& importer, const lineup::BarsAndToneInfo& settings)
        : clip(importer, settings), reader(clip) {}

    lineup::Clip clip;
    lineup::AudioReader reader;
    GstAudioInfo info{};
    const AudioFormat* format = nullptr;
    std::vector<std::vector<float>> planes;  // in the plug-in's order
    std::vector<std::size_t> order;
    std::int64_t samplesPerBuffer = 0;
    bool isTone = false;  // a steady one, which can change on its way
};

Caps AudioSource::Possible() {
    Caps caps(gst_caps_new_empty());
    AppendChannels(*caps, 1, kMostChannels);
    return caps;
}

AudioSource::AudioSource() = default;
AudioSource::~AudioSource() = default;

void AudioSource::Set(guint property, const GValue& value) {
    switch (property) {
        case kIdent:
            mIdent = g_value_get_enum(&value);
            break;
        case kFrequency:
            mFrequencyHz = UnlessUsual(value, kUsualFrequencyHz);
            mIsRetuned = true;
            break;
        case kLevel:
            mLevelDb = UnlessUsual(value, UsualLevelDb());
            mIsRetuned = true;
            break;
        case kSettings:
            mSettingsFile = g_value_get_string(&value) == nullptr ? "" : g_value_get_string(&value);
            break;
        default:
            mSamplesPerBuffer = g_value_get_int(&value);
    }
}

void AudioSource::Get(guint property, GValue& value) const {
    switch (property) {
        case kIdent:
            g_value_set_enum(&value, mIdent);
            break;
        case kFrequency:
            g_value_set_double(&value, mFrequencyHz.value_or(kUsualFrequencyHz));
            break;
        case kLevel:
            g_value_set_double(&value, mLevelDb.value_or(UsualLevelDb()));
            break;
        case kSettings:
            g_value_set_string(&value, mSettingsFile.c_str());
            break;
        default:
            g_value_set_int(&value, mSamplesPerBuffer);
    }
}

void AudioSource::Open(const std::string& plugin) {
    mImporter = ImporterAt(plugin);
    mSettings.reset();
    if (!mSettingsFile.empty()) {
        if (mIdent != 0 || mFrequencyHz || mLevelDb) {
            throw lineup::Error("settings says all of the sound: leave out ident, frequency and level");
        }
        mSettings = lineup::ReadSettings(mSettingsFile);
        const float rate = mSettings->sampleRate;
        const bool isRate = rate >= lineup::kLowestSampleRateHz && rate <= lineup::kHighestSampleRateHz;
        if (!isRate || rate != std::floor(rate)) {  // not-a-number is no rate
            throw lineup::Error(fmt::format("{} has a sample rate of {} Hz: must be a whole number from {} to {}",
                                            mSettingsFile, rate, lineup::kLowestSampleRateHz,
                                            lineup::kHighestSampleRateHz));
        }
        if (mSettings->numChannels < 1 || mSettings->numChannels > kMostChannels) {
            throw lineup::Error(fmt::format("{} has {} channels: must be 1 to {}", mSettingsFile,
                                            mSettings->numChannels, kMostChannels));
        }
    }
}

void AudioSource::Close() noexcept {
    mPlaying.reset();
    mSettings.reset();
    mImporter.reset();
}

int AudioSource::NumChannels() const {
    if (mSettings) {
        return static_cast<int>(mSettings->numChannels);
    }
    return mIdent == 0 ? 0 : static_cast<int>(IdentOf(mIdent)->numChannels);
}

// A steady tone is the same in all channels, whatever speakers they are for. Otherwise each has its own.
Caps AudioSource::Offered() const {
    const int channels = NumChannels();
    if (channels == 0) {
        return Possible();
    }
    Caps caps(gst_caps_new_empty());
    AppendChannels(*caps, channels, channels);
    if (channels > 1) {
        SetSpeakers(*caps, SpeakersOf(channels, false));
    }
    if (channels > 2) {
        for (const std::uint64_t speakers : {SpeakersOf(channels, true), std::uint64_t{0}}) {
            AppendChannels(*caps, channels, channels);
            SetSpeakers(*caps, speakers);
        }
    }
    if (mSettings) {
        gst_caps_set_simple(caps.get(), "rate", G_TYPE_INT, static_cast<gint>(mSettings->sampleRate), nullptr);
    }
    return caps;
}

Caps AudioSource::Chosen(Caps caps) const {
    GstStructure* const structure = gst_caps_get_structure(caps.get(), 0);
    gst_structure_fixate_field_nearest_int(structure, "rate", kUsualRateHz);
    gst_structure_fixate_field_nearest_int(structure, "channels", kUsualChannels);
    int channels = 0;
    gst_structure_get_int(structure, "channels", &channels);
    if (channels > 1 && gst_structure_has_field(structure, "channel-mask") == FALSE) {
        gst_structure_set(structure, "channel-mask", GST_TYPE_BITMASK, SpeakersOf(channels, false), nullptr);
    }
    return caps;
}

lineup::BarsAndToneInfo AudioSource::SettingsFor(int rateHz, int channels) const {
    if (mSettings) {
        lineup::CheckTone(*mSettings);
        return *mSettings;
    }
    const lineup::Ident* const ident = IdentOf(mIdent);
    if (ident == nullptr) {
        return ToneSettings(rateHz, channels);
    }
    lineup::ToneChoice choice{.sampleRateHz = rateHz, .frequencyHz = mFrequencyHz, .levelDb = mLevelDb};
    choice.ident = ident->name;
    return lineup::MakeSettings(*mImporter, choice);
}

lineup::BarsAndToneInfo AudioSource::ToneSettings(int rateHz, int channels) const {
    const lineup::ToneChoice choice{.sampleRateHz = rateHz, .frequencyHz = mFrequencyHz, .levelDb = mLevelDb};
    lineup::BarsAndToneInfo settings = lineup::MakeSettings(*mImporter, choice);
    settings.numChannels = static_cast<std::uint32_t>(channels);
    settings.channelType = lineup::ChannelTypeFor(settings.numChannels);
    return settings;
}

void AudioSource::Take(const GstCaps& caps) {
    GstAudioInfo info{};
    const bool known = gst_audio_info_from_caps(&info, &caps) != FALSE;
    const AudioFormat* const format = known ? FindAudioFormat(GST_AUDIO_INFO_FORMAT(&info)) : nullptr;
    if (format == nullptr) {
        throw lineup::Error("the sound that is asked for has a format that no clip can have");
    }
    const int channels = GST_AUDIO_INFO_CHANNELS(&info);
    mPlaying.reset();
    auto playing = std::make_unique<Playing>(mImporter, SettingsFor(GST_AUDIO_INFO_RATE(&info), channels));
    playing->info = info;
    playing->format = format;
    playing->order = ChannelOrder(channels);
    playing->samplesPerBuffer = mSamplesPerBuffer;
    const auto samples = static_cast<std::size_t>(mSamplesPerBuffer);
    playing->planes.assign(static_cast<std::size_t>(channels), std::vector<float>(samples));
    playing->isTone = mIdent == 0 && !mSettings;
    mIsRetuned = false;
    mPlaying = std::move(playing);
}

// The steady tone goes on at the same clip time, as it is now; an ident, and what a file says, have no such choice.
void AudioSource::Retune() {
    mIsRetuned = false;
    if (!mPlaying->isTone) {
        return;
    }
    const GstAudioInfo info = mPlaying->info;
    auto retuned =
        std::make_unique<Playing>(mImporter, ToneSettings(GST_AUDIO_INFO_RATE(&info), GST_AUDIO_INFO_CHANNELS(&info)));
    retuned->info = info;
    retuned->format = mPlaying->format;
    retuned->order = mPlaying->order;
    retuned->samplesPerBuffer = mPlaying->samplesPerBuffer;
    retuned->planes = std::move(mPlaying->planes);
    retuned->isTone = true;
    mPlaying = std::move(retuned);
}

Grid AudioSource::Units() const {
    return Grid({GST_AUDIO_INFO_RATE(&mPlaying->info), 1});
}

std::int64_t AudioSource::UnitsPerBuffer() const {
    return mPlaying->samplesPerBuffer;
}

Buffer AudioSource::Make(std::int64_t first, std::int64_t count) {
    if (mIsRetuned) {
        Retune();
    }
    std::array<float*, kMostChannels> planes{};
    std::array<const float*, kMostChannels> places{};
    const std::size_t channels = mPlaying->planes.size();
    for (std::size_t c = 0; c < channels; ++c) {
        planes.at(c) = mPlaying->planes[c].data();
        places.at(c) = mPlaying->planes[mPlaying->order[c]].data();
    }
    mPlaying->reader.Read(first, count, {planes.data(), channels});
    const auto frames = static_cast<std::size_t>(count);
    const auto frameBytes = static_cast<std::size_t>(GST_AUDIO_INFO_BPF(&mPlaying->info));
    Buffer buffer(gst_buffer_new_allocate(nullptr, frames * frameBytes, nullptr));
    GstMapInfo map{};
    if (!buffer || gst_buffer_map(buffer.get(), &map, GST_MAP_WRITE) == FALSE) {
        throw std::bad_alloc();
    }
    PackAudio({places.data(), channels}, frames, *mPlaying->format, map.data);
    gst_buffer_unmap(buffer.get(), &map);
    return buffer;
}

constexpr ElementKind AudioSource::kElement = {"LineupAudioSrc", DescribeAudio,
                                               [] { return std::unique_ptr<Source>(new AudioSource); }};

}  // namespace gstreamer
