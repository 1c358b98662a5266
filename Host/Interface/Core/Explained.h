#pragma once

#include <string>
#include <utility>

#include "Export.h"

namespace zelcore::config {

/// An exception to which the host adds what the thrower could not know, and which stays what it is: its type, its key
/// and its text are the thrower's.
class ZEL_API Explained {
public:
    /// Says what happened, on what and why, in a whole sentence that can stand in for the text.
    void Explain(std::string explanation) { mExplanation = std::move(explanation); }

    /// Empty: the text says it all.
    [[nodiscard]] const std::string& Explanation() const noexcept { return mExplanation; }

private:
    std::string mExplanation;
};

}  // namespace zelcore::config
