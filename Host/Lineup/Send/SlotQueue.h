#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace lineup {
inline namespace parts {

/// Slots of a stream, made some ahead on a thread of their own: coding sound takes a while now and then, and packets
/// are due all the time.
class SlotQueue {
public:
    /// `make` puts slot `slot` behind the bytes it is given. The slots are taken from `first` on.
    using MakeSlot = std::function<void(std::int64_t slot, std::vector<std::uint8_t>& bytes)>;
    SlotQueue(MakeSlot make, std::int64_t first);
    ~SlotQueue();
    SlotQueue(const SlotQueue&) = delete;
    SlotQueue& operator=(const SlotQueue&) = delete;

    /// Puts the next slot in place of `bytes`. Throws what making it threw.
    void Take(std::vector<std::uint8_t>& bytes);

private:
    void Run(std::int64_t slot);
    [[nodiscard]] bool WaitForRoom(bool filling, std::vector<std::uint8_t>& bytes);

    MakeSlot mMake;
    std::mutex mMutex;
    std::condition_variable mRoom;
    std::condition_variable mFilled;
    std::deque<std::vector<std::uint8_t>> mMade;
    std::vector<std::vector<std::uint8_t>> mSpare;  // memory to use again
    std::exception_ptr mError;
    bool mStopped = false;
    std::thread mThread;
};

}  // namespace parts
}  // namespace lineup
