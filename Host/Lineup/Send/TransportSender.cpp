#include "Host/Lineup/Send/Datagrams.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Senders.h"
#include "Host/Lineup/Send/SlotSender.h"
#include "Host/Lineup/Send/StreamMaker.h"

#include <memory>

namespace lineup {

namespace {

/// One transport stream on its way.
class TransportSender final : public SlotSender {
public:
    TransportSender(const Clip& clip, const SendSettings& settings)
        : SlotSender(clip, settings),
          mMaker(clip, settings),
          mOutput(OpenOutput(settings, RtpPayload::TransportStream)),
          mDatagrams(Pace(), *mOutput, mMaker.Times()) {
        Status().bitsPerSecond = mMaker.Times().BitsPerSecond();
        Status().delayMs = DelayMs();
    }

private:
    [[nodiscard]] double DelayMs() {
        constexpr std::int64_t kNsASecond = 1'000'000'000;
        return static_cast<double>(mMaker.Times().BeginDown(mMaker.Mux().DelaySlots(), kNsASecond)) / 1e6;
    }

    [[nodiscard]] const StreamTimes& Times() const override { return mMaker.Times(); }
    void MakeSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes) override {
        mMaker.Mux().AppendSlot(slot, bytes);
    }
    void BeginAt(std::int64_t sample, std::int64_t /*slot*/) override { mMaker.Mux().BeginAt(sample, Rate()); }
    std::int64_t EndAt(std::int64_t sample) override {
        mMaker.Mux().EndAt(sample, Rate());
        return mMaker.Mux().DelaySlots();
    }
    bool SendSlot(std::int64_t slot, std::span<const std::uint8_t> bytes) override {
        return mDatagrams.Send(mMaker.Times().PacketsBefore(slot), bytes, Status());
    }
    bool SendRest() override { return mDatagrams.Flush(Status()); }

    StreamMaker mMaker;
    std::unique_ptr<StreamOutput> mOutput;
    Datagrams mDatagrams;
};

}  // namespace

SendStatus SendTransportStream(const Clip& clip, const SendSettings& settings, const SendProgress& progress) {
    return TransportSender(clip, settings).Run(progress);
}

}  // namespace lineup
