#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"
#include "Tests/Src/ToneSettingsDialog/OddRecords.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace {

using Bytes = std::array<unsigned char, sizeof(CFUUIDBytes)>;

constexpr Bytes kExchangeId = {0x98, 0x34, 0xA4, 0x24, 0x22, 0xD7, 0x4E, 0x14,
                               0x8F, 0x9A, 0x6E, 0x0C, 0x19, 0x49, 0x34, 0xD2};

// Counts the exchanges that are alive.
class CountedExchange : public ToneSettingsDialogDataExchange {
public:
    static inline int live = 0;

    CountedExchange() { ++live; }
    ~CountedExchange() override { --live; }
};

using Ref = Brio::InterfaceRef<ToneSettingsDialogDataExchange>;

Ref NewExchange() {
    return Ref(new ToneSettingsDialogDataExchange());
}

// The references that `exchange` has at the moment.
std::int32_t References(const Ref& exchange) {
    exchange->AddRef();
    return exchange->Release();
}

BarsAndToneInfo PrefsOf(const Ref& exchange) {
    std::array<unsigned char, sizeof(BarsAndToneInfo)> noise{};
    noise.fill(0xCC);
    auto info = std::bit_cast<BarsAndToneInfo>(noise);
    exchange->GetPrefs(info);
    return info;
}

}  // namespace

TEST(ToneSettingsDialogDataExchange, StartsWithTheDefaultRecordAndNotCancelled) {
    const Ref exchange = NewExchange();
    const BarsAndToneInfo info = PrefsOf(exchange);
    const BarsAndToneInfo defaults{1, 48000.0F, 2, 2, 0, 1000.0F, 0.25F, EBUStereo1000};
    EXPECT_EQ(std::memcmp(&info, &defaults, sizeof info), 0);
    EXPECT_FALSE(exchange->mUserCancelled);
}

TEST(ToneSettingsDialogDataExchange, CountsItsReferencesAndIsDeletedWithTheLast) {
    auto* const exchange = new CountedExchange();
    EXPECT_EQ(exchange->AddRef(), 1);
    EXPECT_EQ(exchange->AddRef(), 2);
    EXPECT_EQ(exchange->AddRef(), 3);
    EXPECT_EQ(exchange->Release(), 2);
    EXPECT_EQ(exchange->Release(), 1);
    EXPECT_EQ(CountedExchange::live, 1);
    EXPECT_EQ(exchange->Release(), 0);
    EXPECT_EQ(CountedExchange::live, 0);
}

TEST(ToneSettingsDialogDataExchange, NamesItsInterfaceByTheSixteenBytesOfItsId) {
    const CFUUIDBytes& id = GuidOf(static_cast<IToneSettingsDialogDataExchange*>(nullptr));
    EXPECT_EQ(std::bit_cast<Bytes>(id), kExchangeId);
}

TEST(ToneSettingsDialogDataExchange, AnswersItsIdWithItselfAndTakesNoReference) {
    const Ref exchange = NewExchange();
    void* answer = nullptr;
    EXPECT_EQ(exchange->QueryMap(std::bit_cast<CFUUIDBytes>(kExchangeId), &answer), 0);
    EXPECT_EQ(answer, exchange.Get());
    EXPECT_EQ(References(exchange), 1);
}

TEST(ToneSettingsDialogDataExchange, RefusesAnIdThatDiffersInAnyByte) {
    const Ref exchange = NewExchange();
    for (std::size_t i = 0; i < kExchangeId.size(); ++i) {
        Bytes id = kExchangeId;
        id[i] ^= 1U;
        void* answer = exchange.Get();
        EXPECT_EQ(exchange->QueryMap(std::bit_cast<CFUUIDBytes>(id), &answer), static_cast<std::int32_t>(0xA00A0001U));
        EXPECT_EQ(answer, nullptr) << "byte " << i;
    }
    EXPECT_EQ(References(exchange), 1);
}

TEST(ToneSettingsDialogDataExchange, DoesNotAnswerTheIdsOfOtherInterfaces) {
    const Ref exchange = NewExchange();
    // Component roots are commonly asked for by 00000000-0000-0000-C000-000000000046 or by all zeros.
    constexpr Bytes kUnknownId = {0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};
    for (const Bytes& id : {kUnknownId, Bytes{}}) {
        void* answer = exchange.Get();
        EXPECT_EQ(exchange->QueryMap(std::bit_cast<CFUUIDBytes>(id), &answer), Brio::kNoInterfaceError);
        EXPECT_EQ(answer, nullptr);
    }
}

TEST(ToneSettingsDialogDataExchange, IsItsOwnRootWithoutAReferenceMore) {
    const Ref exchange = NewExchange();
    EXPECT_EQ(exchange->GetBrioUnknown(), exchange.Get());
    EXPECT_EQ(References(exchange), 1);
}

TEST(ToneSettingsDialogDataExchange, CarriesOddRecordsByteForByte) {
    const Ref exchange = NewExchange();
    for (const BarsAndToneInfo& record : test::OddRecords()) {
        exchange->SetPrefs(record);
        const BarsAndToneInfo carried = PrefsOf(exchange);
        EXPECT_EQ(std::memcmp(&carried, &record, sizeof record), 0);
    }
}

TEST(ToneSettingsDialogDataExchange, KeepsItsSettingsWhenTheUserCancels) {
    const Ref exchange = NewExchange();
    BarsAndToneInfo record;
    record.frequency = 440.0F;
    exchange->SetPrefs(record);
    exchange->UserCancelled();
    EXPECT_TRUE(exchange->mUserCancelled);
    EXPECT_EQ(PrefsOf(exchange).frequency, 440.0F);
    EXPECT_TRUE(exchange->mUserCancelled);
}

TEST(ToneSettingsDialogDataExchange, ForgetsACancelWithNewSettings) {
    const Ref exchange = NewExchange();
    exchange->UserCancelled();
    exchange->SetPrefs(BarsAndToneInfo());
    EXPECT_FALSE(exchange->mUserCancelled);
}

TEST(ToneSettingsDialogDataExchange, ConvertsToAReferenceOfItsOwn) {
    const Ref exchange = NewExchange();
    {
        const Brio::InterfaceRef<Brio::BrioUnknown> root = *exchange.Get();
        EXPECT_EQ(root.Get(), exchange.Get());
        EXPECT_EQ(References(exchange), 2);
    }
    EXPECT_EQ(References(exchange), 1);
}

TEST(ToneSettingsDialogDataExchange, ConvertsWhatItsVirtualRootSays) {
    class Rootless : public ToneSettingsDialogDataExchange {
    public:
        Brio::BrioUnknown* GetBrioUnknown() override { return nullptr; }
    };
    const Ref exchange(new Rootless());
    const Brio::InterfaceRef<Brio::BrioUnknown> root = *exchange.Get();
    EXPECT_FALSE(root);
    EXPECT_EQ(References(exchange), 1);
}

TEST(ToneSettingsDialogDataExchangeDeathTest, EndsTheProcessWhenItsRootThrowsDuringAConversion) {
    class Throwing : public ToneSettingsDialogDataExchange {
    public:
        Brio::BrioUnknown* GetBrioUnknown() override { throw std::runtime_error("no root today"); }
    };
    const Ref exchange(new Throwing());
    EXPECT_DEATH({ const Brio::InterfaceRef<Brio::BrioUnknown> root = *exchange.Get(); }, "no root today");
}
