#include "Tests/Bridges/MLT/Framework.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <stdexcept>

// The framework's own modules keep memory until the process ends; they are unloaded by then and cannot be named in a
// list of exceptions. Everything else that the address sanitizer looks for, it looks for here too.
extern "C" [[gnu::visibility("default")]] int __lsan_is_turned_off();  // NOLINT(bugprone-reserved-identifier): its name
extern "C" int __lsan_is_turned_off() {
    return 1;
}

namespace test {

namespace {

std::mutex logMutex;
std::string logText;

void KeepLine(void*, int level, const char* format, va_list arguments) {
    if (level > MLT_LOG_WARNING) {
        return;
    }
    std::string line(1024, '\0');
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    const std::scoped_lock lock(logMutex);
    logText.append(line, 0, static_cast<std::size_t>(length));
}

struct RunningFramework {
    mlt_repository repository = mlt_factory_init(TEST_MLT_REPOSITORY);
    RunningFramework() {
        if (repository == nullptr) {
            throw std::runtime_error("the framework does not start");
        }
    }
    ~RunningFramework() { mlt_factory_close(); }
};

}  // namespace

mlt_repository Repository() {
    static const RunningFramework framework;
    return framework.repository;
}

Profile MakeProfile(Fps fps, int width, int height) {
    Repository();
    Profile profile(mlt_profile_init("dv_pal"));
    profile->frame_rate_num = fps.num;
    profile->frame_rate_den = fps.den;
    profile->width = width;
    profile->height = height;
    profile->sample_aspect_num = 1;
    profile->sample_aspect_den = 1;
    profile->progressive = 1;
    profile->colorspace = 709;
    return profile;
}

Producer MakeClip(mlt_profile_s& profile, const PropertyList& properties, const char* argument) {
    Producer producer(mlt_factory_producer(&profile, "barsandtone", argument));
    if (!producer) {
        throw std::runtime_error("there is no producer");
    }
    for (const auto& [name, value] : properties) {
        mlt_properties_set(MLT_PRODUCER_PROPERTIES(producer.get()), name.c_str(), value.c_str());
    }
    return producer;
}

Producer MakeWholeClip(mlt_profile_s& profile, const char* argument) {
    Producer producer(mlt_factory_producer(&profile, nullptr, (std::string("barsandtone:") + argument).c_str()));
    if (!producer) {
        throw std::runtime_error("there is no producer");
    }
    return producer;
}

Frame NextFrame(mlt_service service) {
    mlt_frame frame = nullptr;
    if (mlt_service_get_frame(service, &frame, 0) != 0 || frame == nullptr) {
        throw std::runtime_error("there is no frame");
    }
    return Frame(frame);
}

FrameSound SoundOf(mlt_frame_s& frame, int rateHz, int channels, int count) {
    FrameSound sound;
    sound.format = mlt_audio_float;
    sound.rateHz = rateHz;
    void* buffer = nullptr;
    if (mlt_frame_get_audio(&frame, &buffer, &sound.format, &sound.rateHz, &channels, &count) != 0) {
        throw std::runtime_error("there is no sound");
    }
    const auto* samples = static_cast<const float*>(buffer);
    for (int c = 0; c < channels; ++c, samples += count) {
        sound.planes.emplace_back(samples, samples + count);
    }
    const char* const layout = mlt_properties_get(MLT_FRAME_PROPERTIES(&frame), "channel_layout");
    sound.layout = layout == nullptr ? "" : layout;
    return sound;
}

Planes ReadFrames(mlt_service service, Fps fps, int frames, int rateHz, int channels, int firstOnTimeline) {
    const float rate = static_cast<float>(fps.num) / static_cast<float>(fps.den);
    Planes whole;
    for (int i = 0; i < frames; ++i) {
        const Frame frame = NextFrame(service);
        const int count = mlt_audio_calculate_frame_samples(rate, rateHz, firstOnTimeline + i);
        const FrameSound sound = SoundOf(*frame, rateHz, channels, count);
        whole.resize(sound.planes.size());
        for (std::size_t c = 0; c < whole.size(); ++c) {
            whole[c].insert(whole[c].end(), sound.planes[c].begin(), sound.planes[c].end());
        }
    }
    return whole;
}

std::int64_t SampleAt(std::int64_t position, Fps fps, int rateHz) {
    return std::llround(static_cast<long double>(position) * fps.den * rateHz / fps.num);
}

LogCapture::LogCapture() {
    const std::scoped_lock lock(logMutex);
    logText.clear();
    mlt_log_set_callback(KeepLine);
}

LogCapture::~LogCapture() {
    mlt_log_set_callback(nullptr);
}

std::string LogCapture::Text() const {
    const std::scoped_lock lock(logMutex);
    return logText;
}

}  // namespace test
