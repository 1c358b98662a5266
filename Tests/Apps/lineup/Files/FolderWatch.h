#pragma once

#include "Tests/Support/ChildProgram.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <sys/inotify.h>
#include <unistd.h>

namespace test {

/// Waits for what happens in a folder, without asking again and again.
class FolderWatch {
public:
    /// Watches from now on.
    explicit FolderWatch(const std::filesystem::path& folder) : mQueue(inotify_init1(IN_CLOEXEC)) {
        if (mQueue < 0 || inotify_add_watch(mQueue, folder.c_str(), IN_CREATE | IN_MODIFY) < 0) {
            throw std::runtime_error("cannot watch " + folder.string());
        }
    }
    ~FolderWatch() { close(mQueue); }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Returns when something was made or written in the folder, since the watch began or since this
    /// returned last.
    void WaitForAWrite() const {
        std::array<char, 4096> events{};
        if (read(mQueue, events.data(), events.size()) <= 0) {
            throw std::runtime_error("cannot watch a folder");
        }
    }

    /// The same, but throws when `program`, which is to write or to be written for, ends before.
    void WaitForAWriteWhileRuns(const ChildProgram& program) const {
        constexpr int kAskEveryMilliseconds = 100;
        pollfd queue{.fd = mQueue, .events = POLLIN, .revents = 0};
        while (poll(&queue, 1, kAskEveryMilliseconds) == 0) {
            if (!program.IsRunning()) {
                throw std::runtime_error("the program has ended before anything was written");
            }
        }
        WaitForAWrite();
    }

    /// How often something was written since this or another of these returned last.
    [[nodiscard]] int CountWrites() const {
        pollfd queue{.fd = mQueue, .events = POLLIN, .revents = 0};
        int writes = 0;
        while (poll(&queue, 1, 0) > 0) {
            alignas(inotify_event) std::array<char, 4096> events{};
            const ssize_t size = read(mQueue, events.data(), events.size());
            for (ssize_t at = 0; at < size;) {
                inotify_event event{};
                std::memcpy(&event, events.data() + at, sizeof(event));
                writes += (event.mask & IN_MODIFY) != 0 ? 1 : 0;
                at += static_cast<ssize_t>(sizeof(event) + event.len);
            }
        }
        return writes;
    }

private:
    int mQueue;
};

}  // namespace test
