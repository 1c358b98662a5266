#include "Host/Lineup/Files/FileQueue.h"

#include <algorithm>
#include <new>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kSlots = 4;
constexpr std::align_val_t kPage{4096};

}  // namespace

void FileQueue::Free::operator()(std::uint8_t* memory) const noexcept {
    ::operator delete[](memory, kPage);
}

std::vector<FileQueue::Slot> FileQueue::MakeSlots() {
    std::vector<Slot> slots(kSlots);
    for (Slot& slot : slots) {
        slot.memory.reset(new (kPage) std::uint8_t[kBlockBytes + kRoomBytes]);
    }
    return slots;
}

FileQueue::FileQueue(TargetFile& file)
    : mFile(&file), mSlots(MakeSlots()), mBlock(mSlots.front().memory.get()), mThread([this] { WriteBlocks(); }) {}

FileQueue::~FileQueue() {
    Stop();
}

std::uint8_t* FileQueue::Room() const noexcept {
    return mBlock + mFilled;
}

void FileQueue::Add(std::size_t bytes) {
    mFilled += bytes;
    if (mFilled >= kBlockBytes) {
        // What reaches past the block's end begins the next one. The thread does not read it.
        const std::uint8_t* const beyond = mBlock + kBlockBytes;
        const std::size_t rest = mFilled - kBlockBytes;
        Submit(kBlockBytes);
        WaitForSlot();
        std::copy_n(beyond, rest, mBlock);
        mFilled = rest;
    }
}

void FileQueue::Finish() {
    Submit(mFilled);
    Stop();
    mFile->ThrowIfFailed();
}

void FileQueue::Submit(std::size_t bytes) {
    {
        const std::lock_guard lock(mMutex);
        mSlots[mSubmitted % mSlots.size()].bytes = bytes;
        ++mSubmitted;
    }
    mChanged.notify_all();
}

void FileQueue::WaitForSlot() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mFailed || mSubmitted - mWritten < mSlots.size(); });
    if (mFailed) {
        lock.unlock();
        Stop();
        mFile->ThrowIfFailed();
    }
    mBlock = mSlots[mSubmitted % mSlots.size()].memory.get();
}

void FileQueue::Stop() noexcept {
    if (mThread.joinable()) {
        {
            const std::lock_guard lock(mMutex);
            mEnding = true;
        }
        mChanged.notify_all();
        mThread.join();
    }
}

void FileQueue::WriteBlocks() {
    std::unique_lock lock(mMutex);
    while (!mFailed) {
        mChanged.wait(lock, [this] { return mEnding || mSubmitted > mWritten; });
        if (mSubmitted == mWritten) {
            return;
        }
        const Slot& slot = mSlots[mWritten % mSlots.size()];
        lock.unlock();
        const bool written = mFile->Write({slot.memory.get(), slot.bytes});
        lock.lock();
        mFailed = !written;
        ++mWritten;
        mChanged.notify_all();
    }
}

}  // namespace parts
}  // namespace lineup
