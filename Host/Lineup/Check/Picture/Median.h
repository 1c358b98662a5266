#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lineup::picture {

/// The median, of an even number the higher one of the middle two. `values`, which are one or more, change their order.
inline double UpperMedian(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

}  // namespace lineup::picture
