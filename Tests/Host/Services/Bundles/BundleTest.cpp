#include <lineup/services/Bundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using zelcore::Bundle;
using zelcore::BundleError;

std::string Plist(const std::string& root) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + root + "</plist>";
}

std::string Entry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

const std::string kIdentifierEntry = Entry("CFBundleIdentifier", "org.example.tone");

std::string GoodPlist() {
    return Plist("<dict>" + Entry("CFBundleExecutable", "Tone") + kIdentifierEntry +
                 Entry("CFBundleShortVersionString", "1.2") + "</dict>");
}

std::string BinaryPlist(const char* executable, const char* identifier) {
    plist_t root = plist_new_dict();
    plist_dict_set_item(root, "CFBundleExecutable", plist_new_string(executable));
    plist_dict_set_item(root, "CFBundleIdentifier", plist_new_string(identifier));
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    std::string text(bytes, length);
    std::free(bytes);  // libplist's own function has another name from 2.3 on
    plist_free(root);
    return text;
}

// A binary list whose value i is an array that holds value i + 1 `times` times, down to `depth`; the last is true.
std::string NestedPlist(std::uint32_t depth, std::size_t times) {
    const auto word = [](std::uint32_t value) {
        return std::string{static_cast<char>(value >> 24U), static_cast<char>(value >> 16U),
                           static_cast<char>(value >> 8U), static_cast<char>(value)};
    };
    std::string file = "bplist00";
    std::string table;
    for (std::uint32_t i = 0; i < depth; ++i) {
        table += word(static_cast<std::uint32_t>(file.size()));
        file += static_cast<char>(0xA0U | times);
        for (std::size_t j = 0; j < times; ++j) {
            file += word(i + 1);
        }
    }
    table += word(static_cast<std::uint32_t>(file.size()));
    file += '\x09';
    const auto tableAt = static_cast<std::uint32_t>(file.size());
    const std::string none(4, '\0');
    return file + table + std::string(6, '\0') + "\4\4" + none + word(depth + 1) + none + none + none + word(tableAt);
}

// A folder of this test alone, where it makes its bundle.
class BundleTest : public testing::Test {
protected:
    BundleTest() {
        std::string name = (fs::temp_directory_path() / "bundle-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("cannot make a folder for the test: " + name);
        }
        mFolder = name;
    }
    ~BundleTest() override { fs::remove_all(mFolder); }
    BundleTest(const BundleTest&) = delete;
    BundleTest& operator=(const BundleTest&) = delete;

    [[nodiscard]] fs::path Folder() const { return mFolder / "Tone.bundle"; }

    void Write(const fs::path& relative, const std::string& text) const {
        const fs::path file = Folder() / relative;
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    void WritePlist(const std::string& text) const { Write("Contents/Info.plist", text); }

    // Opening the bundle fails with an error that names its folder and says why.
    void ExpectRefused(const std::string& why) const {
        EXPECT_THAT([this] { Bundle bundle(Folder()); },
                    ThrowsMessage<BundleError>(AllOf(HasSubstr(Folder().string()), HasSubstr(why))));
    }

private:
    fs::path mFolder;
};

TEST_F(BundleTest, ReadsWhatTheInfoPlistSays) {
    WritePlist(GoodPlist());
    const Bundle bundle(Folder());
    EXPECT_EQ(bundle.Folder(), Folder());
    EXPECT_EQ(bundle.Identifier(), "org.example.tone");
    EXPECT_EQ(bundle.Version(), "1.2");
}

TEST_F(BundleTest, FindsTheExecutableForThisPlatform) {
    WritePlist(GoodPlist());
    const std::string relative = "Contents/" ZEL_PLATFORM_FOLDER "/Tone.so";
    Write(relative, "code");
    EXPECT_EQ(Bundle(Folder()).Executable(), Folder() / relative);
}

TEST_F(BundleTest, SaysWhichExecutableItMisses) {
    WritePlist(GoodPlist());
    Write("Contents/another-platform/Tone.so", "code");
    EXPECT_THAT([this] { static_cast<void>(Bundle(Folder()).Executable()); },
                ThrowsMessage<BundleError>(HasSubstr("Contents/" ZEL_PLATFORM_FOLDER "/Tone.so")));
}

TEST_F(BundleTest, TakesNoFolderForAnExecutable) {
    WritePlist(GoodPlist());
    fs::create_directories(Folder() / "Contents" / ZEL_PLATFORM_FOLDER / "Tone.so");
    EXPECT_THROW(static_cast<void>(Bundle(Folder()).Executable()), BundleError);
}

TEST_F(BundleTest, NeedsNoVersion) {
    WritePlist(Plist("<dict>" + Entry("CFBundleExecutable", "Tone") + kIdentifierEntry + "</dict>"));
    EXPECT_EQ(Bundle(Folder()).Version(), "");
}

TEST_F(BundleTest, ReadsABinaryInfoPlistAsWell) {
    WritePlist(BinaryPlist("Tone", "org.example.binary"));
    EXPECT_EQ(Bundle(Folder()).Identifier(), "org.example.binary");
}

TEST_F(BundleTest, RefusesAFolderThatIsNotThere) {
    ExpectRefused("no such folder");
}

TEST_F(BundleTest, RefusesAFile) {
    std::ofstream(Folder()) << "not a folder";
    ExpectRefused("it is not a folder");
}

TEST_F(BundleTest, RefusesAFolderWithoutAnInfoPlist) {
    fs::create_directories(Folder() / "Contents");
    ExpectRefused("it has no Contents/Info.plist");
}

TEST_F(BundleTest, RefusesAFolderInTheInfoPlistsPlace) {
    fs::create_directories(Folder() / "Contents" / "Info.plist");
    ExpectRefused("it has no Contents/Info.plist");
}

TEST_F(BundleTest, RefusesABrokenInfoPlist) {
    for (const std::string& text : {std::string(), std::string("no list"), GoodPlist().substr(0, 120),
                                    std::string("bplist00"), std::string("bplist00\xFF\xFF\xFF\xFF", 12)}) {
        WritePlist(text);
        ExpectRefused("it is not a property list with a dictionary");
    }
}

TEST_F(BundleTest, RefusesAnInfoPlistThatIsNoDictionary) {
    WritePlist(Plist("<array><string>CFBundleExecutable</string></array>"));
    ExpectRefused("it is not a property list with a dictionary");
    WritePlist(Plist("<string>CFBundleExecutable</string>"));
    ExpectRefused("it is not a property list with a dictionary");
}

TEST_F(BundleTest, RefusesAnInfoPlistThatNamesNoExecutable) {
    for (const std::string& entry : {std::string(), Entry("CFBundleExecutable", ""),
                                     std::string("<key>CFBundleExecutable</key><integer>1</integer>")}) {
        WritePlist(Plist("<dict>" + entry + kIdentifierEntry + "</dict>"));
        ExpectRefused("it has no string CFBundleExecutable");
    }
}

TEST_F(BundleTest, RefusesAnInfoPlistWithoutAnIdentifier) {
    WritePlist(Plist("<dict>" + Entry("CFBundleExecutable", "Tone") + "</dict>"));
    ExpectRefused("it has no string CFBundleIdentifier");
}

TEST_F(BundleTest, RefusesAnExecutableOutsideItsFolder) {
    for (const char* name : {"../Tone", "sub/Tone", "/Tone", "Tone/", "/"}) {
        WritePlist(Plist("<dict>" + Entry("CFBundleExecutable", name) + kIdentifierEntry + "</dict>"));
        ExpectRefused("\"" + std::string(name) + "\", which is not a plain file name");
    }
}

TEST_F(BundleTest, RefusesABinaryInfoPlistThatUnfoldsWithoutEnd) {
    WritePlist(NestedPlist(60, 2));  // 2^60 values in 800 bytes
    ExpectRefused("it holds more values, or lists deeper in one another, than any Info.plist does");
}

TEST_F(BundleTest, RefusesAnInfoPlistWhoseListsLieTooDeep) {
    WritePlist(NestedPlist(63, 1));
    ExpectRefused("it is not a property list with a dictionary");  // read, and the outermost is an array
    WritePlist(NestedPlist(64, 1));
    ExpectRefused("it holds more values, or lists deeper in one another, than any Info.plist does");
    WritePlist(NestedPlist(90'000, 1));
    ExpectRefused("it holds more values, or lists deeper in one another, than any Info.plist does");
    std::string text;
    for (int i = 0; i < 2001; ++i) {
        text += "<array>";
    }
    WritePlist(Plist(text));
    ExpectRefused("it holds more values, or lists deeper in one another, than any Info.plist does");
}

TEST_F(BundleTest, RefusesABinaryInfoPlistCutAnywhere) {
    const std::string sound = BinaryPlist("Tone", "org.example.binary");
    for (std::size_t size = 0; size < sound.size(); ++size) {
        WritePlist(sound.substr(0, size));
        ExpectRefused("Info.plist");
    }
}

// Blanks after the list: 1 MiB is still read, a byte more is not.
TEST_F(BundleTest, RefusesAnInfoPlistLargerThanOneMiB) {
    std::string text = GoodPlist();
    text.resize(1'048'576, ' ');
    WritePlist(text);
    EXPECT_EQ(Bundle(Folder()).Identifier(), "org.example.tone");
    WritePlist(text + ' ');
    ExpectRefused("it is larger than 1 MiB");
}

}  // namespace
