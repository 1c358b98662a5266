#include "Host/Lineup/Send/Clocks.h"
#include "Host/Lineup/Send/LinearPlan.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Pacer.h"
#include "Host/Lineup/Send/Senders.h"
#include "Host/Lineup/Send/SlotQueue.h"
#include "Host/Lineup/Send/Sound/CodedSound.h"
#include "Host/Lineup/Send/Sound/LinearCoder.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace lineup {

namespace {

constexpr std::int64_t kNsOfASecond = 1'000'000'000;

// Packets are made a batch at a time.
constexpr std::int64_t kBatchesASecond = 100;

/// Uncompressed sound on its way. Packet 0 begins with sample 0 of the clip.
class LinearSender {
public:
    LinearSender(const Clip& clip, const SendSettings& settings)
        : mSettings(&settings),
          mPlan(PlanLinear(clip, settings)),
          mPacketBytes(static_cast<std::size_t>(mPlan.packetSamples) * mPlan.channels.size() *
                       LinearCoder::kSampleBytes),
          mBatch(std::max<std::int64_t>(1, mPlan.sampleRateHz / kBatchesASecond / mPlan.packetSamples)),
          mSound(clip, [this] { return std::make_unique<LinearCoder>(mPlan.channels, mPlan.packetSamples); },
                 mPacketBytes, {.frames = 1000, .warmUp = 0}),
          mOwnClock(settings.clock == nullptr ? MakeClock(settings.timing) : nullptr),
          mClock(settings.clock == nullptr ? mOwnClock.get() : settings.clock),
          mOutput(OpenOutput(settings, RtpPayload::Sound)) {
        constexpr std::int64_t kBits = 8;
        mStatus.bitsPerSecond =
            static_cast<std::int64_t>(mPacketBytes) * kBits * mPlan.sampleRateHz / mPlan.packetSamples;
    }

    SendStatus Run(const SendProgress& progress) {
        std::int64_t packet = FirstPacket();
        std::optional<std::int64_t> end;
        if (mSettings->samples) {
            end = packet + CeilDivided(*mSettings->samples, mPlan.packetSamples);
        }
        Pacer pacer(*mClock, IsWall() ? std::optional<std::int64_t>(0) : std::nullopt);
        while (SendFrom(packet, end, pacer, progress)) {
            Say("the clock has leapt; sending goes on at its new time");
            packet = FirstPacket();
        }
        return mStatus;
    }

private:
    [[nodiscard]] bool IsWall() const { return mSettings->timing == SendTiming::Wall; }

    [[nodiscard]] std::int64_t FirstPacket() {
        if (!IsWall()) {
            return FloorDivided(mSettings->startSample, mPlan.packetSamples);
        }
        constexpr std::int64_t kAhead = kNsOfASecond / 50;
        return CeilDivided(Wide{mClock->NowNs() + kAhead} * mPlan.sampleRateHz,
                           Wide{kNsOfASecond} * mPlan.packetSamples);
    }

    [[nodiscard]] std::int64_t NsOf(std::int64_t packet) const {
        return FloorDivided(Wide{packet} * mPlan.packetSamples * kNsOfASecond, mPlan.sampleRateHz);
    }

    void AppendBatch(std::int64_t first, std::vector<std::uint8_t>& bytes) {
        for (std::int64_t i = 0; i < mBatch; ++i) {
            const std::span<const std::uint8_t> packet = mSound.Frame(first + i);
            bytes.insert(bytes.end(), packet.begin(), packet.end());
        }
    }

    // True when the clock that tells clip time has leapt; else all is sent, or progress wants no more.
    bool SendFrom(std::int64_t packet, std::optional<std::int64_t> end, Pacer& pacer, const SendProgress& progress) {
        const std::int64_t first = packet;
        SlotQueue batches(
            [this, first](std::int64_t batch, std::vector<std::uint8_t>& bytes) {
                AppendBatch(first + batch * mBatch, bytes);
            },
            0);
        std::vector<std::uint8_t> bytes;
        for (;;) {
            batches.Take(bytes);
            for (std::span rest(bytes); !rest.empty(); rest = rest.subspan(mPacketBytes), ++packet) {
                if (end && packet >= *end) {
                    return false;
                }
                if (!SendPacket(packet, rest.first(mPacketBytes), pacer)) {
                    return true;
                }
            }
            if (progress && !progress(mStatus)) {
                return false;
            }
        }
    }

    bool SendPacket(std::int64_t packet, std::span<const std::uint8_t> bytes, Pacer& pacer) {
        if (!pacer.Wait(NsOf(packet), NsOf(1), mStatus)) {
            return false;
        }
        if (!mOutput->Write(bytes, {.datagram = packet, .timestamp = packet * mPlan.packetSamples})) {
            ++mStatus.lostDatagrams;
        }
        ++mStatus.datagrams;
        mStatus.bytes += static_cast<std::int64_t>(bytes.size());
        mStatus.seconds = static_cast<double>(NsOf(mStatus.datagrams)) / 1e9;
        mStatus.clipSeconds = static_cast<double>(NsOf(packet + 1)) / 1e9;
        return true;
    }

    void Say(const char* text) const {
        if (mSettings->notice) {
            mSettings->notice(text);
        }
    }

    const SendSettings* mSettings;
    LinearPlan mPlan;
    std::size_t mPacketBytes;
    std::int64_t mBatch;  // packets
    CodedSound mSound;
    std::unique_ptr<SendClock> mOwnClock;
    SendClock* mClock;
    std::unique_ptr<StreamOutput> mOutput;
    SendStatus mStatus;
};

}  // namespace

SendStatus SendLinearSound(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    return LinearSender(clip, settings).Run(progress);
}

}  // namespace lineup
