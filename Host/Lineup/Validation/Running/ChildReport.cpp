#include "Host/Lineup/Validation/Running/ChildReport.h"

#include <cstddef>

namespace lineup::validation {

namespace {

constexpr char kBegin = '<';
constexpr char kEnd = '>';
constexpr std::size_t kLongestText = 8000;  // a pipe takes far more without a reader

}  // namespace

std::string Encode(const Finding& finding) {
    const auto outcome = static_cast<char>('0' + static_cast<int>(finding.outcome));
    return std::string{kBegin, outcome} + finding.text.substr(0, kLongestText) + kEnd;
}

// A child only ever reports what a check itself can find: that it crashed is for others to say.
std::optional<Finding> Decode(const std::string& bytes) {
    constexpr std::size_t kFrame = 3;
    if (bytes.size() < kFrame || bytes.front() != kBegin || bytes.back() != kEnd) {
        return std::nullopt;
    }
    const int outcome = bytes[1] - '0';
    if (outcome < static_cast<int>(Outcome::Passed) || outcome > static_cast<int>(Outcome::Skipped)) {
        return std::nullopt;
    }
    return Finding{.outcome = static_cast<Outcome>(outcome), .text = bytes.substr(2, bytes.size() - kFrame)};
}

}  // namespace lineup::validation
