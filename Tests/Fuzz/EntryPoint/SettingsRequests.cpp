#include "Tests/Fuzz/EntryPoint/Session.h"
#include "Tests/Fuzz/Support/FuzzedPerson.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Support/GuardedSettings.h"
#include "Tests/Support/Importer.h"

#include <cstring>
#include <exception>

namespace fuzz {

namespace {

// A layout that is whole, that lacks a control, or where one is of another type.
std::vector<test::ControlSpec> TakeLayout(Bytes& bytes, const std::vector<test::ControlSpec>& whole) {
    const std::size_t kind = bytes.Below(8);
    const std::string& name = bytes.Pick(whole).name;
    switch (kind) {
        case 0:
            return test::Without(whole, name);
        case 1:
            return test::WithWrongType(whole, name);
        default:
            return whole;
    }
}

}  // namespace

void Session::AskSettingsSize() {
    test::RequestRecord record(test::kPrefsRecordSize, TakePlacement());
    record.Put<void*>(0, nullptr);
    Require(test::Request(kImportGetPrefs, nullptr, record.Data()) == 0, "the settings' size is served");
    Require(record.Get<std::uint32_t>(8) == 32, "settings have 32 bytes");
    Require(record.ChangedOutside({{8, 4}}).empty(), "the settings' size is all that is written");
}

void Session::MakeDefaults() {
    test::RequestRecord record(test::kPrefsRecordSize, TakePlacement());
    test::GuardedSettings buffer(mSettings);
    const BarsAndToneInfo expected{.sampleRate = mBytes.Float()};
    const auto useDefaults = static_cast<std::uint8_t>(mBytes.Take<std::uint8_t>() | 1U);
    record.Put<void*>(0, buffer.Data()).Put(12, useDefaults).Put(61, expected.sampleRate);
    Require(test::Request(kImportGetPrefs, nullptr, record.Data()) == 0, "defaults are served");
    Require(record.IsUntouched(), "defaults leave the record alone");
    Require(buffer.Holds(expected) && buffer.GuardsIntact(), "defaults are the default record at the host's rate");
    mSettings = expected;
}

void Session::EditSettings() {
    test::FakeToolkit toolkit;
    Leaving leaving;
    toolkit.layout = TakeLayout(mBytes, test::IdentifiersLayout());
    toolkit.buildsNothing = mBytes.Below(16) == 1;
    toolkit.hasMainWindow = mBytes.Flag();
    toolkit.person = [&](test::FakeDialog& dialog) { UseDialog(dialog, mBytes, leaving); };
    zelcore::debug::SetContractReporter([](const zelcore::debug::ContractReport&) { return false; });

    test::RequestRecord record(test::kPrefsRecordSize, TakePlacement());
    test::GuardedSettings buffer(mSettings);
    record.Put<void*>(0, buffer.Data()).Put<std::uint8_t>(12, 0);
    bool threw = false;
    try {
        Require(test::Request(kImportGetPrefs, nullptr, record.Data()) == 0, "the settings request is served");
    } catch (const std::exception&) {
        threw = true;
    }
    const BarsAndToneInfo after = buffer.Get();
    Require(toolkit.LiveNodes() == 0, "a dialog leaves no control behind");
    Require(record.IsUntouched() && buffer.GuardsIntact(), "a dialog writes the settings and nothing else");
    Require(!leaving.threw || threw, "an error in a dialog reaches the host");
    Require(leaving.accepted && !threw ? true : buffer.Holds(mSettings), "settings change with OK only");
    Require(after.version == mSettings.version && after.channelType == mSettings.channelType &&
                after.numChannels == mSettings.numChannels &&
                std::memcmp(&after.sampleRate, &mSettings.sampleRate, sizeof(float)) == 0,
            "a dialog edits the tone only");
    mSettings = after;
}

}  // namespace fuzz
