// Stands in the place of the decoding program, as if a recording had taken it over: gives up its rights as that one
// does, and then does what the recording says (a file holds the word, a URL ends with it).
#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace lineup::decoding;

// How an attempt ended, as the reason for the end: "done", or why not.
std::string Outcome(bool isDone) {
    return isDone ? "done" : std::strerror(errno);
}

bool Wait() {
    return poll(nullptr, 0, -1) == 0;
}

std::string Eat() {
    constexpr std::size_t kMegabyte = std::size_t{1} << 20;
    std::vector<std::unique_ptr<char[]>> eaten;
    try {
        for (std::size_t megabytes = 0; megabytes < 4096; ++megabytes) {
            eaten.push_back(std::make_unique_for_overwrite<char[]>(kMegabyte));
        }
    } catch (const std::bad_alloc&) {
        return eaten.size() < 1100 ? "no memory" : "much memory";
    }
    return "done";
}

std::string Execute() {
    char shell[] = "/bin/true";
    std::array<char*, 2> arguments{shell, nullptr};
    execv(shell, arguments.data());
    return Outcome(false);
}

std::string Connect() {
    const int handle = socket(AF_INET, SOCK_STREAM, 0);
    if (handle < 0) {
        return Outcome(false);
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(9);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return Outcome(connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
}

// Memory that is written and then executed.
std::string RunWritten() {
    void* const page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return Outcome(mprotect(page, 4096, PROT_READ | PROT_EXEC) == 0);
}

std::string Grow() {
    std::signal(SIGXFSZ, SIG_IGN);
    // What is open already and can be written: the pipe has no size, so this is about files alone.
    const int file = memfd_create("grows", 0);
    return file < 0 ? Outcome(false) : Outcome(write(file, "x", 1) == 1);
}

// Libraries do, of protocols above all; standard error may well lead to a file, which must not grow.
std::string Print() {
    return Outcome(write(STDERR_FILENO, "x", 1) == 1);
}

std::string RunThread() {
    std::string text = "nothing";
    std::thread([&text] { text = "done"; }).join();
    return text;
}

// A sanitizer would report the signal and end with an exit code.
std::string Crash() {
    std::signal(SIGSEGV, SIG_DFL);
    return Outcome(raise(SIGSEGV) == 0);
}

std::string Loop() {
    const volatile bool isForever = true;
    while (isForever) {
    }
    return "done";
}

std::string RaiseALimit() {
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_max = RLIM_INFINITY;
    return Outcome(setrlimit(RLIMIT_AS, &limit) == 0);
}

struct Deed {
    std::string_view word;
    std::string (*act)();
};

constexpr std::array kDeeds = {
    Deed{"crash", Crash},
    Deed{"abort", []() -> std::string { std::abort(); }},
    Deed{"exit", []() -> std::string { _exit(7); }},
    Deed{"loop", Loop},
    Deed{"wait", [] { return Outcome(Wait()); }},
    Deed{"eat", Eat},
    Deed{"fork", [] { return Outcome(fork() >= 0); }},
    Deed{"execute", Execute},
    Deed{"kill", [] { return Outcome(kill(getppid(), SIGTERM) == 0); }},
    Deed{"trace", [] { return Outcome(ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr) == 0); }},
    Deed{"connect", Connect},
    Deed{"read", [] { return Outcome(open("/etc/passwd", O_RDONLY) >= 0); }},
    Deed{"read-ours", [] { return Outcome(open(TEST_SOURCE_FILE, O_RDONLY) >= 0); }},
    Deed{"write", [] { return Outcome(open("/tmp/lineup-was-here", O_WRONLY | O_CREAT, 0600) >= 0); }},
    Deed{"remove", [] { return Outcome(unlink(TEST_SOURCE_FILE) == 0); }},
    Deed{"permit", [] { return Outcome(chmod(TEST_SOURCE_FILE, 0777) == 0); }},
    Deed{"run-written", RunWritten},
    Deed{"grow", Grow},
    Deed{"print", Print},
    Deed{"thread", RunThread},
    Deed{"raise-a-limit", RaiseALimit},
};

std::string WordOf(InputKind kind, std::string_view name) {
    if (kind == InputKind::Url) {
        return std::string(name.substr(name.rfind('/') + 1));
    }
    std::array<char, 64> text{};
    const ssize_t count = read(kInputDescriptor, text.data(), text.size());
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(0, count))};
}

void Babble() {
    std::array<unsigned char, 4096> noise{};
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<unsigned char>(i * 197 + 13);
    }
    while (write(kMessageDescriptor, noise.data(), noise.size()) > 0) {
    }
}

// Samples without end, of a recording that is a few bytes long.
void Flood(MessageWriter& out) {
    out.Write(Track{.index = 0,
                    .sampleRate = 48000,
                    .channels = 1,
                    .bits = 16,
                    .flags = 0,
                    .recordedRate = 48000,
                    .codec = {},
                    .layout = {}});
    out.Write(Begin{.tracks = 1, .leftOut = 0, .seconds = 0, .container = {}});
    for (std::int64_t position = 0;; position += 4096) {
        std::ranges::fill(
            out.WriteSamples({.track = 0, .channels = 1, .count = 4096, .reserved = 0, .position = position}), 0.5F);
    }
}

}  // namespace

int main(int, char** argv) {
    const std::string_view kindWord = argv[1];
    const InputKind kind = kindWord == "url" ? InputKind::Url : kindWord == "pipe" ? InputKind::Pipe : InputKind::File;
    const std::string word = WordOf(kind, argv[3]);
    const std::uint32_t givenUp = GiveUpRights(kind);
    MessageWriter out(kMessageDescriptor);
    out.Write(Hello{.version = kProtocolVersion, .givenUp = givenUp});
    out.Flush();
    if (word == "babble") {
        Babble();
    } else if (word == "flood") {
        Flood(out);
    } else if (word == "leave") {
        close(kMessageDescriptor);
        static_cast<void>(Wait());
    }
    for (const Deed& deed : kDeeds) {
        if (deed.word == word) {
            out.Write(End{.cause = static_cast<std::uint32_t>(EndCause::NotOpened),
                          .reserved = 0,
                          .reason = ToField<192>(deed.act())});
            out.Flush();
            return 0;
        }
    }
    return 3;
}
