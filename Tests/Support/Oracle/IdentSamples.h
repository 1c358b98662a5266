#pragma once

#include "Tests/Support/Oracle/Idents.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <vector>

/// The sequences sample by sample.
namespace oracle {

struct Request {
    std::int64_t sampleTicks;
    std::int64_t startTicks;
    std::int64_t count;
    bool peakMode = false;
};

/// "start 127008000000, 480 samples 5292000 apart", for failures.
inline std::ostream& operator<<(std::ostream& out, const Request& request) {
    return out << "start " << request.startTicks << ", " << request.count << " samples " << request.sampleTicks
               << " apart" << (request.peakMode ? ", peaks" : "");
}

/// `count` samples of a note, or of its level in peak mode.
inline std::vector<float> NoteSamples(const Note& note, const Request& request, std::int64_t phaseTicks,
                                      std::size_t count) {
    return request.peakMode ? std::vector<float>(count, static_cast<float>(note.level))
                            : Tone(phaseTicks, request.sampleTicks, note.frequencyHz, note.level, count);
}

/// The index after the last sample of the piece that begins with sample `first`: a sample belongs to it while its whole
/// length lies before the cut, and the first always does.
inline std::int64_t PieceEnd(const Ident& ident, const Request& request, std::int64_t first) {
    const std::int64_t time = request.startTicks + first * request.sampleTicks;
    const std::int64_t cycleStart = SampleAtTime(time, ident.CycleTicks()) * ident.CycleTicks();
    const std::int64_t pieceTicks = ident.pieceMs * kTicksPerMs;
    const std::int64_t cut =
        cycleStart + std::min(((time - cycleStart) / pieceTicks + 1) * pieceTicks, ident.CycleTicks());
    std::int64_t end = first + 1;
    while (end < request.count && request.startTicks + (end + 1) * request.sampleTicks <= cut) {
        ++end;
    }
    return end;
}

/// What the request has to hold: samples[channel][i]. No time of the request may wrap.
inline std::vector<std::vector<float>> Render(const Ident& ident, const Request& request) {
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(request.count, 0));
    std::vector<std::vector<float>> samples(ident.channels, std::vector<float>(size, 0.0F));
    for (std::int64_t first = 0; first < request.count;) {
        const std::int64_t time = request.startTicks + first * request.sampleTicks;
        const std::int64_t end = PieceEnd(ident, request, first);
        const Note* played = nullptr;  // channels that sound together play the same
        std::vector<float> piece;
        for (std::size_t channel = 0; channel < ident.channels; ++channel) {
            if (const Note* const note = ident.NoteAt(channel, time); note != nullptr && !ident.NeverStops(*note)) {
                if (played == nullptr || note->frequencyHz != played->frequencyHz) {
                    piece = NoteSamples(*note, request, note->phaseOfRequest ? request.startTicks : time,
                                        static_cast<std::size_t>(end - first));
                    played = note;
                }
                std::ranges::copy(piece, samples[channel].begin() + first);
            }
        }
        first = end;
    }
    for (const Note& note : ident.notes) {
        if (ident.NeverStops(note)) {
            samples[note.channel] = NoteSamples(note, request, request.startTicks, size);
        }
    }
    return samples;
}

}  // namespace oracle
