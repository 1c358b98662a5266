#pragma once

#include <lineup/Api.h>
#include <lineup/Error.h>

#include <cstdint>
#include <string>

namespace lineup {

inline namespace parts {

/// A recording whose sound cannot be read. The text says why.
class LINEUP_API Unreadable : public Error {
public:
    enum class Why : std::uint8_t { NoRecording, NoSound };

    Unreadable(Why why, const std::string& text) : Error(text), mWhy(why) {}

    [[nodiscard]] Why Reason() const noexcept { return mWhy; }

private:
    Why mWhy;
};

}  // namespace parts

}  // namespace lineup
