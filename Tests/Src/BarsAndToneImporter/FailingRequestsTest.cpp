// Requests for sound, frames and descriptions while services of the host fail at every call in turn.
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/FailingHost/FaultPlan.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using test::FaultPlan;
using test::GuardedChannels;
using test::Way;

constexpr std::size_t kSamples = 3000;

// Makes `request` with the first call of `service` failing, then the second, and so on until none fails any
// more; `check` after each. Returns how many calls there are.
template <class Request, class Check>
int FailEveryCall(const char* service, Way way, Request request, Check check) {
    for (int failing = 1;; ++failing) {
        SCOPED_TRACE(std::string(service) + ", call " + std::to_string(failing));
        const std::ptrdiff_t blocks = test::BlocksTaken();
        const std::ptrdiff_t smallBlocks = test::SmallBlocksTaken();
        bool threw = false;
        bool struck = false;
        {
            const FaultPlan plan(service, way, failing);
            try {
                request();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            struck = plan.HasStruck();
        }
        EXPECT_EQ(test::BlocksTaken(), blocks);
        EXPECT_EQ(test::SmallBlocksTaken(), smallBlocks);
        check();
        if (!struck || testing::Test::HasFailure()) {
            EXPECT_FALSE(threw);
            return failing - 1;
        }
        const bool passesOn = way == Way::Throws || std::strcmp(service, "Allocate") == 0;
        EXPECT_EQ(threw, passesOn);
    }
}

TEST(FailingHostInSound, LeavesNothingBehindAtWhicheverAllocationItFails) {
    for (const IdentifierFormat format : {EBUStereo1000, EBUStereo400, EBUMultichannel, BLITS5_1}) {
        BarsAndToneInfo settings{.numChannels = 6, .identifyChannels = 1, .identifierFormat = format};
        GuardedChannels audio(6, kSamples);
        GuardedChannels minima(6, kSamples);
        imImportAudioRec7 request{};
        request.position = 143000;
        request.count = kSamples;
        request.buffers = audio.Pointers();
        request.prefs = &settings;
        imPeakAudioRec peaks{};
        peaks.position = -500;
        peaks.peakRate = 480.0F;
        peaks.count = kSamples;
        peaks.maxima = audio.Pointers();
        peaks.minima = minima.Pointers();
        peaks.prefs = &settings;
        const auto check = [&] { EXPECT_TRUE(audio.GuardsIntact() && minima.GuardsIntact()); };
        for (const char* const service : {"Allocate", "operator new"}) {
            for (const Way way : {Way::Throws, Way::Nothing}) {
                FailEveryCall(
                    service, service[0] == 'A' ? way : Way::Throws, [&] { barsImportAudio(&request); }, check);
                FailEveryCall(
                    service, service[0] == 'A' ? way : Way::Throws, [&] { barsGetPeakAudio(&peaks); }, check);
            }
        }
    }
}

TEST(FailingHostInFrames, PassesTheErrorOnAtWhicheverCallItFails) {
    for (const std::uint32_t format : {kPixelFormat_VUYA_32f, kPixelFormat_VUYA_8u}) {
        lineup::validation::GuardedFrame frame({.width = 48, .height = 27, .pixelFormat = format});
        imImportImageRecEx request{};
        request.width = 48;
        request.height = 27;
        request.pixelFormat = format;
        request.frame = frame.Handle();
        const auto draw = [&] { barsImportImage(&request); };
        const auto check = [&] { EXPECT_EQ(frame.WrittenOutside(), ""); };
        const int fills = FailEveryCall("IR_FillWithColor", Way::Throws, draw, check);
        EXPECT_GT(fills, 20);
        EXPECT_EQ(FailEveryCall("vexelGetRowbytes", Way::Throws, draw, check), 2 * fills);
        EXPECT_EQ(FailEveryCall("IR_FillWithColor", Way::Nothing, draw, check), fills);
    }
}

TEST(FailingHostInDescriptions, WritesNothingWithoutMemoryForThePrivateCopy) {
    imFileInfoRec8 record;
    std::memset(&record, 0xCC, sizeof record);
    record.prefs = nullptr;
    const imFileInfoRec8 before = record;
    const FaultPlan plan("operator new", Way::Throws, 1);
    EXPECT_THROW(barsGetInfo(&record), test::HostFailure);
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
}

}  // namespace
