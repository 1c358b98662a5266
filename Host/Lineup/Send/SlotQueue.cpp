#include "Host/Lineup/Send/SlotQueue.h"

#include <utility>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kSlotsAhead = 12;

}  // namespace

SlotQueue::SlotQueue(MakeSlot make, std::int64_t first)
    : mMake(std::move(make)), mThread([this, first] { Run(first); }) {}

SlotQueue::~SlotQueue() {
    {
        const std::lock_guard lock(mMutex);
        mStopped = true;
    }
    mChanged.notify_all();
    mThread.join();
}

void SlotQueue::Run(std::int64_t slot) {
    try {
        for (;; ++slot) {
            std::vector<std::uint8_t> bytes;
            {
                std::unique_lock lock(mMutex);
                mChanged.wait(lock, [this] { return mStopped || mMade.size() < kSlotsAhead; });
                if (mStopped) {
                    return;
                }
                if (!mSpare.empty()) {
                    bytes = std::move(mSpare.back());
                    mSpare.pop_back();
                }
            }
            bytes.clear();
            mMake(slot, bytes);
            const std::lock_guard lock(mMutex);
            mMade.push_back(std::move(bytes));
            mChanged.notify_all();
        }
    } catch (...) {
        const std::lock_guard lock(mMutex);
        mError = std::current_exception();
        mChanged.notify_all();
    }
}

void SlotQueue::Take(std::vector<std::uint8_t>& bytes) {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return !mMade.empty() || mError != nullptr; });
    if (mMade.empty()) {
        std::rethrow_exception(mError);
    }
    mSpare.push_back(std::move(bytes));
    bytes = std::move(mMade.front());
    mMade.pop_front();
    mChanged.notify_all();
}

}  // namespace parts
}  // namespace lineup
