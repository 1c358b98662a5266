#pragma once

#include <cstddef>
#include <vector>

namespace lineup::sound {

/// A value and how much it counts.
struct Vote {
    double value = 0;
    double weight = 1;
};

/// The values that most votes lie within `reach` of, heaviest first, `most` of them at most, each the mean of its
/// votes.
[[nodiscard]] std::vector<double> Clusters(std::vector<Vote> votes, double reach, std::size_t most);

/// The median; 0 of nothing.
[[nodiscard]] double MedianOf(std::vector<double> values);

/// The value with half of the weight on either side; 0 of nothing.
[[nodiscard]] double WeightedMedian(std::vector<Vote> votes);

}  // namespace lineup::sound
