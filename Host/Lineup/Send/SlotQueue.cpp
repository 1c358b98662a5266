#include "Host/Lineup/Send/SlotQueue.h"

#include <utility>

namespace lineup {
inline namespace parts {

namespace {

// Slots are made several at a time, from the fewest that are left to the most: a change of threads costs more than a
// slot.
constexpr std::size_t kFewest = 6;
constexpr std::size_t kMost = 18;

}  // namespace

SlotQueue::SlotQueue(MakeSlot make, std::int64_t first)
    : mMake(std::move(make)), mThread([this, first] { Run(first); }) {}

SlotQueue::~SlotQueue() {
    {
        const std::lock_guard lock(mMutex);
        mStopped = true;
    }
    mRoom.notify_one();
    mThread.join();
}

bool SlotQueue::WaitForRoom(bool filling, std::vector<std::uint8_t>& bytes) {
    std::unique_lock lock(mMutex);
    if (!filling || mMade.size() >= kMost) {
        mRoom.wait(lock, [this] { return mStopped || mMade.size() <= kFewest; });
    }
    if (!mSpare.empty()) {
        bytes = std::move(mSpare.back());
        mSpare.pop_back();
    }
    return !mStopped;
}

void SlotQueue::Run(std::int64_t slot) {
    try {
        std::vector<std::uint8_t> bytes;
        for (bool filling = false; WaitForRoom(filling, bytes); ++slot) {
            filling = true;
            bytes.clear();
            mMake(slot, bytes);
            const std::lock_guard lock(mMutex);
            mMade.push_back(std::move(bytes));
            if (mMade.size() == 1) {
                mFilled.notify_one();
            }
        }
    } catch (...) {
        const std::lock_guard lock(mMutex);
        mError = std::current_exception();
        mFilled.notify_one();
    }
}

void SlotQueue::Take(std::vector<std::uint8_t>& bytes) {
    std::unique_lock lock(mMutex);
    mFilled.wait(lock, [this] { return !mMade.empty() || mError != nullptr; });
    if (mMade.empty()) {
        std::rethrow_exception(mError);
    }
    mSpare.push_back(std::move(bytes));
    bytes = std::move(mMade.front());
    mMade.pop_front();
    if (mMade.size() <= kFewest) {
        mRoom.notify_one();
    }
}

}  // namespace parts
}  // namespace lineup
