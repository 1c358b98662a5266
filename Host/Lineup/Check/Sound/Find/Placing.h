#pragma once

#include "Host/Lineup/Check/Sound/Find/Wander.h"

#include <vector>

namespace lineup::sound {

/// A place in a recording where time jumps.
struct TimeJump {
    double at = 0;    ///< s of the recording
    double lost = 0;  ///< s that are missing there; below 0 so much comes twice
};

/// How the clip that was sent lies in the recording: clip time tau stands at second start + tau / tempo, and a tone of
/// f Hz sounds at f * pitch. Played too fast or slowly, both are the same. After each jump all is so much earlier.
struct Placing {
    double start = 0;
    double tempo = 1;
    double pitch = 1;
    std::vector<TimeJump> jumps = {};  ///< in their order
    std::vector<Wander> wanders = {};  ///< of the speed; together

    /// By how much what sounds at second `recording` is late for the speed that swings.
    [[nodiscard]] double LateAt(double recording) const {
        double late = 0;
        for (const Wander& wander : wanders) {
            late += wander.Late(recording);
        }
        return late;
    }

    /// Where the clip would have begun for what sounds at second `recording`.
    [[nodiscard]] double StartAt(double recording) const {
        double from = start + LateAt(recording);
        for (const TimeJump& jump : jumps) {
            from -= jump.at <= recording ? jump.lost : 0;
        }
        return from;
    }
    [[nodiscard]] double ToRecording(double clip) const {
        double recording = start + clip / tempo;
        for (const TimeJump& jump : jumps) {
            if (recording - (jump.lost > 0 ? jump.lost : 0) >= jump.at) {
                recording -= jump.lost;
            } else if (recording > jump.at) {
                recording = jump.at;  // it was lost
            }
        }
        return recording + (wanders.empty() ? 0 : LateAt(recording + LateAt(recording)));
    }
    [[nodiscard]] double ToClip(double recording) const { return (recording - StartAt(recording)) * tempo; }
    /// Whether time jumps between two places.
    [[nodiscard]] bool JumpsWithin(double first, double last) const {
        for (const TimeJump& jump : jumps) {
            if (jump.at > first && jump.at < last) {
                return true;
            }
        }
        return false;
    }
};

}  // namespace lineup::sound
