#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

using Plist = std::unique_ptr<void, decltype(&plist_free)>;

Plist ReadInfo() {
    std::ifstream stream(fs::path(TEST_BUNDLE) / "Contents" / "Info.plist", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    plist_t root = nullptr;
    plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &root);
    return {root, &plist_free};
}

// The string under `key`; empty when there is none.
std::string Value(const Plist& info, const char* key) {
    auto* const node = plist_dict_get_item(info.get(), key);
    const char* const text = node != nullptr ? plist_get_string_ptr(node, nullptr) : nullptr;
    return text != nullptr ? text : "";
}

TEST(InfoPlist, NamesTheExecutable) {
    const Plist info = ReadInfo();
    ASSERT_NE(info, nullptr) << "it is no property list";
    EXPECT_EQ(Value(info, "CFBundleExecutable") + ".so", fs::path(TEST_MODULE).filename());
}

TEST(InfoPlist, DescribesALoadableBundleOfThisVersion) {
    const Plist info = ReadInfo();
    ASSERT_NE(info, nullptr) << "it is no property list";
    EXPECT_EQ(Value(info, "CFBundlePackageType"), "BNDL");
    EXPECT_EQ(Value(info, "CFBundleShortVersionString"), TEST_VERSION);
    EXPECT_EQ(Value(info, "CFBundleVersion"), TEST_VERSION);
    EXPECT_NE(Value(info, "CFBundleIdentifier"), "");
}

}  // namespace
