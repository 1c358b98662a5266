#pragma once

#include "Src/ToneSettingsDialog/HandleToneSettingsDialog.h"
#include "Src/ToneSettingsDialog/LayoutNames.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Src/ToneSettingsDialog/RecordingDataExchange.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace test {

/// The bytes of two records are the same.
inline bool SameBytes(const BarsAndToneInfo& a, const BarsAndToneInfo& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A dialog on a fake toolkit: what goes in is exchange.info, what a person does is given to the runs, what
/// comes out is exchange.info again. Nothing may be left alive or referenced at the end.
class DialogTest : public testing::Test {
protected:
    DialogTest() {
        bundle.AddResource("ToneSettingsDialog.tarn", "plain");
        bundle.AddResource("ToneSettingsWithIdentifiersDialog.tarn", "identifiers");
    }

    void TearDown() override {
        EXPECT_EQ(toolkit.LiveNodes(), 0);
        EXPECT_EQ(exchange.References(), 0);
    }

    /// Runs the dialog for mono clips.
    void RunPlain(Person person) { Run(kToneSettingsDialogID, PlainLayout(), std::move(person)); }

    /// Runs the dialog for stereo and 5.1 clips.
    void RunWithIdentifiers(Person person) {
        Run(kToneSettingsWithIdentifiersDialogID, IdentifiersLayout(), std::move(person));
    }

    void Run(const Brio::String& layoutName, std::vector<ControlSpec> layout, Person person) {
        toolkit.layout = std::move(layout);
        toolkit.person = std::move(person);
        HandleToneSettingsDialog(layoutName, Brio::BrioUnknownRef(&exchange), nullptr, nullptr);
    }

    LoadedBundleCopy bundle;
    FakeToolkit toolkit;
    RecordingDataExchange exchange{toolkit.Log()};
};

/// Persons.
inline void PressesOk(FakeDialog& dialog) {
    dialog.Button("okButton").Press();
}
inline void PressesCancel(FakeDialog& dialog) {
    dialog.Button("cancelButton").Press();
}
inline void ClosesTheWindow(FakeDialog& /*dialog*/) {}

}  // namespace test
