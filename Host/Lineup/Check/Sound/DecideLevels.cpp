#include <lineup/Level.h>
#include "Host/Lineup/Check/Sound/Case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

struct Deviation {
    std::size_t input;
    double db;  // over what was sent
};

// How loud an input's own channel is there, without what leaks into it.
double OwnGain(const Case& check, std::size_t input) {
    const Arrival& arrival = check.At(input);
    return check.mixed[input] && arrival.channel ? std::abs(check.parts[input][*arrival.channel]) : arrival.gain;
}

std::vector<Deviation> Deviations(const Case& check) {
    const double sentDb = DbFromGain(check.Sent().Level());
    const double offset = check.expected.levelDb ? *check.expected.levelDb - sentDb : 0;
    std::vector<Deviation> deviations;
    for (std::size_t input = 0; input < check.Inputs(); ++input) {
        if (check.At(input).sounds && !check.folded[input]) {
            deviations.push_back({input, DbFromGain(OwnGain(check, input)) - offset});
        }
    }
    return deviations;
}

// What most channels share; of several such, what is nearest to what was sent.
double SharedDb(const std::vector<Deviation>& deviations, double tolerance) {
    double best = 0;
    std::ptrdiff_t most = 0;
    for (const Deviation& deviation : deviations) {
        const auto count = std::ranges::count_if(
            deviations, [&](const Deviation& other) { return std::abs(other.db - deviation.db) <= tolerance; });
        if (count > most || (count == most && std::abs(deviation.db) < std::abs(best))) {
            most = count;
            best = deviation.db;
        }
    }
    double sum = 0;
    for (const Deviation& deviation : deviations) {
        sum += std::abs(deviation.db - best) <= tolerance ? deviation.db : 0;
    }
    return most > 0 ? sum / static_cast<double>(most) : 0;
}

std::string LouderOrSofter(double db) {
    return fmt::format("{:.2f} dB too {}", std::abs(db), db > 0 ? "loud" : "soft");
}

// The line-up levels in use; the difference is that of the place's own.
std::string AlignmentText(const Case& check, double db) {
    const double level = DbFromGain(check.Sent().Level()) + db;
    for (const double alignment : {-9.0, -12.0, -14.0, -15.0, -16.0, -20.0, -24.0}) {
        if (std::abs(level - alignment) < 0.15) {
            return fmt::format(", as for an alignment level of {:.0f} dBFS", alignment);
        }
    }
    return {};
}

}  // namespace

void DecideLevels(Case& check) {
    const double tolerance = check.Tolerance("level");
    const std::vector<Deviation> deviations = Deviations(check);
    const double shared = SharedDb(deviations, tolerance);
    if (!check.Sent().levelKnown) {
        check.Note("level-not-known", fmt::format("The tone arrives at {:.2f} dBFS; --level LEVEL says what was sent.",
                                                  DbFromGain(check.Sent().Level()) + shared));
    } else if (std::abs(shared) > tolerance) {
        CheckFault& fault =
            check.Add("level-wrong", {},
                      fmt::format("All channels are {}{}.", LouderOrSofter(shared), AlignmentText(check, shared)));
        fault.measured = shared;
        fault.expected = 0;
    }
    std::vector<std::size_t> others;
    double furthest = 0;
    for (const Deviation& deviation : deviations) {
        const double off = deviation.db - shared;
        const double doubt = DbFromGain(1 + CodecNoise(check, deviation.input));
        if (std::abs(off) > tolerance + doubt) {
            others.push_back(deviation.input);
            furthest = std::abs(off) > std::abs(furthest) ? off : furthest;
        }
    }
    if (!others.empty()) {
        CheckFault& fault = check.Add("level-unbalanced", others,
                                      fmt::format("{} {}{} beside the others.", Who(check, others),
                                                  others.size() == 1 ? "is " : "are up to ", LouderOrSofter(furthest)));
        fault.measured = furthest;
        fault.expected = 0;
    }
}

}  // namespace lineup::sound
