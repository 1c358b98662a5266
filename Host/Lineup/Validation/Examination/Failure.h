#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace lineup::validation {

/// A promise that the bundle does not keep; the text says what was found, and where.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is nothing to check; the text says why.
class Skipped : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws Failure with the text.
template <class... Args>
[[noreturn]] void Fail(fmt::format_string<Args...> text, Args&&... args) {
    throw Failure(fmt::format(text, std::forward<Args>(args)...));
}

/// The same unless `kept`. The arguments are made in any case: a loop over samples that has to make
/// them asks first, and fails then.
template <class... Args>
void Require(bool kept, fmt::format_string<Args...> text, Args&&... args) {
    if (!kept) {
        Fail(text, std::forward<Args>(args)...);
    }
}

/// Throws Failure when a guard has something to say of `what`.
inline void RequireIntact(std::string_view what, const std::string& damage) {
    if (!damage.empty()) {
        Fail("{}: {}", what, damage);
    }
}

}  // namespace lineup::validation
