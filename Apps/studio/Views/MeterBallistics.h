#pragma once

namespace studio {

/// How one bar of a meter moves: up at once, down slowly, with a line that holds the loudest peak for a while.
class MeterBallistics {
public:
    static constexpr double kLowestDb = -60;
    static constexpr double kFallDbPerSecond = 20 / 1.7;  // as a quasi-peak meter's: 20 dB in 1.7 s
    static constexpr double kHoldSeconds = 1.5;

    /// `peak` is the loudest sample, linear, since the last call, `seconds` ago.
    void Update(double peak, double seconds);

    /// Falls silent at once.
    void Reset();

    [[nodiscard]] double LevelDb() const noexcept { return mLevelDb; }  ///< kLowestDb and up
    [[nodiscard]] double HoldDb() const noexcept { return mHoldDb; }

private:
    double mLevelDb = kLowestDb;
    double mHoldDb = kLowestDb;
    double mHeldSeconds = 0;
};

}  // namespace studio
