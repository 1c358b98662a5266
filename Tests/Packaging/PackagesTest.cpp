// The Debian packages as files.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class DebianPackages : public test::InFolder {
protected:
    [[nodiscard]] static fs::path File(const std::string& package) {
        for (const auto& entry : fs::directory_iterator(TEST_PACKAGES)) {
            if (entry.path().filename().string().starts_with(package + "_") && entry.path().extension() == ".deb") {
                return entry.path();
            }
        }
        return fs::path(TEST_PACKAGES) / package;
    }
    [[nodiscard]] std::string Field(const std::string& package, const std::string& field) const {
        return Output("dpkg-deb -f '" + File(package).string() + "' " + field);
    }
    // What the package puts where, folders left out.
    [[nodiscard]] std::vector<std::string> Contents(const std::string& package) const {
        std::istringstream lines(Output("dpkg-deb --fsys-tarfile '" + File(package).string() + "' | tar -t"));
        std::vector<std::string> files;
        for (std::string line; std::getline(lines, line);) {
            if (!line.ends_with('/')) {
                files.push_back(line.substr(1));
            }
        }
        return files;
    }
};

const std::string kLibrary = "liblineup" TEST_SOVERSION;
const std::vector<std::string> kAll = {kLibrary,     "liblineup-dev",      "lineup", "lineup-plugin", "lineup-studio",
                                       "mlt-lineup", "gstreamer1.0-lineup"};

TEST_F(DebianPackages, AreAsDebianWantsThem) {
    const auto result =
        Run("lintian --allow-root --fail-on error,warning --pedantic --tag-display-limit 0 '" TEST_PACKAGES "'/*.deb");
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
}

TEST_F(DebianPackages, AreOfThisVersion) {
    for (const std::string& package : kAll) {
        EXPECT_EQ(Field(package, "Version"), TEST_BUILD_VERSION "\n") << package;
    }
}

// So that the same build makes the same packages.
TEST_F(DebianPackages, HoldFilesOfOneMomentThatIsTheVersions) {
    for (const std::string& package : kAll) {
        const std::string moments = Output("dpkg-deb --fsys-tarfile '" + File(package).string() +
                                           "' | TZ=UTC tar --full-time -tv | awk '{ print $4, $5 }' | sort -u");
        EXPECT_THAT(moments, testing::StartsWith(TEST_DATE " ")) << package;
        EXPECT_EQ(std::ranges::count(moments, '\n'), 1) << package << ": " << moments;
    }
}

TEST_F(DebianPackages, TakeTheLibraryOfTheSameVersion) {
    for (const std::string& package : kAll) {
        if (package != kLibrary) {
            EXPECT_THAT(Field(package, "Depends"), HasSubstr(kLibrary + " (= " TEST_BUILD_VERSION ")")) << package;
        }
    }
}

TEST_F(DebianPackages, TakeWhatTheirProgramsLinkTo) {
    EXPECT_THAT(Field(kLibrary, "Depends"), testing::AllOf(HasSubstr("libavformat"), HasSubstr("libplist")));
    EXPECT_THAT(Field("lineup-studio", "Depends"), HasSubstr("libqt6multimedia6"));
    EXPECT_THAT(Field("mlt-lineup", "Depends"), HasSubstr("libmlt7"));
    EXPECT_THAT(Field("gstreamer1.0-lineup", "Depends"), HasSubstr("libgstreamer-plugins-base1.0-0"));
    EXPECT_THAT(Field("lineup", "Depends"), testing::Not(HasSubstr("libqt6")));
}

// So that another package depends on the oldest version that has what it uses, and on this very one when it uses a
// part.
TEST_F(DebianPackages, SayOfEverySymbolOfTheLibrariesSinceWhenItIsThere) {
    const std::string symbols =
        Output("dpkg-deb --ctrl-tarfile '" + File(kLibrary).string() + "' | tar -xO ./symbols | c++filt");
    EXPECT_THAT(symbols, HasSubstr("\n lineup::Clip::Clip("));
    EXPECT_THAT(symbols, HasSubstr("\n| " + kLibrary + " (= " TEST_BUILD_VERSION ")\n"));
    EXPECT_THAT(symbols, testing::ContainsRegex("lineup::parts::[^\n]* 1\n"));
    EXPECT_THAT(symbols, HasSubstr("libzelcore.so." TEST_SOVERSION " " + kLibrary + " #MINVER#\n"));
}

TEST_F(DebianPackages, CanBeReadByEverybodyWhoeverMadeThem) {
    for (const std::string& package : kAll) {
        for (const std::string part : {"--fsys-tarfile", "--ctrl-tarfile"}) {
            std::istringstream kinds(Output("dpkg-deb " + part + " '" + File(package).string() +
                                            "' | tar -tv | awk '{ print $1, $2 }' | sort -u"));
            for (std::string kind; std::getline(kinds, kind);) {
                EXPECT_THAT(kind, testing::AnyOf("drwxr-xr-x root/root", "-rw-r--r-- root/root", "-rwxr-xr-x root/root",
                                                 "lrwxrwxrwx root/root"))
                    << package << " " << part;
            }
        }
    }
}

// So that programs that link to one version stay when another is installed.
TEST_F(DebianPackages, HaveTheVersionInTheNameOfEveryFileOfTheLibrary) {
    const std::vector<std::string> files = Contents(kLibrary);
    EXPECT_GT(files.size(), 5U);
    for (const std::string& file : files) {
        EXPECT_THAT(file, HasSubstr(TEST_SOVERSION));
    }
}

TEST_F(DebianPackages, HaveNoFileInCommon) {
    std::map<std::string, std::string> owners;
    for (const std::string& package : kAll) {
        for (const std::string& file : Contents(package)) {
            EXPECT_TRUE(owners.emplace(file, package).second) << file << ": " << owners[file] << " and " << package;
        }
    }
}

TEST_F(DebianPackages, HaveWhatBelongsToThem) {
    EXPECT_THAT(Contents("lineup"), testing::IsSupersetOf({"/usr/bin/lineup", "/usr/share/man/man1/lineup-render.1.gz",
                                                           "/usr/share/bash-completion/completions/lineup",
                                                           "/usr/share/zsh/vendor-completions/_lineup"}));
    EXPECT_THAT(Contents(kLibrary), Contains("/usr/" TEST_LIBDIR "/liblineup.so." TEST_VERSION));
    EXPECT_THAT(Contents(kLibrary), Contains("/usr/" TEST_LIBDIR "/lineup-" TEST_SOVERSION "/liblineup-media.so"));
    EXPECT_THAT(Contents(kLibrary), Contains("/usr/" TEST_LIBDIR "/lineup-" TEST_SOVERSION "/liblineup-check.so"));
    EXPECT_THAT(Contents(kLibrary), Contains("/usr/" TEST_LIBDIR "/lineup-" TEST_SOVERSION "/lineup-decode"));
    EXPECT_THAT(Contents("liblineup-dev"), Contains("/usr/include/lineup/Clip.h"));
    EXPECT_THAT(Contents("lineup-plugin"), Contains("/usr/lib/lineup/BarsAndTone.bundle/Contents/Info.plist"));
    EXPECT_THAT(Contents("lineup-studio"), Contains("/usr/bin/lineup-studio"));
    EXPECT_THAT(Contents("mlt-lineup"), Contains("/usr/share/mlt-7/lineup/producer_barsandtone.yml"));
    EXPECT_THAT(Contents("gstreamer1.0-lineup"), Contains("/usr/" TEST_LIBDIR "/gstreamer-1.0/libgstlineup.so"));
}

}  // namespace
