#pragma once

#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct AVIOContext;

namespace lineup {

/// A connection by one of the media library's protocols, kept up on a thread of its own: neither a receiver that has
/// gone away nor a slow one holds the stream up. What is sent meanwhile is lost. One that takes nothing for
/// SendSettings::connectionStall counts as gone away.
class AvOutput final : public StreamOutput {
public:
    /// Throws Error when this system's media libraries do not know the protocol.
    /// Behind `head`, with which each connection begins, and behind what is lost, the stream goes on with an entry.
    AvOutput(const SendSettings& settings, std::vector<std::uint8_t> head);
    ~AvOutput() override;
    AvOutput(const AvOutput&) = delete;
    AvOutput& operator=(const AvOutput&) = delete;

    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    void Run();
    void SendWhileConnected();
    void Note(const std::string& text);
    void SayNotes();
    bool WaitForRetry();
    void WriteAll(AVIOContext& connection, const std::vector<std::uint8_t>& bytes);
    [[nodiscard]] bool HasStalled() const;
    static int IsStopped(void* output);

    using Clock = std::chrono::steady_clock;

    std::string mUrl;
    std::chrono::milliseconds mStall;
    std::function<void(const std::string&)> mNotice;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<std::vector<std::uint8_t>> mQueue;
    std::vector<std::string> mNotes;  // not said yet
    std::string mLastNote;
    std::vector<std::uint8_t> mHead;
    bool mConnected = false;
    bool mNeedsEntry = false;
    bool mFull = false;
    std::atomic<bool> mEnding = false;                       // what is in the queue is still sent
    std::atomic<bool> mStopped = false;                      // at once
    Clock::time_point mDeadline = Clock::time_point::max();  // of the write that goes on; the thread's own
    std::thread mThread;
};

}  // namespace lineup
