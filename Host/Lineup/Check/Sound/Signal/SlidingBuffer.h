#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lineup::sound {

/// The last values of a long row, in one piece, under their numbers in the row. Memory is taken once.
template <class T>
class SlidingBuffer {
public:
    /// At least the last `kept` values stay.
    explicit SlidingBuffer(std::size_t kept) : mKept(kept), mCapacity(kept + kept / 4 + 1) {
        mValues.reserve(mCapacity);
    }

    void Append(std::span<const T> values) {
        for (std::size_t done = 0; done < values.size();) {
            MakeRoom();
            const std::size_t count = std::min(values.size() - done, mCapacity - mValues.size());
            const auto part = values.subspan(done, count);
            mValues.insert(mValues.end(), part.begin(), part.end());
            done += count;
        }
    }

    void Append(const T& value) { Append(std::span<const T>(&value, 1)); }

    /// The number of the first value that is still there, and of the one after the last.
    [[nodiscard]] std::int64_t First() const { return mFirst; }
    [[nodiscard]] std::int64_t End() const { return mFirst + static_cast<std::int64_t>(mValues.size()); }

    /// Values [first, end), which must be there.
    [[nodiscard]] std::span<const T> Get(std::int64_t first, std::int64_t end) const {
        return std::span<const T>(mValues).subspan(static_cast<std::size_t>(first - mFirst),
                                                   static_cast<std::size_t>(end - first));
    }

    [[nodiscard]] const T& operator[](std::int64_t number) const {
        return mValues[static_cast<std::size_t>(number - mFirst)];
    }
    [[nodiscard]] T& operator[](std::int64_t number) { return mValues[static_cast<std::size_t>(number - mFirst)]; }

private:
    void MakeRoom() {
        if (mValues.size() < mCapacity) {
            return;
        }
        const std::size_t gone = mValues.size() - mKept;
        mValues.erase(mValues.begin(), mValues.begin() + static_cast<std::ptrdiff_t>(gone));
        mFirst += static_cast<std::int64_t>(gone);
    }

    std::size_t mKept;
    std::size_t mCapacity;
    std::vector<T> mValues;
    std::int64_t mFirst = 0;
};

}  // namespace lineup::sound
