#include "Tests/Fuzz/EntryPoint/Session.h"

#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Support/Importer.h"

#include <array>
#include <cstring>

namespace fuzz {

namespace {

constexpr int kMostRequests = 24;

}  // namespace

Session::~Session() {
    for (const Description& description : mDescriptions) {
        Release(description.privateData);
    }
}

void Session::Run() {
    using Step = void (Session::*)();
    constexpr std::array<Step, 13> kSteps = {
        &Session::ChooseSettings,      &Session::ReadAudio,       &Session::ReadPeaks,
        &Session::DrawFrame,           &Session::Describe,        &Session::Init,
        &Session::ReleaseOne,          &Session::ListFileFormats, &Session::ListPixelFormats,
        &Session::SendUnknownSelector, &Session::AskSettingsSize, &Session::MakeDefaults,
        &Session::EditSettings};
    for (int i = 0; i < kMostRequests && !mBytes.Empty(); ++i) {
        (this->*mBytes.Pick(kSteps))();
    }
}

test::Placement Session::TakePlacement() {
    return mBytes.Pick(test::kPlacements);
}

Session::RequestSettings Session::TakeRequestSettings() {
    RequestSettings settings;
    if (mBytes.Flag()) {
        settings.prefs = &mSettings;
        settings.used = mSettings;
    }
    if (!mDescriptions.empty() && mBytes.Flag()) {
        const Description& description = mBytes.Pick(mDescriptions);
        settings.privateData = description.privateData;
        if (settings.prefs == nullptr) {
            settings.used = description.settings;
        }
    }
    return settings;
}

void Session::Release(void* privateData) {
    Require(test::Request(kImportReleasePrivateData, nullptr, privateData) == 0, "a release is served");
}

void Session::Init() {
    test::RequestRecord record(test::kInitRecordSize, TakePlacement());
    Require(test::Request(kImportInit, record.Data(), nullptr) == 400, "Init is answered with 400");
    for (const std::size_t offset : {28U, 32U, 36U, 44U}) {
        Require(record.Get<std::uint32_t>(offset) == 1, "Init sets its capabilities to 1");
    }
    Require(record.ChangedOutside({{28, 12}, {44, 4}}).empty(), "Init writes nothing else");
}

void Session::ListFileFormats() {
    test::RequestRecord record(test::kFileFormatRecordSize, TakePlacement());
    const auto index = std::int64_t{mBytes.Take<std::int8_t>()};
    const std::int32_t result = test::Request(kImportGetIndFormat, reinterpret_cast<void*>(index), record.Data());
    Require(result == (index == 0 ? 0 : 301), "there is one file format");
    Require(index == 0 ? record.Get<std::uint32_t>(0) == 0x58514E56 &&
                             record.ChangedOutside({{0, 4}, {12, 1}, {268, 1}, {300, 256}}).empty()
                       : record.IsUntouched(),
            "a file format writes its fields and nothing else");
}

void Session::ListPixelFormats() {
    test::RequestRecord record(test::kPixelFormatRecordSize, TakePlacement());
    const auto index = std::int64_t{mBytes.Take<std::int8_t>()};
    const std::int32_t result = test::Request(kImportGetIndPixelFormat, reinterpret_cast<void*>(index), record.Data());
    Require(result == (index == 0 ? 0 : 301), "there is one pixel format");
    Require(index == 0 ? record.Get<std::uint32_t>(8) == 0x37785556 && record.ChangedOutside({{8, 4}}).empty()
                       : record.IsUntouched(),
            "a pixel format writes its field and nothing else");
}

void Session::SendUnknownSelector() {
    constexpr std::array kKnown = {0, 5, 9, 14, 25, 27, 28, 37, 38, 49};
    test::RequestRecord first(64, TakePlacement());
    test::RequestRecord second(64, TakePlacement());
    const auto selector = mBytes.Take<std::int32_t>();
    if (std::ranges::find(kKnown, selector) != kKnown.end() && selector != 28) {
        return;
    }
    const std::int32_t result = test::Request(selector, first.Data(), second.Data());
    Require(result == (selector == 28 ? 100 : 3), "an unknown selector is refused");
    Require(first.IsUntouched() && second.IsUntouched(), "an unknown selector writes nothing");
}

void Session::Describe() {
    test::RequestRecord record(test::kInfoRecordSize, TakePlacement());
    BarsAndToneInfo expected;
    if (mBytes.Flag()) {
        record.Put<const void*>(206, &mSettings);
        expected = mSettings;
        expected.channelType = ChannelTypeFor(expected.numChannels);
    } else {
        expected.sampleRate = mBytes.Float();
        record.Put<const void*>(206, nullptr).Put(178, expected.sampleRate);
    }
    const BarsAndToneInfo before = mSettings;
    Require(test::Request(kImportGetInfo, nullptr, record.Data()) == 0, "a description is served");
    void* const copy = record.Get<void*>(198);
    mDescriptions.push_back({copy, expected});
    Require(record.ChangedOutside({{0, 2}, {12, 2}, {22, 1}, {31, 2}, {174, 20}, {198, 8}}).empty(),
            "a description writes its fields and nothing else");
    Require(std::memcmp(&before, &mSettings, sizeof before) == 0, "a description only reads the settings");
    Require(std::memcmp(copy, &expected, sizeof expected) == 0, "the private copy holds the settings");
    Require(record.Get<std::uint32_t>(174) == expected.numChannels, "a description has the channel count");
}

void Session::ReleaseOne() {
    if (mDescriptions.empty()) {
        Release(nullptr);
        return;
    }
    const auto chosen = mDescriptions.begin() + static_cast<std::ptrdiff_t>(mBytes.Below(mDescriptions.size()));
    Release(chosen->privateData);
    mDescriptions.erase(chosen);
}

}  // namespace fuzz
