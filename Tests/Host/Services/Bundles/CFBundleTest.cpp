#include <lineup/services/Bundle.h>
#include "Host/Interface/Platform/CFBundle.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr const char* kIdentifier = "org.barsandtone.importer";
constexpr const char* kEchoIdentifier = "org.barsandtone.test.EchoImporter";

}  // namespace

TEST(CFBundle, IsFoundWhileItsExecutableIsLoadedByAPlainDlopen) {
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(kEchoIdentifier), nullptr);
    const auto executable = zelcore::Bundle(TEST_BUNDLES "/EchoImporter.bundle").Executable();
    void* const module = dlopen(executable.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    EXPECT_NE(CFBundleGetBundleWithIdentifier(kEchoIdentifier), nullptr);
    dlclose(module);
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(kEchoIdentifier), nullptr);
}

TEST(CFBundle, KeepsItsReferenceAcrossUnloading) {
    const auto executable = zelcore::Bundle(TEST_BUNDLES "/EchoImporter.bundle").Executable();
    CFBundleRef first = nullptr;
    for (int i = 0; i < 2; ++i) {
        void* const module = dlopen(executable.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        CFBundleRef found = CFBundleGetBundleWithIdentifier(kEchoIdentifier);
        ASSERT_NE(found, nullptr);
        EXPECT_TRUE(first == nullptr || found == first);
        first = found;
        dlclose(module);
    }
}

TEST(CFBundle, IsTheOneWithTheWholeIdentifier) {
    const test::LoadedBundleCopy bundle;
    EXPECT_NE(CFBundleGetBundleWithIdentifier(kIdentifier), nullptr);
    for (const char* const other : {"", "org.barsandtone", "org.barsandtone.importer.x", "ORG.BARSANDTONE.IMPORTER"}) {
        EXPECT_EQ(CFBundleGetBundleWithIdentifier(other), nullptr) << other;
    }
}

TEST(CFBundle, IsTheOneLoadedFirstAmongCopies) {
    const test::LoadedBundleCopy first;
    CFBundleRef found = CFBundleGetBundleWithIdentifier(kIdentifier);
    const test::LoadedBundleCopy second;
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(kIdentifier), found);
}

TEST(CFBundle, IsNoneWithoutAReadableInfoPlist) {
    const test::LoadedBundleCopy bundle;
    const auto plist = bundle.Folder() / "Contents" / "Info.plist";
    test::WriteFile(plist, "no property list");
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(kIdentifier), nullptr);
}
