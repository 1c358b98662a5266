#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Files/TargetFile.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace lineup {
inline namespace parts {

/// Writes to a file in large blocks, each at a multiple of its size, on a thread of its own, while the caller
/// fills the next one. A few blocks are used by turns, so memory does not grow with the file. One caller; the
/// file is empty at first and the queue's own until Finish.
class LINEUP_API FileQueue {
public:
    /// A block's size: large enough that a system call costs nothing, small enough for a core's cache.
    static constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

    explicit FileQueue(TargetFile& file);

    /// Without Finish what lies in the last block is lost.
    ~FileQueue();
    FileQueue(const FileQueue&) = delete;
    FileQueue& operator=(const FileQueue&) = delete;

    /// At least so many bytes fit.
    static constexpr std::size_t kRoomBytes = std::size_t{1} << 18;

    /// Memory for what comes next in the file, kRoomBytes of it.
    [[nodiscard]] std::uint8_t* Room() const noexcept;

    /// The first `bytes` bytes of the room are what comes next. Waits while too much is still to be written.
    /// Throws Error as soon as writing has failed; then nothing more can be added.
    void Add(std::size_t bytes);

    /// Waits until all is written. Throws Error when something was not. Call once, last.
    void Finish();

private:
    struct Free {
        void operator()(std::uint8_t* memory) const noexcept;
    };
    struct Slot {
        std::unique_ptr<std::uint8_t[], Free> memory;
        std::size_t bytes = 0;
    };

    static std::vector<Slot> MakeSlots();
    void WaitForSlot();
    void Submit(std::size_t bytes);
    void Stop() noexcept;
    void WriteBlocks();

    TargetFile* mFile;
    std::vector<Slot> mSlots;
    std::uint8_t* mBlock;  // being filled
    std::size_t mFilled = 0;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::size_t mSubmitted = 0;  // blocks, ever; block n lies in slot n modulo their number
    std::size_t mWritten = 0;
    bool mFailed = false;
    bool mEnding = false;
    std::thread mThread;  // last: it uses all the others
};

}  // namespace parts
}  // namespace lineup
