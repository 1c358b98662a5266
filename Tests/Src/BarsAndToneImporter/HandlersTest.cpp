// The handlers called by name: each does what the entry point does for its selector.
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/Importer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

using test::RequestRecord;
using testing::IsEmpty;

TEST(Handlers, InitSetsTheCapabilities) {
    RequestRecord info(test::kInitRecordSize);
    EXPECT_EQ(barsInit(static_cast<imImportInfoRec*>(info.Data())), 400);
    for (const std::size_t offset : {28U, 32U, 36U, 44U}) {
        EXPECT_EQ(info.Get<std::uint32_t>(offset), 1U) << "offset " << offset;
    }
    EXPECT_THAT(info.ChangedBytesOutside({{28, 12}, {44, 4}}), IsEmpty());
}

TEST(Handlers, FileFormatsEndAfterTheFirst) {
    RequestRecord format(test::kFileFormatRecordSize);
    auto* const record = static_cast<imIndFormatRec*>(format.Data());
    EXPECT_EQ(barsGetIndFormat(1, record), 301);
    EXPECT_TRUE(format.Untouched());
    EXPECT_EQ(barsGetIndFormat(0, record), 0);
    EXPECT_EQ(format.Get<std::uint32_t>(0), kBarsAndToneFileType);
    EXPECT_THAT(format.ChangedBytesOutside({{0, 4}, {12, 1}, {268, 1}, {300, 256}}), IsEmpty());
}

TEST(Handlers, PixelFormatsEndAfterTheFirst) {
    RequestRecord format(test::kPixelFormatRecordSize);
    auto* const record = static_cast<imIndPixelFormatRec*>(format.Data());
    EXPECT_EQ(barsGetIndexPixelFormat(-1, record), 301);
    EXPECT_TRUE(format.Untouched());
    EXPECT_EQ(barsGetIndexPixelFormat(0, record), 0);
    EXPECT_EQ(format.Get<std::uint32_t>(8), 0x37785556U);
    EXPECT_THAT(format.ChangedBytesOutside({{8, 4}}), IsEmpty());
}

TEST(Handlers, InfoMakesACopyThatReleaseTakesBack) {
    RequestRecord info(test::kInfoRecordSize);
    info.Put(178, 48000.0F).Put<void*>(206, nullptr);
    EXPECT_EQ(barsGetInfo(static_cast<imFileInfoRec8*>(info.Data())), 0);
    const BarsAndToneInfo defaults;
    EXPECT_EQ(std::memcmp(info.Get<void*>(198), &defaults, sizeof defaults), 0);
    EXPECT_EQ(barsReleasePrivateData(info.Get<void*>(198)), 0);
    EXPECT_EQ(barsReleasePrivateData(nullptr), 0);
}

TEST(Handlers, TheSettingsRequestIsAlwaysServed) {
    RequestRecord request(test::kPrefsRecordSize);
    request.Put<void*>(0, nullptr);
    EXPECT_EQ(barsGetPrefs(static_cast<imGetPrefsRec*>(request.Data())), 0);
    EXPECT_EQ(request.Get<std::uint32_t>(8), 32U);
}

TEST(Handlers, AudioAndPeaksNeedSettings) {
    RequestRecord audio(test::kAudioRecordSize, {.filler = 0});
    EXPECT_EQ(barsImportAudio(static_cast<imImportAudioRec7*>(audio.Data())), 5);
    RequestRecord peaks(test::kPeakRecordSize, {.filler = 0});
    EXPECT_EQ(barsGetPeakAudio(static_cast<imPeakAudioRec*>(peaks.Data())), 5);
}

TEST(Handlers, AFrameInAnotherFormatIsRefused) {
    RequestRecord image(test::kImageRecordSize, {.filler = 0});
    EXPECT_EQ(barsImportImage(static_cast<imImportImageRecEx*>(image.Data())), 3);
}

}  // namespace
