#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

struct Cluster {
    std::size_t first = 0;
    std::size_t end = 0;
    double weight = 0;
    double mean = 0;
};

// The heaviest window of twice the reach over sorted votes.
Cluster Heaviest(const std::vector<Vote>& votes, double reach) {
    Cluster best;
    double weight = 0;
    std::size_t first = 0;
    for (std::size_t end = 0; end < votes.size(); ++end) {
        weight += votes[end].weight;
        while (votes[end].value - votes[first].value > 2 * reach) {
            weight -= votes[first++].weight;
        }
        if (weight > best.weight) {
            best = {first, end + 1, weight, 0};
        }
    }
    for (std::size_t i = best.first; i < best.end; ++i) {
        best.mean += votes[i].value * votes[i].weight / best.weight;
    }
    return best;
}

}  // namespace

std::vector<double> Clusters(std::vector<Vote> votes, double reach, std::size_t most) {
    std::ranges::sort(votes, {}, &Vote::value);
    std::vector<double> means;
    while (means.size() < most && !votes.empty()) {
        const Cluster cluster = Heaviest(votes, reach);
        if (cluster.weight <= 0) {
            break;
        }
        means.push_back(cluster.mean);
        votes.erase(votes.begin() + static_cast<std::ptrdiff_t>(cluster.first),
                    votes.begin() + static_cast<std::ptrdiff_t>(cluster.end));
    }
    return means;
}

double MedianOf(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    if (values.size() % 2 != 0) {
        return *middle;
    }
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

double WeightedMedian(std::vector<Vote> votes) {
    std::ranges::sort(votes, {}, &Vote::value);
    double total = 0;
    for (const Vote& vote : votes) {
        total += vote.weight;
    }
    double sum = 0;
    for (const Vote& vote : votes) {
        sum += vote.weight;
        if (2 * sum >= total) {
            return vote.value;
        }
    }
    return 0;
}

}  // namespace lineup::sound
