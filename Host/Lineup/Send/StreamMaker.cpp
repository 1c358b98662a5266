#include "Host/Lineup/Send/StreamMaker.h"

#include <lineup/UsageError.h>
#include "Host/Lineup/Send/MediaFunctions.h"
#include "Host/Lineup/Send/Sound/AdtsCoder.h"
#include "Host/Lineup/Send/Sound/Aes3Coder.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace lineup {
inline namespace parts {

namespace {

// Stuffed streams of which nobody said how fast they are to be: pictures arrive within this time.
constexpr std::int64_t kUsualDelayMs = 400;
constexpr std::int64_t kUsualRateStep = 100'000;

constexpr std::int64_t kHighestBitRate = 1'000'000'000;

// The most bytes that a codec makes of a frame.
std::size_t MostBytes(const StreamSoundPlan& plan, int blockSamples) {
    const std::size_t channels = plan.sound.tracks.front().channels.size();
    if (plan.codec->maker == SoundMaker::Aes3) {
        return Aes3Coder::PacketBytes(channels);
    }
    if (plan.codec->wantsAdts) {
        return AdtsCoder::MostBytes(channels);
    }
    const std::int64_t bits =
        std::int64_t{plan.sound.encoding->bitRatePerChannel} * static_cast<std::int64_t>(channels) * blockSamples;
    constexpr std::size_t kPadding = 4;  // where a frame is no whole number of slots
    return static_cast<std::size_t>(CeilDivided(bits, std::int64_t{8} * plan.sound.sampleRateHz)) + kPadding;
}

std::unique_ptr<SoundCoder> OpenCoderOf(const StreamSoundPlan& plan) {
    if (plan.codec->maker == SoundMaker::Aes3) {
        return std::make_unique<Aes3Coder>(plan.sound.tracks.front().channels);
    }
    std::unique_ptr<SoundCoder> coder;
    FromMediaLibrary<OpenSoundCoderFunction>(kOpenSoundCoderName)(plan.sound, coder);
    if (plan.codec->wantsAdts) {
        return std::make_unique<AdtsCoder>(std::move(coder), plan.sound.sampleRateHz,
                                           plan.sound.tracks.front().channels.size());
    }
    return coder;
}

}  // namespace

StreamMaker::StreamMaker(const Clip& clip, const SendSettings& settings) {
    PlanSend(clip, settings, mPlan);
    if (mPlan.sound) {
        OpenSound(clip);
    }
    if (mPlan.picture) {
        OpenPicture(clip);
    }
    ChooseRate(settings);
    const auto entry = [](const auto& plan) {
        return plan ? std::optional<TableEntry>(plan->codec->entry) : std::nullopt;
    };
    mMux.emplace(*mTimes, MakeTables(entry(mPlan.picture), entry(mPlan.sound)), mPictureLane ? &*mPictureLane : nullptr,
                 mSoundLane ? &*mSoundLane : nullptr);
}

void StreamMaker::OpenSound(const Clip& clip) {
    const StreamSoundPlan& plan = *mPlan.sound;
    const std::unique_ptr<SoundCoder> trial = OpenCoderOf(plan);
    const std::size_t mostBytes = MostBytes(plan, trial->BlockSamples());
    const std::size_t usualBytes =
        plan.codec->wantsAdts ? AdtsCoder::UsualBytes(plan.sound, trial->BlockSamples()) : mostBytes;
    mSound.emplace(
        clip, [&plan] { return OpenCoderOf(plan); }, usualBytes, CodedSound::Stretches{});
    mSoundLane.emplace(*mSound, SoundFraming{.sampleRateHz = plan.sound.sampleRateHz,
                                             .frameSamples = mSound->BlockSamples(),
                                             .paddingSamples = mSound->PaddingSamples(),
                                             .mostBytes = mostBytes,
                                             .streamId = plan.codec->streamId});
}

void StreamMaker::OpenPicture(const Clip& clip) {
    const StreamPicturePlan& plan = *mPlan.picture;
    std::vector<std::vector<std::uint8_t>> group;
    FromMediaLibrary<CodeGroupFunction>(kCodeGroupName)(clip, plan.picture, plan.codedFrames, group);
    mPictureLane.emplace(group, StreamTimes(mPlan.slotRate, 1).SlotsPerFrame());
}

void StreamMaker::ChooseRate(const SendSettings& settings) {
    const StreamTimes any(mPlan.slotRate, 1);
    const std::int64_t beside = Multiplexer::PacketsBesidesPicture(any, mSoundLane ? &*mSoundLane : nullptr);
    const std::int64_t most = mPictureLane ? mPictureLane->MostPerSlot() : 0;
    std::int64_t rate = settings.bitsPerSecond;
    if (rate == 0) {
        const std::int64_t within =
            mPictureLane ? mPictureLane->PacketsWithin(std::max<std::int64_t>(any.SlotAt(kUsualDelayMs, 1000), 1)) : 0;
        rate = CeilDivided(StreamTimes::BitRateFor(mPlan.slotRate, beside + within), kUsualRateStep) * kUsualRateStep;
    }
    mTimes.emplace(mPlan.slotRate, rate);
    const std::int64_t room = mTimes->LeastPackets() - beside;
    const bool fits = room >= 0 && (!mPictureLane || (room > 0 && mPictureLane->Schedule(std::min(room, most))));
    if (rate < 0 || rate > kHighestBitRate || !fits) {
        std::int64_t least = most > 0 ? 1 : 0;
        while (mPictureLane && !mPictureLane->Schedule(least)) {
            ++least;
        }
        throw UsageError("bitrate", fmt::format("{}", rate),
                         fmt::format("must be from {}, which this picture and sound need, to {} bits a second",
                                     StreamTimes::BitRateFor(mPlan.slotRate, beside + least), kHighestBitRate));
    }
}

}  // namespace parts
}  // namespace lineup
