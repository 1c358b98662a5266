#pragma once

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <stdexcept>
#include <string>

namespace lineup::decoding {

/// Why decoding ends before the end of the recording.
class EarlyEnd : public std::runtime_error {
public:
    EarlyEnd(EndCause cause, const std::string& reason) : std::runtime_error(reason), mCause(cause) {}

    [[nodiscard]] EndCause Cause() const noexcept { return mCause; }

private:
    EndCause mCause;
};

}  // namespace lineup::decoding
