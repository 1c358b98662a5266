#pragma once

#include "Bridges/MLT/ClipChoice.h"

#include <framework/mlt.h>
#include <set>
#include <string>

namespace bridge {

/// Finds properties that were set and that neither the producer nor the framework has: a mistake in typing, mostly.
class UnknownProperties {
public:
    /// Complains once of each. Only plain words are looked at: editors keep notes of their own in a clip under names
    /// with a mark in them, "kdenlive:id", "shotcut_hash" and the like.
    void ComplainOf(mlt_properties properties, const Complain& complain);

private:
    std::set<std::string> mSaid;
};

}  // namespace bridge
