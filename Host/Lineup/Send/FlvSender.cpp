#include "Host/Lineup/Send/Flv/FlvMaker.h"
#include "Host/Lineup/Send/Flv/FlvTags.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Senders.h"
#include "Host/Lineup/Send/SlotSender.h"
#include "Host/Lineup/Send/Transport/WideMath.h"

#include <memory>
#include <optional>

namespace lineup {

namespace {

constexpr std::int64_t kNsInMs = 1'000'000;
constexpr std::int64_t kMsInSecond = 1000;

/// One stream of FLV on its way, which begins with a picture that stands alone; each tag leaves when its time stamp
/// says.
class FlvSender final : public SlotSender {
public:
    FlvSender(const Clip& clip, const SendSettings& settings)
        : SlotSender(clip, settings), mMaker(clip, settings), mOutput(OpenOutput(settings, mMaker.Head())) {}

private:
    [[nodiscard]] const StreamTimes& Times() const override { return mMaker.Times(); }
    void MakeSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes) override { mMaker.AppendSlot(slot, bytes); }

    [[nodiscard]] std::int64_t EntryFrom(std::int64_t slot) const override {
        return CeilDivided(slot, mMaker.GroupSlots()) * mMaker.GroupSlots();
    }

    void BeginAt(std::int64_t sample, std::int64_t slot) override {
        const std::int64_t turn = mMaker.Times().SlotsPerFrame();
        const std::int64_t whole = CeilDivided(slot, turn) * turn;
        mMaker.BeginGroupAt(mMaker.Times().BeginUp(whole, Rate()) < sample ? whole + turn : whole);
        mMaker.BeginAt(sample);
    }

    std::int64_t EndAt(std::int64_t sample) override {
        mMaker.EndAt(sample);
        return 0;
    }

    bool SendSlot(std::int64_t slot, std::span<const std::uint8_t> bytes) override {
        while (!bytes.empty()) {
            const FlvTag tag = FirstFlvTag(bytes);
            if (!SendTag(slot, tag)) {
                return false;
            }
            bytes = bytes.subspan(tag.bytes.size());
        }
        return true;
    }

    bool SendTag(std::int64_t slot, const FlvTag& tag) {
        SendStatus& status = Status();
        const std::int64_t begin = mMaker.Times().BeginDown(slot, kMsInSecond);
        const std::int64_t atNs = (begin + Modulo(tag.ms - begin, kFlvWrapMs)) * kNsInMs;
        if (!Pace().Wait(atNs, mLastNs ? atNs - *mLastNs : 0, status)) {
            mLastNs.reset();
            return false;
        }
        mLastNs = atNs;
        const StreamMoment moment = {
            .datagram = status.datagrams, .timestamp = tag.ms, .isEntry = tag.isEntry || !mMaker.HasPicture()};
        if (!mOutput->Write(tag.bytes, moment)) {
            ++status.lostDatagrams;
        }
        ++status.datagrams;
        status.bytes += static_cast<std::int64_t>(tag.bytes.size());
        constexpr double kBitsOfByte = 8;
        status.bitsPerSecond =
            static_cast<std::int64_t>(kBitsOfByte * static_cast<double>(status.bytes) / (status.seconds + Seconds(1)));
        return true;
    }

    FlvMaker mMaker;
    std::unique_ptr<StreamOutput> mOutput;
    std::optional<std::int64_t> mLastNs;
};

}  // namespace

SendStatus SendFlv(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    return FlvSender(clip, settings).Run(progress);
}

}  // namespace lineup
