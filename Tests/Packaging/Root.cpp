#include "Tests/Packaging/Root.h"

#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace test {

namespace {

void Require(bool done, const std::string& act) {
    if (!done) {
        throw std::runtime_error("cannot " + act + ": " + std::generic_category().message(errno));
    }
}

void Mount(const char* source, const fs::path& target, const char* type, unsigned long flags,
           const std::string& options) {
    Require(mount(source, target.c_str(), type, flags, options.c_str()) == 0, "mount " + target.string());
}

}  // namespace

Root::Root()
    : mScratch(fs::temp_directory_path() / ("lineup-root-" + std::to_string(getpid()))), mPath(mScratch / "root") {
    if (geteuid() != 0) {
        throw std::runtime_error("it takes the rights of root");
    }
    Require(unshare(CLONE_NEWNS) == 0, "have mounts of one's own");
    Mount("none", "/", nullptr, MS_REC | MS_PRIVATE, "");
    fs::create_directories(mScratch);
    Mount("tmpfs", mScratch, "tmpfs", 0, "mode=0755");
    for (const char* const folder : {"root", "written", "work"}) {
        fs::create_directories(mScratch / folder);
    }
    Mount("overlay", mPath, "overlay", 0,
          "lowerdir=/,upperdir=" + (mScratch / "written").string() + ",workdir=" + (mScratch / "work").string());
    for (const char* const folder : {"dev", "proc"}) {
        Mount(("/" + std::string(folder)).c_str(), mPath / folder, nullptr, MS_BIND | MS_REC, "");
    }
    Mount("tmpfs", mPath / "tmp", "tmpfs", 0, "mode=1777");
    fs::create_directories(mPath / "tmp/home");
    const fs::path project = mPath / fs::path(TEST_SOURCE_DIR).relative_path();
    if (fs::exists(project)) {
        Mount("tmpfs", project, "tmpfs", 0, "mode=0755");
    }
}

Root::~Root() {
    umount2(mScratch.c_str(), MNT_DETACH);
    std::error_code error;
    fs::remove(mScratch, error);
}

RunResult Root::Run(const std::string& commandLine) const {
    const std::string environment =
        "env -i HOME=/tmp/home LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive PATH=/usr/sbin:/usr/bin:/sbin:/bin ";
    WriteFile(mPath / "tmp/command", "cd /tmp/home\n" + commandLine + "\n");
    return RunProgram(environment + "chroot '" + mPath.string() + "' sh /tmp/command", mScratch);
}

}  // namespace test
