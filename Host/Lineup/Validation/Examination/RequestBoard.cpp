#include "Host/Lineup/Validation/Examination/RequestBoard.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace lineup::validation {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one a process, set before the first request
RequestBoard* theBoard = nullptr;

}  // namespace

std::vector<PendingRequest> RequestBoard::Pending() const {
    std::vector<PendingRequest> pending;
    for (const Slot& slot : slots) {
        if (slot.isTaken.load() != 0) {
            const auto* const end = std::ranges::find(slot.text, '\0');
            PendingRequest request{.selector = std::nullopt, .text = std::string(slot.text.begin(), end)};
            if (slot.hasSelector != 0) {
                request.selector = slot.selector;
            }
            pending.push_back(std::move(request));
        }
    }
    return pending;
}

void WriteTo(RequestBoard* board) {
    theBoard = board;
}

RequestBoard::Slot* OnBoard::TakeSlot() {
    if (theBoard == nullptr) {
        return nullptr;
    }
    for (RequestBoard::Slot& slot : theBoard->slots) {
        std::uint32_t isFree = 0;
        if (slot.isTaken.compare_exchange_strong(isFree, 1)) {
            slot.hasSelector = 0;
            slot.text.front() = '\0';
            return &slot;
        }
    }
    return nullptr;
}

void OnBoard::Put(std::string_view text) const {
    const std::size_t size = std::min(text.size(), mSlot->text.size() - 1);
    std::copy_n(text.begin(), size, mSlot->text.begin());
    mSlot->text[size] = '\0';
}

}  // namespace lineup::validation
