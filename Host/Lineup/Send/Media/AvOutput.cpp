#include "Host/Lineup/Send/Media/AvOutput.h"

#include <lineup/Error.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"

#include <fmt/format.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <string_view>
#include <utility>

namespace lineup {

namespace {

using std::chrono::milliseconds;

// What a connection may lag behind: some seconds of a usual stream.
constexpr std::size_t kMostQueued = 4096;

constexpr milliseconds kRetryAfter{1000};
constexpr milliseconds kLongestEnd{1000};

struct CloseIo {
    void operator()(AVIOContext* io) const noexcept { avio_close(io); }
};
using Connection = std::unique_ptr<AVIOContext, CloseIo>;

bool KnowsProtocol(std::string_view name) {
    void* state = nullptr;
    while (const char* const protocol = avio_enum_protocols(&state, /*output=*/1)) {
        if (name == protocol) {
            return true;
        }
    }
    return false;
}

// What the library said last on this thread of what went wrong.
thread_local std::string
    lastSaid;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): the library's callback has no place for it

void KeepErrors(void* context, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR) {
        return;
    }
    constexpr std::size_t kLongestLine = 512;
    std::array<char, kLongestLine> line{};
    int prefix = 0;
    av_log_format_line2(context, level, format, arguments, line.data(), static_cast<int>(line.size()), &prefix);
    std::string_view text = line.data();
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) {
        text.remove_suffix(1);
    }
    const std::size_t behindContext = text.starts_with('[') ? text.find("] ") : std::string_view::npos;
    lastSaid = behindContext == std::string_view::npos ? text : text.substr(behindContext + 2);
}

// The system's word, or where the protocol has none the library's own.
std::string CauseOf(int code) {
    if (code == AVERROR(EIO) && !lastSaid.empty()) {
        return lastSaid;
    }
    std::array<char, AV_ERROR_MAX_STRING_SIZE> cause{};
    av_strerror(code, cause.data(), cause.size());
    return cause.data();
}

}  // namespace

AvOutput::AvOutput(const SendSettings& settings, std::vector<std::uint8_t> head)
    : mUrl(settings.target), mStall(settings.connectionStall), mNotice(settings.notice), mHead(std::move(head)) {
    const std::string scheme = SchemeOf(mUrl);
    if (!KnowsProtocol(scheme)) {
        throw Error(
            fmt::format("cannot send to {}: this system's FFmpeg libraries were built without {}", mUrl, scheme));
    }
    av_log_set_callback(&KeepErrors);  // what goes wrong is said in notices
    mThread = std::thread([this] { Run(); });
}

AvOutput::~AvOutput() {
    {
        std::unique_lock lock(mMutex);
        mEnding = true;
        mChanged.notify_all();
        mChanged.wait_for(lock, kLongestEnd, [this] { return mQueue.empty() || !mConnected; });
        mStopped = true;
    }
    mChanged.notify_all();
    mThread.join();
}

int AvOutput::IsStopped(void* output) {
    const auto* const self = static_cast<AvOutput*>(output);
    return self->mStopped || self->HasStalled() ? 1 : 0;
}

bool AvOutput::HasStalled() const {
    return Clock::now() >= mDeadline;
}

// Said by the thread that sends; the same thing once.
void AvOutput::Note(const std::string& text) {
    if (text != mLastNote) {
        mNotes.push_back(text);
        mLastNote = text;
    }
}

void AvOutput::SayNotes() {
    std::vector<std::string> notes;
    {
        const std::lock_guard lock(mMutex);
        notes.swap(mNotes);
    }
    for (const std::string& note : notes) {
        if (mNotice) {
            mNotice(note);
        }
    }
}

bool AvOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) {
    bool taken = false;
    {
        const std::lock_guard lock(mMutex);
        const bool full = mQueue.size() >= kMostQueued;
        if (full && !mFull) {
            Note(fmt::format("{} does not take the stream as fast as it is sent; some of it is lost", mUrl));
        }
        mFull = full;
        taken = mConnected && !full && (!mNeedsEntry || moment.isEntry);
        if (taken) {
            mQueue.emplace_back(bytes.begin(), bytes.end());
        }
        mNeedsEntry = !taken && !mHead.empty();
    }
    mChanged.notify_all();
    SayNotes();
    return taken;
}

bool AvOutput::WaitForRetry() {
    std::unique_lock lock(mMutex);
    return !mChanged.wait_for(lock, kRetryAfter, [this] { return mEnding || mStopped; });
}

void AvOutput::Run() {
    do {
        SendWhileConnected();
    } while (WaitForRetry());
}

// A write that has stalled leaves its deadline behind: what closing the connection would still send has the same.
void AvOutput::WriteAll(AVIOContext& connection, const std::vector<std::uint8_t>& bytes) {
    mDeadline = Clock::now() + mStall;
    avio_write(&connection, bytes.data(), static_cast<int>(bytes.size()));
    avio_flush(&connection);
    if (connection.error >= 0) {
        mDeadline = Clock::time_point::max();
    }
}

void AvOutput::SendWhileConnected() {
    lastSaid.clear();
    mDeadline = Clock::time_point::max();
    AVIOContext* opened = nullptr;
    const AVIOInterruptCB interrupt = {.callback = &IsStopped, .opaque = this};
    AvOptions options;
    if (SchemeOf(mUrl) == "rist") {
        options.Set("log_level", "-1");  // librist goes on writing to the first connection's log when that is gone
    }
    if (const int code = avio_open2(&opened, mUrl.c_str(), AVIO_FLAG_WRITE, &interrupt, options.Address()); code < 0) {
        const std::lock_guard lock(mMutex);
        Note(fmt::format("cannot reach {}: {}; trying on, and clip time goes on", mUrl, CauseOf(code)));
        return;
    }
    const Connection connection(opened);
    std::unique_lock lock(mMutex);
    Note(fmt::format("connected to {}", mUrl));
    mConnected = true;
    mNeedsEntry = !mHead.empty();
    if (!mHead.empty()) {
        mQueue.push_back(mHead);
    }
    for (;;) {
        mChanged.wait(lock, [this] { return mStopped || mEnding || !mQueue.empty(); });
        if (mStopped || mQueue.empty()) {
            break;
        }
        const std::vector<std::uint8_t> bytes = std::move(mQueue.front());
        lock.unlock();
        WriteAll(*connection, bytes);
        lock.lock();
        if (connection->error < 0) {
            const std::string cause = HasStalled() ? fmt::format("it has taken nothing for {:g} s",
                                                                 std::chrono::duration<double>(mStall).count())
                                                   : CauseOf(connection->error);
            Note(fmt::format("lost {}: {}; trying on, and clip time goes on", mUrl, cause));
            break;
        }
        mQueue.pop_front();
        mChanged.notify_all();
    }
    mConnected = false;
    mQueue.clear();
    mChanged.notify_all();
}

}  // namespace lineup
