#include "Host/Lineup/Plugin/PlaceTrust.h"

#include <lineup/Error.h>

#include <fmt/format.h>

#include <cerrno>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace lineup {
inline namespace parts {

namespace {

constexpr int kMostEntries = 10'000;  // many times what a bundle holds

[[noreturn]] void Refuse(const fs::path& path, const std::string& cause) {
    throw Error(fmt::format("{} {}", path.string(), cause));
}

struct stat Status(const fs::path& path, bool ofLink) {
    struct stat status {};
    if ((ofLink ? lstat(path.c_str(), &status) : stat(path.c_str(), &status)) != 0) {
        Refuse(path, "cannot be looked at: " + std::generic_category().message(errno));
    }
    return status;
}

// The program's own file is there and running; without it in sight only its user and root are left.
uid_t OwnerOfProgram() {
    struct stat status {};
    return stat("/proc/self/exe", &status) == 0 ? status.st_uid : geteuid();
}

void RequireOwner(const fs::path& path, uid_t owner) {
    if (owner != 0 && owner != geteuid() && owner != OwnerOfProgram()) {
        Refuse(path, fmt::format("belongs to user {}, who is neither you nor the owner of this program", owner));
    }
}

// Where a link leads, nobody may be able to put something else.
void RequireSteadyTarget(const fs::path& link) {
    std::error_code error;
    const fs::path target = fs::canonical(link, error);
    if (error) {
        Refuse(link, "leads nowhere: " + error.message());
    }
    for (fs::path folder = target.parent_path();; folder = folder.parent_path()) {
        const auto mode = Status(folder, false).st_mode;
        if ((mode & S_IWOTH) != 0 && (mode & S_ISVTX) == 0) {
            Refuse(link, fmt::format("leads to {}, and everybody can write to {}", target.string(), folder.string()));
        }
        if (folder == folder.root_path()) {
            break;
        }
    }
}

void RequireTrustedEntry(const fs::path& path) {
    auto status = Status(path, true);
    if (S_ISLNK(status.st_mode)) {
        RequireOwner(path, status.st_uid);
        RequireSteadyTarget(path);
        status = Status(path, false);
    }
    RequireOwner(path, status.st_uid);
    if ((status.st_mode & S_IWOTH) != 0) {
        Refuse(path, "can be written to by everybody");
    }
}

void RequireTrustedContents(const fs::path& folder) {
    std::error_code error;
    int entries = 0;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (++entries > kMostEntries) {
            Refuse(folder, fmt::format("holds more than {} files", kMostEntries));
        }
        RequireTrustedEntry(entry->path());
        // What such a folder holds would not be looked at.
        if (entry->is_symlink(error) && entry->is_directory(error)) {
            Refuse(entry->path(), "is a link to a folder");
        }
    }
    if (error) {
        Refuse(folder, "cannot be looked at: " + error.message());
    }
}

}  // namespace

void RequireTrusted(const fs::path& prefix, const fs::path& place) {
    fs::path path = prefix;
    RequireTrustedEntry(path);
    for (const fs::path& name : place.lexically_relative(prefix)) {
        path /= name;
        RequireTrustedEntry(path);
    }
    std::error_code error;
    if (fs::is_directory(place, error)) {
        RequireTrustedContents(place);
    }
}

}  // namespace parts
}  // namespace lineup
