#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

// The kernel's interface of Landlock, newer than some systems' headers. All numbers are those of its documentation.
struct Ruleset {
    std::uint64_t files;
    std::uint64_t network;  // since the 4th
};
struct [[gnu::packed]] PathRule {
    std::uint64_t allowed;
    std::int32_t parent;
};
constexpr int kPathRule = 1;
constexpr unsigned kAskForVersion = 1;
constexpr std::uint64_t kReadFile = 1U << 2;
constexpr std::uint64_t kReadFolder = 1U << 3;
constexpr std::uint64_t kAllFirst = (1U << 13) - 1;  // everything of the 1st version
constexpr std::uint64_t kRefer = 1U << 13;           // since the 2nd
constexpr std::uint64_t kTruncate = 1U << 14;        // since the 3rd
constexpr std::uint64_t kDevices = 1U << 15;         // since the 5th
constexpr std::uint64_t kBindAndConnect = 3;
constexpr int kFirstWithNetwork = 4;

// What a program asks the system about names of hosts, certificates and its own libraries.
constexpr std::array kSystemFolders = {"/etc", "/usr", "/lib", "/lib64", "/run/systemd/resolve", "/dev/urandom"};

Ruleset Everything(long version, InputKind kind) {
    Ruleset rules{.files = kAllFirst, .network = kind == InputKind::Url ? 0 : kBindAndConnect};
    rules.files |= version >= 2 ? kRefer : 0;
    rules.files |= version >= 3 ? kTruncate : 0;
    rules.files |= version >= 5 ? kDevices : 0;
    return rules;
}

void AllowReading(int ruleset, const char* path) {
    const int parent = open(path, O_PATH | O_CLOEXEC);
    if (parent < 0) {
        return;
    }
    struct stat facts {};
    const bool isFolder = fstat(parent, &facts) == 0 && S_ISDIR(facts.st_mode);
    const PathRule rule{.allowed = isFolder ? kReadFile | kReadFolder : kReadFile, .parent = parent};
    syscall(SYS_landlock_add_rule, ruleset, kPathRule, &rule, 0);
    close(parent);
}

}  // namespace

bool GiveUpFiles(InputKind kind) {
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskForVersion);
    if (version < 1) {
        return false;
    }
    const Ruleset rules = Everything(version, kind);
    const std::size_t size = version >= kFirstWithNetwork ? sizeof rules : sizeof rules.files;
    const auto ruleset = static_cast<int>(syscall(SYS_landlock_create_ruleset, &rules, size, 0));
    if (ruleset < 0) {
        return false;
    }
    if (kind == InputKind::Url) {
        for (const char* const folder : kSystemFolders) {
            AllowReading(ruleset, folder);
        }
    }
    const bool isGivenUp = syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    close(ruleset);
    return isGivenUp;
}

}  // namespace lineup::decoding
