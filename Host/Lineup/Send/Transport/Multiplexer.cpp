#include "Host/Lineup/Send/Transport/Multiplexer.h"

#include <lineup/Error.h>

#include <algorithm>

namespace lineup {
inline namespace parts {

namespace {

// Sound is ahead of its time by more than one slot less than this: of what is sent in a slot, the last comes at its
// end.
constexpr std::int64_t kSoundAheadSlots = 3;

// Of the tables: PAT and PMT ten times a second at least, as receivers are promised, and the name once.
constexpr std::int64_t kTableMs = 90;
constexpr std::int64_t kNameMs = 1000;
constexpr std::int64_t kMsPerSecond = 1000;

constexpr std::int64_t kPlaces = 1'000'000;  // of a slot

// Whole slots in a span of time, one at least.
std::int64_t WholeSlots(const StreamTimes& times, std::int64_t ms) {
    return std::max<std::int64_t>(times.SlotAt(ms, kMsPerSecond), 1);
}

}  // namespace

Multiplexer::Multiplexer(const StreamTimes& times, const ProgrammeTables& tables, const PictureLane* picture,
                         SoundLane* sound)
    : mTimes(times),
      mTables(tables),
      mPicture(picture),
      mSound(sound),
      mDelay(std::max(kSoundAheadSlots, picture != nullptr ? picture->DelaySlots() : 0)),
      mTableSlots(WholeSlots(times, kTableMs)),
      mNameSlots(WholeSlots(times, kNameMs)) {}

std::int64_t Multiplexer::PacketsBesidesPicture(const StreamTimes& times, const SoundLane* sound) {
    constexpr std::int64_t kTablesAndClock = 4;
    return kTablesAndClock + (sound != nullptr ? sound->MostFrames(times) * sound->PerFrame() : 0);
}

bool Multiplexer::IsLeftOut(std::int64_t units, std::int64_t unitsPerSecond) const {
    const auto comesBefore = [&](const Moment& moment) {
        return Wide{units} * moment.perSecond < Wide{moment.units} * unitsPerSecond;
    };
    return (mBegin && comesBefore(*mBegin)) || (mEnd && !comesBefore(*mEnd));
}

void Multiplexer::Add(const TsPacket& packet, Wide place) {
    mItems.push_back({static_cast<std::int64_t>(place), packet});
}

std::int64_t Multiplexer::AppendTables(std::int64_t slot, std::vector<std::uint8_t>& bytes) {
    std::int64_t appended = 0;
    const auto put = [&](const TsPacket& table) {
        bytes.insert(bytes.end(), table.begin(), table.end());
        ++appended;
    };
    const auto add = [&](TsPacket& table, std::int64_t every) {
        if (Modulo(slot, every) == 0) {
            SetCount(table, FloorDivided(slot, every));
            put(table);
        }
    };
    add(mTables.pat, mTableSlots);
    add(mTables.pmt, mTableSlots);
    add(mTables.sdt, mNameSlots);
    return appended;
}

void Multiplexer::AddPicture(std::int64_t slot) {
    if (mPicture == nullptr) {
        return;
    }
    const std::int64_t first = mPicture->CountBefore(slot);
    const std::int64_t count = mPicture->CountBefore(slot + 1) - first;
    for (std::int64_t i = 0; i < count; ++i) {
        const PictureLane::Piece piece = mPicture->At(first + i);
        const std::int64_t turn = piece.frame * mTimes.SlotsPerFrame();
        if (IsLeftOut(mTimes.BeginUp(turn, kPtsHz), kPtsHz)) {
            continue;
        }
        TsPacket packet = *piece.packet;
        SetCount(packet, first + i);
        if (piece.ptsAt != 0) {
            SetPts(std::span(packet).subspan(piece.ptsAt), mTimes.BeginDown(turn + mDelay, kPtsHz));
        }
        Add(packet, Wide{2 * i + 1} * kPlaces / (2 * count));
    }
}

void Multiplexer::AddSound(std::int64_t slot) {
    if (mSound == nullptr) {
        return;
    }
    const std::int64_t heard = slot - (mDelay - kSoundAheadSlots);
    const std::int64_t begin = mSound->FirstFrame(mTimes, heard);
    const std::int64_t end = mSound->FirstFrame(mTimes, heard + 1);
    const std::int64_t count = (end - begin) * mSound->PerFrame();
    const int rate = mSound->SampleRateHz();
    std::int64_t i = 0;
    for (std::int64_t frame = begin; frame < end; ++frame) {
        const std::int64_t sample = mSound->SampleOf(frame);
        if (IsLeftOut(sample, rate)) {
            continue;
        }
        // The delay in one step with the sample: a sum of two roundings would not be even.
        const std::int64_t delay = mTimes.BeginDown(mDelay, kPtsHz);
        for (const TsPacket& packet : mSound->Packets(frame, FloorDivided(Wide{sample} * kPtsHz, rate) + delay)) {
            Add(packet, Wide{2 * i++ + 1} * kPlaces / (2 * count));
        }
    }
}

std::int64_t Multiplexer::FirstPictureAt(const Moment& moment) const {
    const std::int64_t frame = CeilDivided(mTimes.SlotAt(moment.units, moment.perSecond), mTimes.SlotsPerFrame());
    const bool exact =
        Wide{mTimes.BeginUp(frame * mTimes.SlotsPerFrame(), kPtsHz)} * moment.perSecond >= Wide{moment.units} * kPtsHz;
    return mPicture->CountBeforeFrame(exact ? frame : frame + 1);
}

std::int64_t Multiplexer::FirstSoundAt(const Moment& moment) const {
    const std::int64_t sample = CeilDivided(Wide{moment.units} * mSound->SampleRateHz(), moment.perSecond);
    return mSound->FirstFrameFrom(sample) * mSound->PerFrame();
}

// A packet of the clock alone has the counter of the last packet that was sent of its PID.
TsPacket Multiplexer::ClockOf(std::int64_t slot) const {
    const bool withPicture = mPicture != nullptr;
    const auto firstAt = [&](const Moment& moment) {
        return withPicture ? FirstPictureAt(moment) : FirstSoundAt(moment);
    };
    std::int64_t count = withPicture
                             ? mPicture->CountBefore(slot)
                             : mSound->FirstFrame(mTimes, slot - (mDelay - kSoundAheadSlots)) * mSound->PerFrame();
    count = mBegin ? std::max(count, firstAt(*mBegin)) : count;
    count = mEnd ? std::min(count, firstAt(*mEnd)) : count;
    return ClockPacket(withPicture ? Pid::kPicture : Pid::kSound, count - 1, mTimes.PcrOf(mTimes.PacketsBefore(slot)));
}

void Multiplexer::AppendSlot(std::int64_t slot, std::vector<std::uint8_t>& bytes) {
    const auto put = [&bytes](const TsPacket& packet) { bytes.insert(bytes.end(), packet.begin(), packet.end()); };
    put(ClockOf(slot));
    const std::int64_t head = 1 + AppendTables(slot, bytes);
    mItems.clear();
    AddSound(slot);
    AddPicture(slot);
    std::ranges::stable_sort(mItems, {}, &Item::place);
    const std::int64_t room = mTimes.PacketsBefore(slot + 1) - mTimes.PacketsBefore(slot) - head;
    const auto count = static_cast<std::int64_t>(mItems.size());
    if (count > room) {
        throw Error("cannot send: the bit rate is too low for what is in the stream");
    }
    std::int64_t done = 0;
    for (std::int64_t place = 0; place < room; ++place) {
        const bool taken = count * (place + 1) / room > done;
        put(taken ? mItems[static_cast<std::size_t>(done++)].packet : NullPacket());
    }
}

}  // namespace parts
}  // namespace lineup
