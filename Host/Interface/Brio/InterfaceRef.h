#pragma once

#include <stdexcept>
#include <utility>

#include "../Core/Explained.h"
#include "../Core/Export.h"
#include "BrioUnknown.h"

namespace Brio {

/// Thrown when an empty InterfaceRef is dereferenced. Its destructor is the host's, and with it its type, so that a
/// host can catch it by that type wherever it was thrown.
// NOLINTNEXTLINE(*-special-member-functions): as its base
class ZEL_API NullInterfaceException : public std::runtime_error, public zelcore::config::Explained {
public:
    NullInterfaceException();
    ~NullInterfaceException() override;
};

/// A counted reference to a component object, or empty. Copying takes a reference, destruction drops
/// it. `Root` is the class whose AddRef and Release are called.
template <class Interface, class Root = BrioUnknown>
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): one assignment, by value, copies and moves
class InterfaceRef {
public:
    InterfaceRef() noexcept = default;

    /// Takes a reference of its own to `object`, which may be null.
    explicit InterfaceRef(Interface* object) : mObject(object) {
        if (mObject != nullptr) {
            AsRoot()->AddRef();
        }
    }

    /// Owns a reference that the caller has already taken.
    static InterfaceRef Adopt(Interface* object) noexcept {
        InterfaceRef ref;
        ref.mObject = object;
        return ref;
    }

    InterfaceRef(const InterfaceRef& other) : InterfaceRef(other.mObject) {}
    InterfaceRef(InterfaceRef&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    InterfaceRef& operator=(InterfaceRef other) noexcept {
        std::swap(mObject, other.mObject);
        return *this;
    }
    ~InterfaceRef() {
        if (mObject != nullptr) {
            AsRoot()->Release();
        }
    }

    [[nodiscard]] Interface* Get() const noexcept { return mObject; }

    /// Hands the reference over to the caller and leaves this one empty.
    [[nodiscard]] Interface* Detach() noexcept { return std::exchange(mObject, nullptr); }

    explicit operator bool() const noexcept { return mObject != nullptr; }

    /// Throws NullInterfaceException when empty.
    Interface* operator->() const {
        if (mObject == nullptr) {
            throw NullInterfaceException();
        }
        return mObject;
    }

private:
    [[nodiscard]] Root* AsRoot() const noexcept { return static_cast<Root*>(mObject); }

    Interface* mObject = nullptr;
};

using BrioUnknownRef = InterfaceRef<BrioUnknown, BrioUnknown>;

}  // namespace Brio
