#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace {

using test::Placement;
using test::Request;
using test::RequestRecord;

constexpr std::int64_t kNoDuration = std::numeric_limits<std::int64_t>::min();  // of a rate that does not fit

// A GetInfo request and its answer; gives the private copy back.
class ClipDescription {
public:
    explicit ClipDescription(const void* prefs, float hostRateHz = 0.0F, Placement placement = {})
        : mRecord(test::kInfoRecordSize, placement) {
        mRecord.Put(178, hostRateHz).Put(206, prefs);
        mResult = Request(37, nullptr, mRecord.Data());
    }
    ~ClipDescription() { EXPECT_EQ(Request(9, nullptr, PrivateData()), 0); }
    ClipDescription(const ClipDescription&) = delete;
    ClipDescription& operator=(const ClipDescription&) = delete;

    [[nodiscard]] std::int32_t Result() const { return mResult; }
    [[nodiscard]] const RequestRecord& Record() const { return mRecord; }
    [[nodiscard]] std::uint32_t NumChannels() const { return mRecord.Get<std::uint32_t>(174); }
    [[nodiscard]] float RateHz() const { return mRecord.Get<float>(178); }
    [[nodiscard]] std::int64_t DurationSamples() const { return mRecord.Get<std::int64_t>(186); }
    [[nodiscard]] void* PrivateData() const { return mRecord.Get<void*>(198); }
    [[nodiscard]] BarsAndToneInfo PrivateCopy() const {
        BarsAndToneInfo copy;
        std::memcpy(&copy, PrivateData(), sizeof copy);
        return copy;
    }

private:
    RequestRecord mRecord;
    std::int32_t mResult = -1;
};

bool SameBytes(const BarsAndToneInfo& a, const BarsAndToneInfo& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

class ClipDescriptionRecord : public testing::TestWithParam<Placement> {};
INSTANTIATE_TEST_SUITE_P(Placements, ClipDescriptionRecord, testing::ValuesIn(test::kPlacements));

TEST_P(ClipDescriptionRecord, HoldsTheClipInItsFieldsAndNoOtherByte) {
    const BarsAndToneInfo settings{.sampleRate = 96000.0F, .numChannels = 6};
    const ClipDescription clip(&settings, 44100.0F, GetParam());
    const RequestRecord& record = clip.Record();
    EXPECT_EQ(clip.Result(), 0);
    EXPECT_EQ(record.Get<std::uint8_t>(0), 1U);
    EXPECT_EQ(record.Get<std::uint8_t>(1), 1U);
    EXPECT_EQ(record.Get<std::uint16_t>(12), 24U);
    EXPECT_EQ(record.Get<std::uint8_t>(22), 5U);
    EXPECT_EQ(record.Get<std::uint8_t>(31), 1U);
    EXPECT_EQ(record.Get<std::uint8_t>(32), 2U);
    EXPECT_EQ(record.Get<std::uint32_t>(174), 6U);
    EXPECT_EQ(record.Get<float>(178), 96000.0F);
    EXPECT_EQ(record.Get<std::uint32_t>(182), 6U);
    EXPECT_EQ(record.Get<std::int64_t>(186), 480000);  // 5 s at 96000 Hz
    EXPECT_NE(record.Get<void*>(198), nullptr);
    EXPECT_EQ(record.Get<const void*>(206), &settings);
    EXPECT_EQ(
        record.ChangedOutside({{0, 2}, {12, 2}, {22, 1}, {31, 2}, {174, 4}, {178, 4}, {182, 4}, {186, 8}, {198, 8}}),
        "");
}

TEST_P(ClipDescriptionRecord, WithoutSettingsIsStereoAtTheHostsRate) {
    const ClipDescription clip(nullptr, 44100.0F, GetParam());
    EXPECT_EQ(clip.Result(), 0);
    EXPECT_EQ(clip.NumChannels(), 2U);
    EXPECT_EQ(clip.RateHz(), 44100.0F);
    EXPECT_EQ(clip.DurationSamples(), 220500);  // 5 s at 44100 Hz
    EXPECT_EQ(clip.Record().ChangedOutside({{0, 2}, {12, 2}, {22, 1}, {31, 2}, {174, 4}, {182, 4}, {186, 8}, {198, 8}}),
              "");
}

TEST_P(ClipDescriptionRecord, MayPointAtSettingsAtAnyAddress) {
    RequestRecord settings(sizeof(BarsAndToneInfo), GetParam());
    settings.Put(0, BarsAndToneInfo{.sampleRate = 32000.0F, .numChannels = 1});
    const ClipDescription clip(settings.Data());
    EXPECT_EQ(clip.NumChannels(), 1U);
    EXPECT_EQ(clip.RateHz(), 32000.0F);
    EXPECT_TRUE(settings.IsUntouched());
}

TEST(ClipDescription, WithoutSettingsMakesThemFromTheDefaultsAndTheHostsRate) {
    const ClipDescription clip(nullptr, 44100.0F);
    const BarsAndToneInfo expected{.version = 1,
                                   .sampleRate = 44100.0F,
                                   .channelType = 2,
                                   .numChannels = 2,
                                   .identifyChannels = 0,
                                   .frequency = 1000.0F,
                                   .amplitude = 0.25F,
                                   .identifierFormat = EBUStereo1000};
    EXPECT_TRUE(SameBytes(clip.PrivateCopy(), expected));
}

TEST(ClipDescription, DerivesTheChannelTypeFromTheChannelCount) {
    // Counts a dialog cannot make keep their number and count as mono.
    const std::pair<std::uint32_t, std::uint32_t> kCountsAndTypes[] = {{0, 1}, {1, 1}, {2, 2}, {3, 1},         {4, 1},
                                                                       {5, 1}, {6, 3}, {7, 1}, {0xFFFFFFFF, 1}};
    for (const auto& [count, type] : kCountsAndTypes) {
        for (const std::uint32_t storedType : {0U, 1U, 2U, 3U, 99U}) {
            const BarsAndToneInfo settings{.channelType = storedType, .numChannels = count};
            const ClipDescription clip(&settings);
            EXPECT_EQ(clip.PrivateCopy().channelType, type) << count << " channels stored as " << storedType;
            EXPECT_EQ(clip.PrivateCopy().numChannels, count);
            EXPECT_EQ(clip.NumChannels(), count);
        }
    }
}

TEST(ClipDescription, CopiesEveryOtherSettingAsItStands) {
    const BarsAndToneInfo settings{.version = 0xDEADBEEF,
                                   .sampleRate = 12345.5F,
                                   .channelType = 77,
                                   .numChannels = 6,
                                   .identifyChannels = 9,
                                   .frequency = -1.0F,
                                   .amplitude = std::numeric_limits<float>::infinity(),
                                   .identifierFormat = static_cast<IdentifierFormat>(4000000000U)};
    BarsAndToneInfo expected = settings;
    expected.channelType = 3;
    const ClipDescription clip(&settings);
    EXPECT_TRUE(SameBytes(clip.PrivateCopy(), expected));
}

TEST(ClipDescription, KeepsAPrivateCopyOfItsOwnForEachRequest) {
    const BarsAndToneInfo settings{.frequency = 440.0F};
    const ClipDescription first(&settings);
    const ClipDescription second(&settings);
    ASSERT_NE(first.PrivateData(), second.PrivateData());
    EXPECT_NE(first.PrivateData(), &settings);
    std::memset(first.PrivateData(), 0, sizeof(BarsAndToneInfo));
    EXPECT_TRUE(SameBytes(second.PrivateCopy(), settings));
    EXPECT_EQ(settings.frequency, 440.0F);
}

TEST(ClipDescription, LastsFiveSecondsOfSamplesInSinglePrecisionCutTowardsZero) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::pair<float, std::int64_t> kRatesAndDurations[] = {
        {48000.0F, 240000},
        {96000.0F, 480000},
        {22050.0F, 110250},
        {11025.5F, 55127},  // 55127.5
        {-11025.5F, -55127},
        {1.0F, 5},
        {1.4F, 7},  // 6.99999988
        // The float next to 44100.2 is 44100.19921875; five of it are 220500.99609375, next to which is 220501.
        {44100.2F, 220501},
        {0.0F, 0},
        {-0.0F, 0},
        {-0.1F, 0},
        {std::numeric_limits<float>::denorm_min(), 0},
        {0x1p60F, 5764607523034234880},  // 5 * 2^60
        {-0x1p60F, -5764607523034234880},
        {0x1p61F, kNoDuration},  // 5 * 2^61 does not fit
        {-0x1p61F, kNoDuration},
        {std::numeric_limits<float>::max(), kNoDuration},
        {kInfinity, kNoDuration},
        {-kInfinity, kNoDuration},
        {std::nanf(""), kNoDuration},
    };
    for (const auto& [rateHz, samples] : kRatesAndDurations) {
        const BarsAndToneInfo settings{.sampleRate = rateHz};
        EXPECT_EQ(ClipDescription(&settings, 1000.0F).DurationSamples(), samples) << rateHz << " Hz";
    }
}

TEST(ClipDescription, CarriesARateThatIsNaNBitForBit) {
    const auto rate = std::bit_cast<float>(0x7FC12345U);
    const BarsAndToneInfo settings{.sampleRate = rate};
    const ClipDescription clip(&settings);
    EXPECT_EQ(clip.Record().Get<std::uint32_t>(178), 0x7FC12345U);
    EXPECT_TRUE(SameBytes(clip.PrivateCopy(), settings));
}

}  // namespace
