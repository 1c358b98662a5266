#include "Host/Lineup/Check/Reader/DecodedTracks.h"

#include <algorithm>
#include <string>
#include <utility>

namespace lineup {

inline namespace parts {

DecodedTracks::DecodedTracks(std::vector<decoding::Track> tracks) : mFacts(std::move(tracks)) {
    for (const decoding::Track& track : mFacts) {
        mQueues.emplace_back(track.channels);
        mInputs += static_cast<int>(track.channels);
    }
}

void DecodedTracks::Add(const DecodedSamples& samples) {
    TrackQueue& queue = mQueues.at(samples.head.track);
    const std::int64_t before = queue.NotNumbers();
    const std::int64_t late = queue.Add(samples.head.position, samples.values);
    if (late > 0) {
        AddDamage(samples.head.position, late, "the tracks lie too far apart in the recording");
    }
    if (queue.NotNumbers() > before) {
        AddDamage(samples.head.position, samples.head.count, "samples are no numbers");
    }
    PadLaggards();
}

void DecodedTracks::Add(const decoding::Damage& damage) {
    AddDamage(damage.position, damage.count, FieldText(damage.reason));
}

// What follows on the stretch before it for the same reason belongs to it.
void DecodedTracks::AddDamage(std::int64_t position, std::int64_t count, const std::string& reason) {
    if (!mDamage.empty() && mDamage.back().reason == reason) {
        DamagedStretch& last = mDamage.back();
        if (last.count > 0 && count > 0 && position >= last.position && position <= last.position + last.count) {
            last.count = std::max(last.count, position + count - last.position);
            return;
        }
    }
    if (mDamage.size() < kMostStretches) {
        mDamage.push_back({.position = position, .count = count, .reason = reason});
    }
}

void DecodedTracks::PadLaggards() {
    std::size_t bytes = 0;
    for (const TrackQueue& queue : mQueues) {
        bytes += queue.Bytes();
    }
    if (bytes > kMostBytes) {
        PadAll();
    }
}

void DecodedTracks::PadAll() {
    const auto farthest = std::ranges::max_element(mQueues, {}, &TrackQueue::End)->End();
    for (TrackQueue& queue : mQueues) {
        queue.PadTo(farthest);
    }
}

std::size_t DecodedTracks::Waiting() const {
    return std::ranges::min_element(mQueues, {}, &TrackQueue::Waiting)->Waiting();
}

void DecodedTracks::Take(std::span<float* const> inputs, std::size_t count) {
    std::size_t first = 0;
    for (TrackQueue& queue : mQueues) {
        queue.Take(inputs.subspan(first, queue.Channels()), count);
        first += queue.Channels();
    }
}

}  // namespace parts

}  // namespace lineup
