#include "Tests/Support/Deprivation.h"

#include <fstream>
#include <initializer_list>
#include <linux/capability.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

namespace {

// A name space of its own needs rights, which a user name space gives to anyone where it is allowed.
bool LeaveTheMountTable() {
    if (geteuid() == 0 && unshare(CLONE_NEWNS) == 0) {
        return true;
    }
    const std::string map = "0 " + std::to_string(geteuid()) + " 1";
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    return static_cast<bool>(std::ofstream("/proc/self/uid_map") << map << std::flush);
}

}  // namespace

bool LoseTheSuperusersRights() {
    if (geteuid() != 0) {
        return true;
    }
    // A super-user's program gets what is left of the bounding set.
    for (const int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER}) {
        if (prctl(PR_CAPBSET_DROP, right, 0, 0, 0) != 0) {
            return false;
        }
    }
    return true;
}

bool LimitFileSize(unsigned long bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

bool MountSmallDisk(const std::filesystem::path& folder, unsigned long bytes) {
    const std::string options = "size=" + std::to_string(bytes);
    return LeaveTheMountTable() && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("small", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool CanMountDisks(const std::filesystem::path& folder) {
    constexpr unsigned long kSomeBytes = 65536;
    const pid_t child = fork();
    if (child == 0) {
        _exit(MountSmallDisk(folder, kSomeBytes) ? 0 : 1);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace test
