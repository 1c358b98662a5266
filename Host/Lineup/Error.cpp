#include "Host/Lineup/Error.h"

#include <utility>

namespace lineup {

UsageError::UsageError(std::string option, const std::string& value, const std::string& expected)
    : Error(option + " " + value + ": " + expected), mOption(std::move(option)) {}

}  // namespace lineup
