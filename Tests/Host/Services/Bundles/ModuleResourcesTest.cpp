#include "Host/Interface/Core/ModuleResources.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>

using zelcore::utility::ByteVector;

namespace {

constexpr std::size_t kMebibyte = 1U << 20U;

}  // namespace

class ModuleResources : public testing::Test {
protected:
    bool Read(const Brio::String& name, const Brio::String& type) {
        bytes.assign(3, 0xEE);
        return zelcore::utility::GetBinaryFromModule(CFBundleGetBundleWithIdentifier("org.barsandtone.importer"), name,
                                                     type, bytes);
    }

    // That nothing is read, and nothing left of what the vector held.
    void ExpectNothing(const Brio::String& name, const Brio::String& type) {
        EXPECT_FALSE(Read(name, type));
        EXPECT_TRUE(bytes.empty());
    }

    test::LoadedBundleCopy bundle;
    ByteVector bytes;
};

TEST_F(ModuleResources, AreReadByteForByte) {
    bundle.AddResource("Layout.tarn", std::string("\0\r\n\x1A\xFF\x80", 6));
    ASSERT_TRUE(Read(u"Layout", u"tarn"));
    EXPECT_EQ(bytes, (ByteVector{0x00, 0x0D, 0x0A, 0x1A, 0xFF, 0x80}));
}

TEST_F(ModuleResources, MayHaveNamesOutsideAsciiAndDots) {
    bundle.AddResource(
        "\xC3\x9C"
        "bung.2.tarn",
        "x");
    EXPECT_TRUE(
        Read(u"\u00DC"
             u"bung.2",
             u"tarn"));
    EXPECT_TRUE(
        Read(u"\u00DC"
             u"bung",
             u"2.tarn"));
}

TEST_F(ModuleResources, MayBeEmpty) {
    bundle.AddResource("Empty.tarn", "");
    EXPECT_TRUE(Read(u"Empty", u"tarn"));
    EXPECT_TRUE(bytes.empty());
}

TEST_F(ModuleResources, AreReadUpToAMebibyte) {
    bundle.AddResource("Large.tarn", std::string(kMebibyte, 'x'));
    EXPECT_TRUE(Read(u"Large", u"tarn"));
    EXPECT_EQ(bytes.size(), kMebibyte);
    bundle.AddResource("Large.tarn", std::string(kMebibyte + 1, 'x'));
    ExpectNothing(u"Large", u"tarn");
}

TEST_F(ModuleResources, ThatAreNotThereAreNotRead) {
    ExpectNothing(u"Missing", u"tarn");
    bundle.AddResource("Layout.tarn", "x");
    ExpectNothing(u"Layout", u"TARN");
    ExpectNothing(u"layout", u"tarn");
}

TEST_F(ModuleResources, ThatAreNoFilesAreNotRead) {
    bundle.AddResource("Other.tarn", "x");
    const auto resources = bundle.Folder() / "Contents" / "Resources";
    std::filesystem::create_directory(resources / "Folder.tarn");
    ExpectNothing(u"Folder", u"tarn");
    ASSERT_EQ(mkfifo((resources / "Pipe.tarn").c_str(), 0600), 0);
    ExpectNothing(u"Pipe", u"tarn");
}

TEST_F(ModuleResources, OutsideTheFolderAreNotRead) {
    bundle.AddResource("../Secret.tarn", "x");
    bundle.AddResource("Sub/Layout.tarn", "x");
    ExpectNothing(u"../Secret", u"tarn");
    ExpectNothing(u"Sub/Layout", u"tarn");
    ExpectNothing(u"..", u"/Secret.tarn");
    const std::string absolute = (bundle.Folder() / "Contents" / "Secret").string();
    ExpectNothing(Brio::String(absolute.begin(), absolute.end()), u"tarn");
}

TEST_F(ModuleResources, WithNamesThatNoFileHasAreNotRead) {
    bundle.AddResource("A.tarn", "x");
    bundle.AddResource(".tarn", "x");
    ExpectNothing(u"", u"tarn");
    ExpectNothing(u"A", u"");
    ExpectNothing(Brio::String(u"A.tarn\0", 7), u"tarn");
    ExpectNothing(Brio::String(1, char16_t{0xD800}), u"tarn");  // half a pair
}

TEST(ModuleResourcesOfNoBundle, AreNotRead) {
    ByteVector bytes(3, 0xEE);
    EXPECT_FALSE(zelcore::utility::GetBinaryFromModule(nullptr, u"Layout", u"tarn", bytes));
    EXPECT_TRUE(bytes.empty());
}
