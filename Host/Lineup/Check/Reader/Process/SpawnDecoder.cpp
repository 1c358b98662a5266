#include "Host/Lineup/Check/Reader/Process/SpawnDecoder.h"

#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lineup {

namespace {

// What the program loader, TLS, proxies, sanitizers and the count of tested lines go by. Secrets stay here.
constexpr std::array<std::string_view, 12> kVariables = {
    "LD_LIBRARY_PATH", "LD_PRELOAD",   "SSL_CERT_FILE", "SSL_CERT_DIR",  "http_proxy",   "https_proxy",
    "no_proxy",        "ASAN_OPTIONS", "LSAN_OPTIONS",  "UBSAN_OPTIONS", "TSAN_OPTIONS", "LLVM_PROFILE_FILE"};

constexpr int kPipeBytes = 1 << 20;  // as much as the system gives anyone

std::vector<char*> Environment() {
    std::vector<char*> kept;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (std::ranges::find(kVariables, text.substr(0, text.find('='))) != kVariables.end()) {
            kept.push_back(*variable);
        }
    }
    kept.push_back(nullptr);
    return kept;
}

std::vector<std::string> Arguments(const RecordingName& recording, const RecordingInput& input,
                                   const DecoderSettings& settings) {
    const bool isUrl = recording.kind == RecordingName::Kind::Url;
    const char* const kind = isUrl ? "url" : input.canSeek ? "file" : "pipe";
    const char* const wanted = !settings.wantsPicture ? "sound" : settings.wantsSound ? "both" : "picture";
    std::vector<std::string> words{settings.program.string(), kind, std::to_string(settings.stall.count()),
                                   recording.text, wanted};
    if (settings.from) {
        words.push_back(fmt::format("{}", *settings.from));
    }
    return words;
}

std::pair<Descriptor, Descriptor> MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Error(fmt::format("cannot make a pipe: {}", std::generic_category().message(errno)));
    }
    std::pair<Descriptor, Descriptor> pipe{ends[0], ends[1]};
    fcntl(ends[1], F_SETPIPE_SZ, kPipeBytes);
    return pipe;
}

// Where the streams of the new process lead, and how it takes signals.
class Setup {
public:
    Setup(int input, int messages) {
        posix_spawn_file_actions_init(&mFiles);
        if (input < 0) {
            posix_spawn_file_actions_addopen(&mFiles, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        } else {
            posix_spawn_file_actions_adddup2(&mFiles, input, decoding::kInputDescriptor);
        }
        posix_spawn_file_actions_addopen(&mFiles, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // they report there
        // What libraries print is for nobody, and growing a file would end the process.
        posix_spawn_file_actions_addopen(&mFiles, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
#endif
        posix_spawn_file_actions_adddup2(&mFiles, messages, decoding::kMessageDescriptor);
        sigset_t none{};
        sigset_t all{};
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&mAttributes);
        posix_spawnattr_setsigmask(&mAttributes, &none);
        posix_spawnattr_setsigdefault(&mAttributes, &all);
        posix_spawnattr_setpgroup(&mAttributes, 0);  // an interrupt from the terminal is for whoever started it
        posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~Setup() {
        posix_spawn_file_actions_destroy(&mFiles);
        posix_spawnattr_destroy(&mAttributes);
    }
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;

    [[nodiscard]] int Start(pid_t& id, const std::vector<std::string>& arguments) const {
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) {
            pointers.push_back(const_cast<char*>(argument.c_str()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
        }
        pointers.push_back(nullptr);
        return posix_spawn(&id, pointers.front(), &mFiles, &mAttributes, pointers.data(), Environment().data());
    }

private:
    posix_spawn_file_actions_t mFiles{};
    posix_spawnattr_t mAttributes{};
};

}  // namespace

SpawnedDecoder SpawnDecoder(const RecordingName& recording, const RecordingInput& input,
                            const DecoderSettings& settings) {
    auto [reading, writing] = MakePipe();
    const Descriptor messages = OutOfTheWay(writing.Number());
    SpawnedDecoder decoder;
    const int error =
        Setup(input.descriptor.Number(), messages.Number()).Start(decoder.id, Arguments(recording, input, settings));
    if (error != 0) {
        throw Error(
            fmt::format("cannot start {}: {}", settings.program.string(), std::generic_category().message(error)));
    }
    decoder.process = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, decoder.id, 0)));
    decoder.messages = std::move(reading);
    return decoder;
}

}  // namespace lineup
