#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"
#include "Host/Lineup/Check/Reader/TrackQueue.h"
#include "Host/Lineup/Check/SoundSource.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace lineup {

inline namespace parts {

/// Brings the tracks of a recording together: their channels are the inputs, in the order of the tracks, and samples of
/// the same time stand beside each other. A track that falls too far behind the others is silent until it comes
/// back; so memory has a limit whatever a recording holds.
class LINEUP_API DecodedTracks {
public:
    /// What may wait in all tracks together.
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    /// Damage beyond this is no longer listed one by one.
    static constexpr std::size_t kMostStretches = 1000;

    explicit DecodedTracks(std::vector<decoding::Track> tracks);

    [[nodiscard]] double SampleRate() const { return mFacts.front().sampleRate; }
    [[nodiscard]] int Inputs() const noexcept { return mInputs; }
    [[nodiscard]] const std::vector<decoding::Track>& Facts() const noexcept { return mFacts; }

    void Add(const DecodedSamples& samples);
    void Add(const decoding::Damage& damage);

    /// Shorter tracks are silent up to the end of the longest: for when no more comes.
    void PadAll();

    /// Samples that can be taken of every input.
    [[nodiscard]] std::size_t Waiting() const;

    /// Copies `count` samples, at most Waiting(), of input i to inputs[i].
    void Take(std::span<float* const> inputs, std::size_t count);

    /// Where samples stand that are not as they were recorded, in their order.
    [[nodiscard]] const std::vector<DamagedStretch>& Damage() const noexcept { return mDamage; }

    /// The same, which are then no longer kept here.
    [[nodiscard]] std::vector<DamagedStretch> TakeDamage() { return std::exchange(mDamage, {}); }

private:
    void AddDamage(std::int64_t position, std::int64_t count, const std::string& reason);
    void PadLaggards();

    std::vector<decoding::Track> mFacts;
    std::vector<TrackQueue> mQueues;
    int mInputs = 0;
    std::vector<DamagedStretch> mDamage;
};

}  // namespace parts

}  // namespace lineup
