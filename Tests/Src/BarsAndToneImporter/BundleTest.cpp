#include "Tests/Support/BundledImporter.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

TEST(Bundle, LoadsWithoutHelpFromTheProgram) {
    EXPECT_NE(test::BundledModule(), nullptr);
}

TEST(Bundle, OffersItsEntryPoint) {
    EXPECT_NE(dlsym(test::BundledModule(), "xImportEntry"), nullptr);
}

TEST(Bundle, KeepsItsHandlersAndPrimitivesToItself) {
    for (const char* const name : {"barsInit", "_Z8barsInitP15imImportInfoRec", "ippsCopy_32f", "ippsZero_32f",
                                   "ippsMulC_32f", "NTSCYuvTable", "HDYuvTable"}) {
        EXPECT_EQ(dlsym(test::BundledModule(), name), nullptr) << name;
    }
}

}  // namespace
