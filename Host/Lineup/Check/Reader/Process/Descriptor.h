#pragma once

#include <unistd.h>
#include <utility>

namespace lineup {

/// Owns a file descriptor, or none (-1).
class Descriptor {
public:
    Descriptor() noexcept = default;
    explicit Descriptor(int number) noexcept : mNumber(number) {}
    ~Descriptor() { Close(); }
    Descriptor(Descriptor&& other) noexcept : mNumber(std::exchange(other.mNumber, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int Number() const noexcept { return mNumber; }

    void Close() noexcept {
        if (mNumber >= 0) {
            close(std::exchange(mNumber, -1));
        }
    }

private:
    int mNumber = -1;
};

}  // namespace lineup
