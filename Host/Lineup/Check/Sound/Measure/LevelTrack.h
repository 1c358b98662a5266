#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lineup::sound {

/// How loud an input was for a moment, against what was due there.
struct LevelPoint {
    double at = 0;  ///< s
    double db = 0;
    std::size_t input = 0;
    double sent = 0;   ///< amplitude that was sent there
    bool full = true;  ///< the sequence's full level was due, not less
    std::size_t slot = 0;
    std::size_t tone = 0;  ///< of the slot
};

/// How levels move.
struct LevelChange {
    enum class Kind : std::uint8_t { None, Step, Parts, Riding };

    Kind kind = Kind::None;
    double db = 0;  ///< of a step; by how much the parts have come closer; how far it swings
    double at = 0;  ///< s: of a step
    std::optional<double> step = std::nullopt;  ///< dB: of parts that have come closer, where the level steps as well
    /// Of each input: its level at first, or, where parts have come closer, that of the loud ones. Empty where it has
    /// none.
    std::vector<std::optional<double>> levels;
};

/// What explains the points best: one level an input, which moves once for all, or is another for softer parts. A
/// change below `least` dB does not count. A bend of the tones costs loud parts up to `bent` dB more than softer ones:
/// so much does not count beside a step.
[[nodiscard]] LevelChange ExplainLevels(const std::vector<LevelPoint>& points, std::size_t inputs, double least,
                                        double bent);

}  // namespace lineup::sound
