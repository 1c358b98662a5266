#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace studio {

/// A small value that one thread writes and others read whole, with no lock: the writer never waits, and a
/// reader that met a write reads again.
template <class Value>
class SnapshotCell {
    static_assert(std::is_trivially_copyable_v<Value> && sizeof(Value) % sizeof(std::uint64_t) == 0);
    static constexpr std::size_t kWords = sizeof(Value) / sizeof(std::uint64_t);
    using Words = std::array<std::uint64_t, kWords>;

public:
    SnapshotCell() noexcept { Write(Value{}); }

    /// One thread at a time.
    void Write(const Value& value) noexcept {
        const auto words = std::bit_cast<Words>(value);
        const std::uint64_t turn = mTurn.load(std::memory_order_relaxed);
        mTurn.store(turn + 1, std::memory_order_relaxed);
        for (std::size_t i = 0; i < kWords; ++i) {
            // Each word is released after the odd turn, so a reader that sees the word sees the turn too.
            mWords[i].store(words[i], std::memory_order_release);
        }
        mTurn.store(turn + 2, std::memory_order_release);
    }

    /// Any thread.
    [[nodiscard]] Value Read() const noexcept {
        for (;;) {
            const std::uint64_t before = mTurn.load(std::memory_order_acquire);
            Words words;
            for (std::size_t i = 0; i < kWords; ++i) {
                words[i] = mWords[i].load(std::memory_order_acquire);
            }
            if (before % 2 == 0 && mTurn.load(std::memory_order_relaxed) == before) {
                return std::bit_cast<Value>(words);
            }
        }
    }

private:
    std::atomic<std::uint64_t> mTurn{0};
    std::array<std::atomic<std::uint64_t>, kWords> mWords{};
};

}  // namespace studio
