#pragma once

#include <lineup/Api.h>
#include <lineup/Check.h>
#include <lineup/CheckReport.h>
#include <lineup/CheckSettings.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lineup {

class Importer;

/// A fault of a feed that goes on. Places and times are s from the feed's first sample, or its first picture where it
/// has no sound.
struct WatchedFault {
    CheckFault fault;
    double begins = 0;
    std::optional<double> ends;  ///< empty while it stands
    bool isMoment = false;       ///< it happened at one place: a dropout, lost samples, a click
};

/// What clocks say of each other over a feed.
struct WatchedClocks {
    /// How fast what was sent is played against the feed's own sample rate: by the phase of its tones, over all that
    /// was heard since the last interruption. Above 0 is too fast.
    std::optional<double> soundPpm;
    /// How fast the sender's clock, by its time stamps, goes against this machine's: of a URL, once it is known to a
    /// few millionths. Above 0 is too fast.
    std::optional<double> senderPpm;
    /// How far apart packets arrived, against their stamps, in ms, since the cycle before: of a URL.
    std::optional<double> arrivalMs;
    /// How far from even the cycles of a sequence begin, in microseconds r.m.s., since the last interruption: what
    /// buffers that follow a clock leave of its jitter.
    std::optional<double> jitterUs;
    /// By how many millionths the speed moves within the tones, r.m.s.
    std::optional<double> unsteadyPpm;
};

/// How the sound lies against the pictures and against the stream's own clock, its time stamps. Of a card, which does
/// not move, stamps are all that says when it was sent.
struct WatchedAlignment {
    /// How long after the first sample the first picture comes, in ms, by their stamps: a stream that was joined on its
    /// way begins with what was under way.
    std::optional<double> startMs;
    /// How late the sequence is against the pictures, in ms, of -half to half a frame: whole frames cannot be told. Of
    /// pictures and sequences of which whole frames make a cycle.
    std::optional<double> offsetMs;
    /// By how much the sequence has become later against the stream's clock, in ms, since it was first heard.
    std::optional<double> movedMs;
};

/// A cycle of a sequence; of a steady tone, or of a feed without sound, four seconds of it.
struct WatchedCycle {
    std::int64_t number = 0;  ///< from 1
    double start = 0;         ///< s
    double end = 0;
    CheckVerdict verdict = CheckVerdict::CannotTell;
    std::vector<std::string> faults;  ///< ids of those that stood or happened in it
    std::optional<double> leastGain;  ///< dB over what was sent, of all channels
    std::optional<double> mostGain;
    WatchedClocks clocks;
    std::string card;  ///< "hd", "sd"; empty where its pictures have none
    WatchedAlignment alignment;
};

/// Who is told of a feed as it comes, on the thread that watches. Any of them may be empty.
struct WatchListener {
    std::function<void(const WatchedCycle&)> onCycle;   ///< in their order, each once nothing more can be found in it
    std::function<void(const WatchedFault&)> onBegins;  ///< as soon as it is known, a moment too
    std::function<void(const WatchedFault&)> onEnds;    ///< of those that stood
    CheckProgress progress;                             ///< false ends the watch in good order
};

/// What was found of a feed from its start to where the watch ended.
struct WatchReport {
    /// Those that are kept one by one; more are counted.
    static constexpr std::size_t kMostFaults = 1000;

    std::string source;
    CheckVerdict verdict = CheckVerdict::CannotTell;
    std::string expected;  ///< as SoundReport::expected
    std::string card;      ///< as PictureReport::card, the one that was found first
    double seconds = 0;
    std::int64_t cycles = 0;  ///< whole ones
    std::int64_t rightCycles = 0;
    std::vector<WatchedFault> faults;  ///< by where they begin
    std::int64_t moreFaults = 0;
    WatchedClocks clocks;
    WatchedAlignment alignment;
    std::vector<CheckNote> notes;
};

/// Says what a path does to the line-up in a feed while it comes, until it ends, `settings.forSeconds` are over, or
/// `listener.progress` returns false: then too the report says what was found. `recording` and what is read of it are
/// those of Check; memory does not grow. A feed that sends nothing for 15 seconds has ended. Throws UsageError as
/// ValidateCheckSettings does, Error when decoding cannot be started, and what the plug-in throws. Any thread.
[[nodiscard]] LINEUP_API WatchReport Watch(const std::string& recording,
                                           const std::shared_ptr<const Importer>& importer,
                                           const CheckSettings& settings = {}, const WatchListener& listener = {});

}  // namespace lineup
