#include "Host/Lineup/Send/Flv/FlvMaker.h"

#include <lineup/UsageError.h>
#include "Host/Lineup/Send/Flv/FlvTags.h"
#include "Host/Lineup/Send/MediaFunctions.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"
#include "Host/Lineup/Send/Sound/AdtsCoder.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::int64_t kFlvMs = 1000;

constexpr std::string_view kFlvPictureCodec = "h264";
constexpr std::string_view kFlvSoundCodec = "aac";
constexpr std::array<std::string_view, 4> kFlvSchemes = {"", "rtmp", "rtmps", "tcp"};

void CheckFlvCodec(const char* option, const std::string& name, std::string_view carried) {
    if (!name.empty() && name != carried && name != kNoCodec) {
        throw UsageError(option, name, "is not for flv, which has h264 and aac");
    }
}

Rational SlotRateOf(const Clip& clip, const SendSettings& settings, SendPlan& plan) {
    CheckFlv(settings);
    PlanSend(clip, settings, plan);
    return plan.slotRate;
}

}  // namespace

void CheckFlv(const SendSettings& settings) {
    for (const std::string& target : TargetsOf(settings)) {
        if (std::ranges::find(kFlvSchemes, SchemeOf(target)) == kFlvSchemes.end()) {
            throw UsageError("format", "flv", "is for rtmp://, tcp://, a file or a pipe");
        }
    }
    CheckFlvCodec("video-codec", settings.videoCodec, kFlvPictureCodec);
    CheckFlvCodec("audio-codec", settings.audioCodec, kFlvSoundCodec);
    if (settings.bitsPerSecond != 0) {
        throw UsageError("bitrate", std::to_string(settings.bitsPerSecond),
                         "is for transport streams; flv has no stuffing");
    }
}

FlvMaker::FlvMaker(const Clip& clip, const SendSettings& settings)
    : mTimes(SlotRateOf(clip, settings, mPlan), 1), mRate(static_cast<int>(clip.SampleRate())) {
    if (mPlan.picture) {
        std::vector<std::vector<std::uint8_t>> group;
        FromMediaLibrary<CodeGroupFunction>(kCodeGroupName)(clip, mPlan.picture->picture, mPlan.picture->codedFrames,
                                                            group);
        mGroup = ToAvc(group);
    }
    if (mPlan.sound) {
        const SoundPlan& plan = mPlan.sound->sound;
        const std::size_t channels = plan.tracks.front().channels.size();
        const auto open = [&plan] {
            std::unique_ptr<SoundCoder> coder;
            FromMediaLibrary<OpenSoundCoderFunction>(kOpenSoundCoderName)(plan, coder);
            return coder;
        };
        constexpr int kAacBlock = 1024;
        mSound.emplace(clip, open, AdtsCoder::UsualBytes(plan, kAacBlock), CodedSound::Stretches{});
        mSoundConfig = AdtsCoder::Config(plan.sampleRateHz, channels);
    }
}

std::vector<std::uint8_t> FlvMaker::Head() const {
    std::vector<std::uint8_t> bytes;
    std::vector<FlvFact> facts;
    AppendFlvHead(mPlan.picture.has_value(), mPlan.sound.has_value(), bytes);
    if (mPlan.picture) {
        const PicturePlan& picture = mPlan.picture->picture;
        constexpr double kAvcNumber = 7;
        facts.insert(facts.end(), {{"width", picture.width},
                                   {"height", picture.height},
                                   {"framerate", double{1} * picture.frameRate.num / picture.frameRate.den},
                                   {"videocodecid", kAvcNumber}});
    }
    if (mPlan.sound) {
        constexpr double kAacNumber = 10;
        constexpr double kSampleBits = 16;
        facts.insert(facts.end(),
                     {{"audiosamplerate", mRate}, {"audiosamplesize", kSampleBits}, {"audiocodecid", kAacNumber}});
    }
    AppendFlvFacts(facts, bytes);
    if (mPlan.picture) {
        AppendFlvPictureConfig(mGroup.config, bytes);
    }
    if (mPlan.sound) {
        AppendFlvSoundConfig(mSoundConfig, bytes);
    }
    return bytes;
}

std::int64_t FlvMaker::GroupSlots() const noexcept {
    return mPlan.picture ? std::int64_t{mPlan.picture->codedFrames} * mTimes.SlotsPerFrame() : 1;
}

bool FlvMaker::IsLeftOut(std::int64_t sample) const {
    return (mBegin && sample < *mBegin) || (mEnd && sample >= *mEnd);
}

void FlvMaker::AppendPictureOf(std::int64_t slot, std::vector<std::uint8_t>& bytes) const {
    if (!mPlan.picture || Modulo(slot, mTimes.SlotsPerFrame()) != 0 || IsLeftOut(mTimes.BeginUp(slot, mRate))) {
        return;
    }
    const std::int64_t frame = FloorDivided(slot - mGroupBegin, mTimes.SlotsPerFrame());
    const auto index = static_cast<std::size_t>(Modulo(frame, static_cast<std::int64_t>(mGroup.units.size())));
    const AvcUnit& unit = mGroup.units[index];
    AppendFlvPicture(mTimes.BeginDown(slot, kFlvMs), unit.isEntry, unit.bytes, bytes);
}

// The first of the sound's frames that begins in a slot or later.
std::int64_t FlvMaker::FirstFrameOf(std::int64_t slot) const {
    return CeilDivided(Wide{mTimes.BeginUp(slot, mRate)} + mSound->PaddingSamples(), mSound->BlockSamples());
}

void FlvMaker::AppendSoundOf(std::int64_t slot, std::vector<std::uint8_t>& bytes) {
    if (!mSound) {
        return;
    }
    const std::int64_t end = FirstFrameOf(slot + 1);
    for (std::int64_t frame = FirstFrameOf(slot); frame < end; ++frame) {
        const std::int64_t sample = frame * mSound->BlockSamples() - mSound->PaddingSamples();
        if (!IsLeftOut(sample)) {
            AppendFlvSound(FloorDivided(Wide{sample} * kFlvMs, mRate), mSound->Frame(frame), bytes);
        }
    }
}

void FlvMaker::AppendSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes) {
    AppendPictureOf(slot, bytes);
    AppendSoundOf(slot, bytes);
}

}  // namespace parts
}  // namespace lineup
