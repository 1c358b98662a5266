#include "Bridges/MLT/Producer.h"

#include "Bridges/MLT/ClipService.h"
#include "Bridges/MLT/Properties.h"
#include "Bridges/MLT/SharedImporter.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <framework/mlt.h>
#include <string>

namespace bridge {

namespace {

constexpr const char* kName = "barsandtone";

constexpr int kFailed = 1;
constexpr int kDone = 0;

// What consumers that name no rate get, Hz.
constexpr int kUsualRate = 48000;

// Matrices as the framework counts them.
constexpr int kBt601 = 601;
constexpr int kBt709 = 709;

class ServiceLock {
public:
    explicit ServiceLock(mlt_producer producer) : mService(MLT_PRODUCER_SERVICE(producer)) {
        mlt_service_lock(mService);
    }
    ~ServiceLock() { mlt_service_unlock(mService); }
    ServiceLock(const ServiceLock&) = delete;
    ServiceLock& operator=(const ServiceLock&) = delete;

private:
    mlt_service mService;
};

ClipService& ServiceOf(mlt_producer producer) {
    return *static_cast<ClipService*>(producer->child);
}

Complain WarningsOf(mlt_producer producer) {
    return [producer](const std::string& sentence) {
        mlt_log_warning(MLT_PRODUCER_SERVICE(producer), "%s: %s\n", kName, sentence.c_str());
    };
}

/// Runs `action`, which returns kDone. No exception may reach the framework, which is C.
template <class Action>
int Guarded(mlt_producer producer, Action action) noexcept {
    try {
        action();
        return kDone;
    } catch (const std::exception& error) {
        mlt_log_error(producer == nullptr ? nullptr : MLT_PRODUCER_SERVICE(producer), "%s: %s\n", kName, error.what());
    }
    return kFailed;
}

lineup::Rational FrameRateOf(mlt_producer producer) {
    const mlt_profile_s* const profile = mlt_service_profile(MLT_PRODUCER_SERVICE(producer));
    if (profile == nullptr || profile->frame_rate_num <= 0 || profile->frame_rate_den <= 0) {
        return {25, 1};
    }
    return {profile->frame_rate_num, profile->frame_rate_den};
}

/// Gives the frame a copy of `bytes`, in memory that the framework frees.
std::uint8_t* GiveImage(mlt_frame frame, const PictureBytes& bytes) {
    const int size = static_cast<int>(bytes.size());
    auto* const image = static_cast<std::uint8_t*>(mlt_pool_alloc(size));
    std::ranges::copy(bytes, image);
    mlt_frame_set_image(frame, image, size, mlt_pool_release);
    return image;
}

int GetImage(mlt_frame frame, std::uint8_t** image, mlt_image_format* format, int* width, int* height, int) {
    auto* const producer = static_cast<mlt_producer>(mlt_frame_pop_service(frame));
    return Guarded(producer, [&] {
        if (*width <= 0 || *height <= 0) {
            const mlt_profile_s* const profile = mlt_service_profile(MLT_PRODUCER_SERVICE(producer));
            *width = profile->width;
            *height = profile->height;
        }
        *format = *format == mlt_image_yuv422p16 ? mlt_image_yuv422p16 : mlt_image_yuv422;
        const Packing packing = *format == mlt_image_yuv422p16 ? Packing::Planar16 : Packing::Yuyv8;
        std::shared_ptr<const PictureBytes> bytes;
        {
            const ServiceLock lock(producer);
            ClipService& service = ServiceOf(producer);
            service.Update(MLT_PRODUCER_PROPERTIES(producer), WarningsOf(producer));
            const mlt_profile_s* const profile = mlt_service_profile(MLT_PRODUCER_SERVICE(producer));
            const bool bt709 = profile != nullptr && service.IsBt709For(profile->colorspace);
            mlt_properties_set_int(MLT_FRAME_PROPERTIES(frame), "colorspace", bt709 ? kBt709 : kBt601);
            bytes = service.Picture(*width, *height, packing, bt709);
        }
        *image = GiveImage(frame, *bytes);
    });
}

/// Gives the frame room for sound, in memory that the framework frees.
float* GiveRoom(mlt_frame frame, int channels, int samples) {
    const int size = mlt_audio_format_size(mlt_audio_float, samples, channels);
    auto* const room = static_cast<float*>(mlt_pool_alloc(size));
    mlt_frame_set_audio(frame, room, mlt_audio_float, size, mlt_pool_release);
    return room;
}

/// The samples of the frame at the clip's rate, of which the consumer wants `asked` at its own.
int SampleCount(mlt_producer producer, int asked, int askedRateHz, int rateHz, mlt_position position) {
    if (asked <= 0) {
        return mlt_audio_calculate_frame_samples(static_cast<float>(mlt_producer_get_fps(producer)), rateHz, position);
    }
    return static_cast<int>(std::int64_t{asked} * rateHz / askedRateHz);
}

int GetAudio(mlt_frame frame, void** buffer, mlt_audio_format* format, int* rateHz, int* channels, int* samples) {
    auto* const producer = static_cast<mlt_producer>(mlt_frame_pop_audio(frame));
    return Guarded(producer, [&] {
        const int askedRate = *rateHz > 0 ? *rateHz : kUsualRate;
        const int rate = Sound::NearestRate(askedRate);
        const mlt_position position = mlt_frame_original_position(frame);
        const int count = SampleCount(producer, *samples, askedRate, rate, position);

        const ServiceLock lock(producer);
        ClipService& service = ServiceOf(producer);
        service.Update(MLT_PRODUCER_PROPERTIES(producer), WarningsOf(producer));
        Sound& sound = service.SoundAt(rate, WarningsOf(producer));
        const std::int64_t start = service.StartOf({position, count, FrameRateOf(producer)}, rate);
        const int given = sound.ChannelsFor(*channels);
        float* const room = GiveRoom(frame, given, count);
        sound.Read(start, count, given, room);

        *buffer = room;
        *format = mlt_audio_float;
        *rateHz = rate;
        *channels = given;
        *samples = count;
        mlt_properties_set(MLT_FRAME_PROPERTIES(frame), "channel_layout",
                           mlt_audio_channel_layout_name(mlt_audio_channel_layout_default(given)));
    });
}

void DescribePicture(mlt_producer producer, mlt_frame frame) {
    mlt_properties properties = MLT_FRAME_PROPERTIES(frame);
    const double aspect = mlt_properties_get_double(MLT_PRODUCER_PROPERTIES(producer), "aspect_ratio");
    mlt_profile profile = mlt_service_profile(MLT_PRODUCER_SERVICE(producer));
    mlt_properties_set_int(properties, "progressive", 1);
    mlt_properties_set_int(properties, "colorspace", kBt601);
    mlt_properties_set_int(properties, "full_range", 0);
    mlt_properties_set_double(properties, "aspect_ratio", aspect > 0 ? aspect : mlt_profile_sar(profile));
}

/// The frame that the producer is at, counted from the clip's beginning: the framework's position counts from the
/// in point, and its own sum of both is not made before the first seek.
mlt_position ClipPosition(mlt_producer producer) {
    const bool fromInPoint = mlt_properties_get_int(MLT_PRODUCER_PROPERTIES(producer), "ignore_points") == 0;
    return mlt_producer_position(producer) + (fromInPoint ? mlt_producer_get_in(producer) : 0);
}

int GetFrame(mlt_producer producer, mlt_frame_ptr frame, int /*index*/) {
    *frame = mlt_frame_init(MLT_PRODUCER_SERVICE(producer));
    if (*frame == nullptr) {
        return kFailed;
    }
    // The frame's first position is the one it keeps as its original.
    mlt_frame_set_position(*frame, ClipPosition(producer));
    mlt_frame_set_position(*frame, mlt_producer_position(producer));
    DescribePicture(producer, *frame);
    mlt_frame_push_service(*frame, producer);
    mlt_frame_push_get_image(*frame, GetImage);
    mlt_frame_push_audio(*frame, producer);
    mlt_frame_push_audio(*frame, reinterpret_cast<void*>(GetAudio));
    mlt_producer_prepare_next(producer);
    return kDone;
}

void Close(mlt_producer producer) {
    delete static_cast<ClipService*>(producer->child);
    producer->close = nullptr;
    mlt_producer_close(producer);
    std::free(producer);  // NOLINT(cppcoreguidelines-no-malloc): mlt_producer_new takes it from malloc
}

/// The sound that an argument names, or nothing. Arguments come from projects too: there the framework's own word for
/// no resource stands for none, and a folder may have been put in front.
std::string SoundNamedBy(const char* argument) {
    const std::string text = argument == nullptr ? "" : argument;
    const std::string name = text.substr(text.rfind('/') + 1);
    return name.starts_with('<') ? "" : name;
}

void SetUp(mlt_producer producer, const char* argument) {
    producer->get_frame = GetFrame;
    producer->close = reinterpret_cast<mlt_destructor>(Close);
    mlt_properties properties = MLT_PRODUCER_PROPERTIES(producer);
    // The sound is not kept as the "resource" too: editors take that for a file, and miss it.
    if (const std::string sound = SoundNamedBy(argument); !sound.empty()) {
        mlt_properties_set(properties, SoundProperty().name, sound.c_str());
    }
    mlt_properties_set_int(properties, "seekable", 1);
    // The clip's five seconds are where it ends, not all there is of it.
    const auto frames = static_cast<mlt_position>(ServiceOf(producer).DurationFrames(FrameRateOf(producer)));
    mlt_properties_set_position(properties, "length", std::max(frames, mlt_producer_get_length(producer)));
    mlt_properties_set_position(properties, "out", frames - 1);
}

}  // namespace

mlt_producer NewProducer(mlt_profile profile, const char* argument) noexcept {
    mlt_producer producer = nullptr;
    Guarded(nullptr, [&] {
        auto service = std::make_unique<ClipService>(SharedImporter());
        producer = mlt_producer_new(profile);
        if (producer != nullptr) {
            producer->child = service.release();
            SetUp(producer, argument);
        }
    });
    return producer;
}

}  // namespace bridge
