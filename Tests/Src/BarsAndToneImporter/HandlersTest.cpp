// The handlers called by name: each does what the entry point does for its selector.
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

using test::RequestRecord;

// `record` after the handler and after the entry point, from the same bytes; and that both answer `result`.
template <class Record, class Handler>
void ExpectTheSame(std::int32_t result, std::int32_t selector, RequestRecord record, Handler handler,
                   std::intptr_t index = 0) {
    RequestRecord requested = record;
    const bool isFirst = selector == 0;  // of the parameters
    EXPECT_EQ(handler(static_cast<Record*>(record.Data())), result) << "selector " << selector;
    EXPECT_EQ(test::Request(selector, isFirst ? requested.Data() : reinterpret_cast<void*>(index),
                            isFirst ? nullptr : requested.Data()),
              result);
    EXPECT_TRUE(std::ranges::equal(record.Bytes(), requested.Bytes())) << "selector " << selector;
}

TEST(Handlers, DoWhatTheEntryPointDoes) {
    const RequestRecord any(test::kFileFormatRecordSize);
    const RequestRecord zeros(test::kFileFormatRecordSize, {.filler = 0});
    ExpectTheSame<imImportInfoRec>(400, 0, any, barsInit);
    for (const std::intptr_t index : {0, 1, -1}) {
        const std::int32_t result = index == 0 ? 0 : 301;
        ExpectTheSame<imIndFormatRec>(
            result, 14, any, [index](auto* record) { return barsGetIndFormat(index, record); }, index);
        ExpectTheSame<imIndPixelFormatRec>(
            result, 27, any, [index](auto* record) { return barsGetIndexPixelFormat(index, record); }, index);
    }
    ExpectTheSame<imGetPrefsRec>(0, 38, zeros, barsGetPrefs);
    ExpectTheSame<imImportAudioRec7>(5, 25, zeros, barsImportAudio);
    ExpectTheSame<imPeakAudioRec>(5, 49, zeros, barsGetPeakAudio);
    ExpectTheSame<imImportImageRecEx>(3, 5, zeros, barsImportImage);
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

}  // namespace
