#include "Host/Lineup/Check/Sound/Find/ToneSegments.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace lineup::sound {

namespace {

using Complex = std::complex<double>;

constexpr std::size_t kBlock = kShortestTone / 4;
constexpr double kQuiet = 1e-6;                  // full scale: below it is silence
constexpr double kToneSegmentsSamePitch = 1e-3;  // relative, of neighbouring blocks
constexpr double kOnTheSine = 2e-3;              // of the amplitude

// Least squares of a * sin + b * cos over the samples, with phase counted from sample 0 of the whole.
Complex FitGain(std::span<const float> samples, std::size_t first, std::size_t end, double omega) {
    double ss = 0;
    double sc = 0;
    double cc = 0;
    double xs = 0;
    double xc = 0;
    for (std::size_t n = first; n < end; ++n) {
        const double s = std::sin(omega * static_cast<double>(n));
        const double c = std::cos(omega * static_cast<double>(n));
        const double x = static_cast<double>(samples[n]);
        ss += s * s;
        sc += s * c;
        cc += c * c;
        xs += x * s;
        xc += x * c;
    }
    const double det = ss * cc - sc * sc;
    return {(xs * cc - xc * sc) / det, (xc * ss - xs * sc) / det};
}

// Of a sine, each sample is the mean of its neighbours over the cosine of omega.
std::optional<double> OmegaOf(std::span<const float> block) {
    double products = 0;
    double squares = 0;
    for (std::size_t n = 1; n + 1 < block.size(); ++n) {
        const double x = static_cast<double>(block[n]);
        products += x * (static_cast<double>(block[n - 1]) + static_cast<double>(block[n + 1]));
        squares += x * x;
    }
    if (squares < kQuiet * kQuiet * static_cast<double>(block.size())) {
        return std::nullopt;
    }
    const double cosine = products / (2 * squares);
    double error = 0;
    for (std::size_t n = 1; n + 1 < block.size(); ++n) {
        const double off = static_cast<double>(block[n - 1]) + static_cast<double>(block[n + 1]) -
                           2 * cosine * static_cast<double>(block[n]);
        error += off * off;
    }
    const bool isSine = std::abs(cosine) < 1 && error < 1e-6 * squares;
    return isSine ? std::optional(std::acos(cosine)) : std::nullopt;
}

// From the turn of the phase between both ends, over spans that double: each is short enough for the one before it.
double RefineOmega(std::span<const float> samples, std::size_t first, std::size_t end, double omega) {
    for (std::size_t span = kShortestTone; span / 2 < end - first; span *= 2) {
        const std::size_t last = std::min(first + span, end);
        const std::size_t part = (last - first) / 4;
        const Complex head = FitGain(samples, first, first + part, omega);
        const Complex tail = FitGain(samples, last - part, last, omega);
        omega += std::arg(tail / head) / static_cast<double>(last - first - part);
    }
    return omega;
}

class ToneModel {
public:
    explicit ToneModel(const ToneSegment& segment)
        : mOmega(segment.omega), mGain(segment.gain), mTolerance(kOnTheSine * std::abs(segment.gain)) {}

    [[nodiscard]] bool Matches(std::span<const float> samples, std::size_t n) const {
        const double value = std::imag(mGain * std::polar(1.0, mOmega * static_cast<double>(n)));
        return std::abs(static_cast<double>(samples[n]) - value) < mTolerance;
    }

private:
    double mOmega;
    Complex mGain;
    double mTolerance;
};

bool SilentFrom(std::span<const float> samples, std::size_t n) {
    return samples[n] == 0 && (n + 1 == samples.size() || samples[n + 1] == 0);
}

// A sine may begin with a zero, which the model tells from the silence before it; the zero that it would go on with
// where it ends belongs to the silence.
void Extend(std::span<const float> samples, std::size_t floor, ToneSegment& segment) {
    const ToneModel model(segment);
    while (segment.first > floor && model.Matches(samples, segment.first - 1)) {
        --segment.first;
    }
    while (segment.end < samples.size() && model.Matches(samples, segment.end) && !SilentFrom(samples, segment.end)) {
        ++segment.end;
    }
}

ToneSegment MakeSegment(std::span<const float> samples, std::size_t first, std::size_t end, double omega) {
    ToneSegment segment{first, end, RefineOmega(samples, first, end, omega), {}};
    segment.gain = FitGain(samples, first, end, segment.omega);
    return segment;
}

}  // namespace

std::vector<ToneSegment> FindToneSegments(std::span<const float> samples) {
    std::vector<ToneSegment> segments;
    std::size_t floor = 0;
    for (std::size_t at = 0; at + kShortestTone <= samples.size();) {
        const auto omega = OmegaOf(samples.subspan(at, kBlock));
        std::size_t end = at + kBlock;
        const auto goesOn = [&](std::size_t from) {
            const auto next = OmegaOf(samples.subspan(from, kBlock));
            return next && std::abs(*next / *omega - 1) < kToneSegmentsSamePitch;
        };
        while (omega && end + kBlock <= samples.size() && goesOn(end)) {
            end += kBlock;
        }
        if (!omega || end - at < kShortestTone - kBlock) {
            at += kBlock;
            continue;
        }
        ToneSegment segment = MakeSegment(samples, at, end, *omega);
        Extend(samples, floor, segment);
        floor = segment.end;
        at = std::max(segment.end, at + kBlock);
        segments.push_back(segment);
    }
    return segments;
}

}  // namespace lineup::sound
