#pragma once

#include "Host/Lineup/Api.h"

#include <stdexcept>
#include <string>

namespace lineup {

/// Something could not be done; the text names the act, the object and the cause.
class LINEUP_API Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A value that cannot be used; the text names the option, the value and what would be right:
/// "frequency 30000: must be 1 to 24000 Hz, half the sample rate".
class LINEUP_API UsageError : public Error {
public:
    UsageError(std::string option, const std::string& value, const std::string& expected);

    /// The option's name as a command line spells it, without dashes: "sample-rate".
    [[nodiscard]] const std::string& Option() const noexcept { return mOption; }

private:
    std::string mOption;
};

}  // namespace lineup
