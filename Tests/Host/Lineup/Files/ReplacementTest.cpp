#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace {

using test::ReadBytes;
using test::SmallExport;
using test::TemporaryFolder;
using testing::ElementsAre;

const std::vector<std::uint8_t> kOld = {'o', 'l', 'd'};

// Files of this process cannot grow past `bytes` while this lives; writing more fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : mOldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &mOld);
        const rlimit limited{bytes, mOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &mOld);
        std::signal(SIGXFSZ, mOldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit mOld{};
    void (*mOldHandler)(int);
};

TEST(Export, RefusesAnExistingTargetBeforeAnyWork) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "a.mov", "old");
    int calls = 0;
    const auto count = [&calls](std::int64_t, std::int64_t) { return ++calls > 0; };
    EXPECT_THROW(Export(test::OpenClip(), SmallExport(folder / "a.mov", 2), count), lineup::UsageError);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(ReadBytes(folder / "a.mov"), kOld);
}

TEST(Export, ReplacesAnExistingTargetWhenToldSo) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "a.mov", "old");
    auto settings = SmallExport(folder / "a.mov", 2);
    settings.overwrite = true;
    const auto report = Export(test::OpenClip(), settings);
    EXPECT_EQ(report.bytes, std::filesystem::file_size(settings.target));
    EXPECT_GT(report.bytes, 1000U);
    EXPECT_THAT(folder.Names(), ElementsAre("a.mov"));
}

TEST(Export, ReportsItsProgressFrameByFrame) {
    const TemporaryFolder folder;
    std::vector<std::pair<std::int64_t, std::int64_t>> steps;
    Export(test::OpenClip(), SmallExport(folder / "a.mov", 3), [&](std::int64_t done, std::int64_t total) {
        steps.emplace_back(done, total);
        return true;
    });
    EXPECT_THAT(steps, ElementsAre(std::pair(0, 3), std::pair(1, 3), std::pair(2, 3), std::pair(3, 3)));
}

TEST(Export, LeavesNothingWhenItIsCancelled) {
    const TemporaryFolder folder;
    const auto stopAfterOne = [](std::int64_t done, std::int64_t) { return done < 1; };
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.mxf", "a.wav"}) {
        EXPECT_THROW(Export(test::OpenClip(), SmallExport(folder / name, 10), stopAfterOne), lineup::Cancelled) << name;
    }
    const auto stopAtOnce = [](std::int64_t, std::int64_t) { return false; };
    EXPECT_THROW(Export(test::OpenClip(), SmallExport(folder / "a.png", 1), stopAtOnce), lineup::Cancelled);
    EXPECT_THAT(folder.Names(), ElementsAre());
}

TEST(Export, LeavesTheOldFileWhenItIsCancelled) {
    const TemporaryFolder folder;
    test::WriteFile(folder / "a.mov", "old");
    auto settings = SmallExport(folder / "a.mov", 2);
    settings.overwrite = true;
    EXPECT_THROW(Export(test::OpenClip(), settings, [](auto, auto) { return false; }), lineup::Cancelled);
    EXPECT_EQ(ReadBytes(folder / "a.mov"), kOld);
}

TEST(Export, LetsTheProgressFunctionsExceptionThroughAndLeavesNothing) {
    const TemporaryFolder folder;
    const auto fail = [](std::int64_t, std::int64_t) -> bool { throw std::logic_error("mine"); };
    EXPECT_THROW(Export(test::OpenClip(), SmallExport(folder / "a.mov", 2), fail), std::logic_error);
    EXPECT_THAT(folder.Names(), ElementsAre());
}

// What goes wrong when no more than `bytes` can be written; checks that nothing is left of the file.
std::string CauseOfFailure(const std::filesystem::path& target, rlim_t bytes) {
    const lineup::Clip clip = test::OpenClip(6);
    std::string cause = "none";
    {
        const FileSizeLimit limit(bytes);
        try {
            Export(clip, SmallExport(target, 20));
        } catch (const lineup::Error& error) {
            cause = error.what();
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(target.parent_path()));
    return cause;
}

TEST(Export, SaysWhyAFileCannotBeWrittenAndLeavesNothing) {
    const TemporaryFolder folder;
    for (const char* name : {"a.mov", "a.mkv", "a.mp4", "a.mxf", "a.wav", "a.png"}) {
        const auto target = folder / name;
        EXPECT_EQ(CauseOfFailure(target, 100), "cannot write " + target.string() + ": File too large") << name;
    }
}

TEST(Export, SaysWhyAFileCannotBeWrittenToItsEndAndLeavesNothing) {
    const TemporaryFolder folder;
    for (const char* name : {"a.mov", "a.mxf"}) {
        const auto target = folder / name;
        EXPECT_EQ(CauseOfFailure(target, 300000), "cannot write " + target.string() + ": File too large") << name;
    }
}

}  // namespace
