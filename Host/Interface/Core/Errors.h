#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "Explained.h"
#include "Export.h"

/// How a plug-in raises the host's own errors.
namespace zelcore::config {

/// An error raised through the host's error service. Its text is the localised one of its key.
class ZEL_API Error : public std::runtime_error, public Explained {
public:
    explicit Error(std::string_view key);

    /// The whole key, default text included: "$$$/zelcore/...=Invalid type conversion.".
    [[nodiscard]] const std::string& Key() const noexcept { return mKey; }

private:
    std::string mKey;
};

/// Throws Error for `key`, a localisation key that carries its default text after an equals sign.
[[noreturn]] ZEL_API void ThrowError(std::string_view key);

}  // namespace zelcore::config
