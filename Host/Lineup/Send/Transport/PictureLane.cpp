#include "Host/Lineup/Send/Transport/PictureLane.h"

#include "Host/Lineup/Send/Transport/WideMath.h"

#include <algorithm>

namespace lineup {
inline namespace parts {

namespace {

constexpr PesKind kPicturePes = {.pid = Pid::kPicture, .streamId = 0xE0, .bounded = false};

}  // namespace

PictureLane::PictureLane(const std::vector<std::vector<std::uint8_t>>& group, int slotsPerFrame)
    : mSlotsPerFrame(slotsPerFrame), mFrames(static_cast<std::int64_t>(group.size())) {
    for (std::size_t frame = 0; frame < group.size(); ++frame) {
        const bool isEntry = frame == 0;
        const PesPackets made = Packetise(group[frame], kPicturePes, PacketsFor(group[frame].size(), isEntry), isEntry);
        for (const TsPacket& packet : made.packets) {
            const bool first = &packet == &made.packets.front();
            mKept.push_back({packet, static_cast<std::int64_t>(frame), first ? made.ptsAt : 0});
        }
        mSizes.push_back(static_cast<std::int64_t>(made.packets.size()));
    }
}

std::int64_t PictureLane::MostPerSlot() const {
    return CeilDivided(*std::ranges::max_element(mSizes), mSlotsPerFrame);
}

std::int64_t PictureLane::PacketsWithin(std::int64_t slots) const {
    PictureLane trial(*this);
    std::int64_t perSlot = 1;
    while (!trial.Schedule(perSlot) || trial.DelaySlots() > slots) {
        if (perSlot >= MostPerSlot()) {
            break;  // a frame's own time is the shortest delay that there is
        }
        ++perSlot;
    }
    return perSlot;
}

bool PictureLane::Schedule(std::int64_t perSlot) {
    const std::int64_t slots = mFrames * mSlotsPerFrame;
    std::vector<std::int64_t> before = {0};
    std::int64_t due = 0;
    std::int64_t delay = 1;
    for (std::int64_t slot = 0; slot < slots; ++slot) {
        if (slot % mSlotsPerFrame == 0) {
            due += mSizes[static_cast<std::size_t>(slot / mSlotsPerFrame)];
        }
        const std::int64_t sent = std::min(before.back() + perSlot, due);
        if (sent > before.back()) {
            const Kept& last = mKept[static_cast<std::size_t>(sent - 1)];
            delay = std::max(delay, slot + 1 - last.frame * mSlotsPerFrame);
            // A picture that ended before the last one of this slot came no later after its own turn than this slot.
            const Kept& first = mKept[static_cast<std::size_t>(before.back())];
            delay = std::max(delay, slot + 1 - first.frame * mSlotsPerFrame);
        }
        before.push_back(sent);
    }
    if (before.back() != due) {
        return false;
    }
    mBefore = std::move(before);
    mDelay = delay;
    return true;
}

std::int64_t PictureLane::CountBefore(std::int64_t slot) const {
    const std::int64_t slots = mFrames * mSlotsPerFrame;
    return FloorDivided(slot, slots) * static_cast<std::int64_t>(mKept.size()) +
           mBefore[static_cast<std::size_t>(Modulo(slot, slots))];
}

std::int64_t PictureLane::CountBeforeFrame(std::int64_t frame) const {
    std::int64_t count = FloorDivided(frame, mFrames) * static_cast<std::int64_t>(mKept.size());
    for (std::int64_t i = 0; i < Modulo(frame, mFrames); ++i) {
        count += mSizes[static_cast<std::size_t>(i)];
    }
    return count;
}

PictureLane::Piece PictureLane::At(std::int64_t index) const {
    const auto size = static_cast<std::int64_t>(mKept.size());
    const Kept& kept = mKept[static_cast<std::size_t>(Modulo(index, size))];
    return {&kept.packet, FloorDivided(index, size) * mFrames + kept.frame, kept.ptsAt};
}

}  // namespace parts
}  // namespace lineup
