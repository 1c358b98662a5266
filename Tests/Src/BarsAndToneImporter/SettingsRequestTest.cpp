#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/Importer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace {

using test::Placement;
using test::Request;
using test::RequestRecord;

constexpr std::size_t kSettingsSize = 32;

RequestRecord MakeRequest(void* prefs, std::uint8_t useDefaults, float hostRateHz, Placement placement) {
    RequestRecord request(test::kPrefsRecordSize, placement);
    request.Put(0, prefs).Put(12, useDefaults).Put(61, hostRateHz);
    return request;
}

class SettingsRequest : public testing::TestWithParam<Placement> {};
INSTANTIATE_TEST_SUITE_P(Placements, SettingsRequest, testing::ValuesIn(test::kPlacements));

TEST_P(SettingsRequest, WithoutABufferTellsItsSizeAndNothingElse) {
    for (const int useDefaults : {0, 1}) {
        auto request = MakeRequest(nullptr, static_cast<std::uint8_t>(useDefaults), 44100.0F, GetParam());
        EXPECT_EQ(Request(38, nullptr, request.Data()), 0);
        EXPECT_EQ(request.Get<std::uint32_t>(8), kSettingsSize);
        EXPECT_EQ(request.ChangedOutside({{8, 4}}), "");
    }
}

TEST_P(SettingsRequest, ForDefaultsWritesTheWholeRecord) {
    RequestRecord prefs(kSettingsSize, GetParam());
    auto request = MakeRequest(prefs.Data(), 1, 44100.0F, GetParam());
    EXPECT_EQ(Request(38, nullptr, request.Data()), 0);
    EXPECT_EQ(prefs.Get<std::uint32_t>(0), 1U);   // version
    EXPECT_EQ(prefs.Get<float>(4), 44100.0F);     // sampleRate
    EXPECT_EQ(prefs.Get<std::uint32_t>(8), 2U);   // channelType
    EXPECT_EQ(prefs.Get<std::uint32_t>(12), 2U);  // numChannels
    EXPECT_EQ(prefs.Get<std::uint32_t>(16), 0U);  // identifyChannels
    EXPECT_EQ(prefs.Get<float>(20), 1000.0F);     // frequency
    EXPECT_EQ(prefs.Get<float>(24), 0.25F);       // amplitude
    EXPECT_EQ(prefs.Get<std::uint32_t>(28), 0U);  // identifierFormat
    EXPECT_EQ(prefs.ChangedOutside({{0, 32}}), "");
    EXPECT_TRUE(request.IsUntouched());
}

TEST_P(SettingsRequest, ForDefaultsIgnoresWhatTheBufferHeld) {
    RequestRecord prefs(kSettingsSize, GetParam());
    prefs.Put(0, BarsAndToneInfo{.version = 9,
                                 .sampleRate = 8000.0F,
                                 .channelType = 3,
                                 .numChannels = 6,
                                 .identifyChannels = 1,
                                 .frequency = 400.0F,
                                 .amplitude = 1.0F,
                                 .identifierFormat = BLITS5_1});
    auto request = MakeRequest(prefs.Data(), 1, 96000.0F, GetParam());
    EXPECT_EQ(Request(38, nullptr, request.Data()), 0);
    const auto settings = prefs.Get<std::array<std::uint32_t, 8>>(0);
    EXPECT_THAT(settings,
                testing::ElementsAre(1U, std::bit_cast<std::uint32_t>(96000.0F), 2U, 2U, 0U,
                                     std::bit_cast<std::uint32_t>(1000.0F), std::bit_cast<std::uint32_t>(0.25F), 0U));
}

TEST_P(SettingsRequest, TakesEveryNonZeroFlagAsAWishForDefaults) {
    for (const int useDefaults : {1, 2, 0x80, 0xFF}) {
        RequestRecord prefs(kSettingsSize, GetParam());
        auto request = MakeRequest(prefs.Data(), static_cast<std::uint8_t>(useDefaults), 32000.0F, GetParam());
        EXPECT_EQ(Request(38, nullptr, request.Data()), 0);
        EXPECT_EQ(prefs.Get<float>(4), 32000.0F) << "flag " << useDefaults;
    }
}

TEST_P(SettingsRequest, ForDefaultsCarriesTheHostsRateBitForBit) {
    for (const std::uint32_t bits : {0x47BB8000U,     // 96000
                                     0x00000000U,     // 0
                                     0x80000000U,     // -0
                                     0xC73B8000U,     // -48000
                                     0x00000001U,     // the smallest denormal
                                     0x7F800000U,     // infinity
                                     0x7FC12345U}) {  // NaN
        RequestRecord prefs(kSettingsSize, GetParam());
        auto request = MakeRequest(prefs.Data(), 1, std::bit_cast<float>(bits), GetParam());
        EXPECT_EQ(Request(38, nullptr, request.Data()), 0);
        EXPECT_EQ(prefs.Get<std::uint32_t>(4), bits);
        EXPECT_EQ(prefs.Get<std::uint32_t>(0), 1U);
        EXPECT_EQ(prefs.Get<std::uint32_t>(8), 2U);
    }
}

TEST(SettingsRequestSequence, SizeThenDefaultsThenDescriptionIsHowAClipIsMade) {
    auto query = MakeRequest(nullptr, 1, 96000.0F, {});
    ASSERT_EQ(Request(38, nullptr, query.Data()), 0);
    ASSERT_EQ(query.Get<std::uint32_t>(8), 32U);

    RequestRecord prefs(query.Get<std::uint32_t>(8));
    auto defaults = MakeRequest(prefs.Data(), 1, 96000.0F, {});
    ASSERT_EQ(Request(38, nullptr, defaults.Data()), 0);

    RequestRecord info(test::kInfoRecordSize);
    info.Put(178, 0.0F).Put(206, prefs.Data());
    ASSERT_EQ(Request(37, nullptr, info.Data()), 0);
    EXPECT_EQ(info.Get<std::uint32_t>(174), 2U);
    EXPECT_EQ(info.Get<float>(178), 96000.0F);
    EXPECT_EQ(info.Get<std::int64_t>(186), 480000);
    EXPECT_EQ(Request(9, nullptr, info.Get<void*>(198)), 0);
}

}  // namespace
