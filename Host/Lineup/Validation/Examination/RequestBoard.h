#pragma once

#include <lineup/Validation.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace lineup::validation {

/// What a check's process is doing at this moment, in memory that its parent reads: however the process
/// ends, what it had begun and not finished stands there. One slot a thread.
struct RequestBoard {
    static constexpr std::size_t kSlots = 32;
    static constexpr std::size_t kTextBytes = 500;

    struct Slot {
        std::atomic<std::uint32_t> isTaken;
        std::int32_t hasSelector;
        std::int32_t selector;
        std::array<char, kTextBytes> text;  // ends with a zero byte
    };

    std::array<Slot, kSlots> slots;

    /// What has been begun and not finished.
    [[nodiscard]] std::vector<PendingRequest> Pending() const;
};

/// The board that this process writes to from now on; null for none. Before the first request.
void WriteTo(RequestBoard* board);

/// Stands on the board while it lives.
class OnBoard {
public:
    /// A request; its text is made only when there is a board.
    template <class MakeText>
    OnBoard(std::int32_t selector, const MakeText& text) : mSlot(TakeSlot()) {
        if (mSlot != nullptr) {
            Put(text());
            mSlot->selector = selector;
            mSlot->hasSelector = 1;
        }
    }
    /// What is not a request: loading and unloading.
    explicit OnBoard(std::string_view text) : mSlot(TakeSlot()) {
        if (mSlot != nullptr) {
            Put(text);
        }
    }
    ~OnBoard() {
        if (mSlot != nullptr) {
            mSlot->isTaken.store(0);
        }
    }
    OnBoard(const OnBoard&) = delete;
    OnBoard& operator=(const OnBoard&) = delete;

private:
    static RequestBoard::Slot* TakeSlot();
    void Put(std::string_view text) const;

    RequestBoard::Slot* mSlot;  // null: no board, or no slot is left
};

}  // namespace lineup::validation
