#pragma once

#include <lineup/Api.h>

#include <stdexcept>

namespace lineup {

/// Something could not be done; the text names the act, the object and the cause. Every failure of the library is one,
/// whatever was thrown underneath.
class LINEUP_API Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace lineup
