#include "Tests/Packaging/Terminal.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

Terminal::Terminal(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    const winsize size{.ws_row = 200, .ws_col = 500, .ws_xpixel = 0, .ws_ypixel = 0};
    mProgram = forkpty(&mScreen, nullptr, nullptr, &size);
    if (mProgram < 0) {
        throw std::runtime_error("cannot have a terminal");
    }
    if (mProgram == 0) {
        execvp(pointers.front(), pointers.data());
        _exit(127);
    }
}

Terminal::~Terminal() {
    close(mScreen);
    kill(mProgram, SIGKILL);
    waitpid(mProgram, nullptr, 0);
}

void Terminal::Type(const std::string& keys) const {
    if (write(mScreen, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::runtime_error("cannot type " + keys);
    }
}

std::string Terminal::ReadUntil(const std::string& text, std::chrono::seconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    std::size_t found = 0;
    while ((found = mRead.find(text)) == std::string::npos) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd screen{.fd = mScreen, .events = POLLIN, .revents = 0};
        std::array<char, 4096> bytes{};
        const bool ready = left.count() > 0 && poll(&screen, 1, static_cast<int>(left.count())) == 1;
        const ssize_t count = ready ? read(mScreen, bytes.data(), bytes.size()) : 0;
        if (count <= 0) {
            throw std::runtime_error("instead of " + text + " there is:\n" + mRead);
        }
        mRead.append(bytes.data(), static_cast<std::size_t>(count));
    }
    std::string read = mRead.substr(0, found + text.size());
    mRead.erase(0, found + text.size());
    return read;
}

}  // namespace test
