#pragma once

#include <lineup/Api.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lineup {

inline namespace parts {

/// Samples that a source could not give as they were recorded: what stands in their place is silence.
struct DamagedStretch {
    std::int64_t position = 0;  ///< of the first, in samples from the start of the source
    std::int64_t count = 0;     ///< samples; 0 where it is not known how many were lost
    std::string reason;
};

/// The sound of a recording, read once from its start to its end: all channels of all tracks as inputs, at one rate.
class SoundSource {
public:
    SoundSource() = default;
    virtual ~SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;

    /// Hz, above 0.
    [[nodiscard]] virtual double SampleRate() const = 0;

    /// 1 to 64.
    [[nodiscard]] virtual int Inputs() const = 0;

    /// Bits of a sample in the recording, 16 or 24; empty for floating point, for a codec without such a number, and
    /// where it is not known.
    [[nodiscard]] virtual std::optional<int> Bits() const = 0;

    /// Whether the recording's codec gives other samples than it was given; empty where it is not known.
    [[nodiscard]] virtual std::optional<bool> Lossy() const = 0;

    /// Writes up to `most` samples to each of inputs[0] .. inputs[Inputs() - 1], full scale is 1, and returns how many;
    /// 0 at the end and only there. What a file claims to be not-a-number or infinite may come as such.
    virtual std::size_t Read(std::span<float* const> inputs, std::size_t most) = 0;

    /// The stretches that were damaged in what has been read so far, in their order.
    [[nodiscard]] virtual std::vector<DamagedStretch> Damage() const { return {}; }

    /// Why reading ended where it did, if not at the end of the recording.
    [[nodiscard]] virtual std::optional<std::string> EndedBecause() const { return std::nullopt; }
};

}  // namespace parts

}  // namespace lineup
