#pragma once

#include <lineup/Error.h>

#include <string>

namespace lineup {

/// Something that was asked for and cannot be done as asked. The text reads
/// "OPTION VALUE: what would be right".
class LINEUP_API UsageError : public Error {
public:
    /// `option` is the setting's name as a person writes it, without dashes ("size", "video-codec");
    /// `value` is what was given; `remedy` says what would be right.
    UsageError(std::string option, std::string value, std::string remedy);

    [[nodiscard]] const std::string& Option() const noexcept { return mOption; }
    [[nodiscard]] const std::string& Value() const noexcept { return mValue; }
    [[nodiscard]] const std::string& Remedy() const noexcept { return mRemedy; }

private:
    std::string mOption;
    std::string mValue;
    std::string mRemedy;
};

}  // namespace lineup
