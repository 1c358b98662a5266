#pragma once

#include <cstdint>

#include "../Platform/CFUUIDBytes.h"

namespace Brio {

/// Result codes of QueryMap. Negative values are failures.
using Result = std::int32_t;
inline constexpr Result kNoError = 0;
inline constexpr Result kNoInterfaceError = static_cast<Result>(0xA00A0001U);

/// The root of the host's component objects. The order of the virtual operations is part of the
/// interface: AddRef, Release, the destructor pair, QueryMap, GetBrioUnknown.
class BrioUnknown {
public:
    /// Takes one reference and returns the new count. Any thread.
    virtual std::int32_t AddRef() = 0;

    /// Drops one reference and returns the new count; the object deletes itself at 0. Any thread.
    virtual std::int32_t Release() = 0;

    virtual ~BrioUnknown() = default;

    /// Stores the object's interface named by `id` in *out and returns kNoError, or stores null and
    /// returns a negative code. Whether the pointer carries a reference is each class's own rule.
    virtual Result QueryMap(const CFUUIDBytes& id, void** out) = 0;

    /// The object as its root, with no change of count.
    virtual BrioUnknown* GetBrioUnknown() = 0;

protected:
    BrioUnknown() = default;
    BrioUnknown(const BrioUnknown&) = default;
    BrioUnknown& operator=(const BrioUnknown&) = default;
};

}  // namespace Brio
