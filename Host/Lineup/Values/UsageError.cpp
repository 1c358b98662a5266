#include <lineup/UsageError.h>

#include <utility>

namespace lineup {

UsageError::UsageError(std::string option, std::string value, std::string remedy)
    : Error(option + " " + value + ": " + remedy),
      mOption(std::move(option)),
      mValue(std::move(value)),
      mRemedy(std::move(remedy)) {}

}  // namespace lineup
