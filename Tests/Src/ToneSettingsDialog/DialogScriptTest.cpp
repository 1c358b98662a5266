#include "Src/ToneSettingsDialog/UI_TarnScriptLoader.h"
#include "Tests/Src/ToneSettingsDialog/DialogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>

using testing::ElementsAre;

namespace {

std::optional<std::string> ScriptOf(const Brio::String& layoutName) {
    std::stringstream stream;
    return zeltarn::UI_TarnScriptLoader(layoutName).GetStream(stream) ? std::optional(stream.str()) : std::nullopt;
}

}  // namespace

class DialogScript : public test::DialogTest {
protected:
    void ExpectNothingHappens() {
        const BarsAndToneInfo before = exchange.info;
        toolkit.Calls().clear();
        RunPlain(test::PressesOk);
        EXPECT_THAT(toolkit.Calls(), ElementsAre("exchange.AddRef", "exchange.AddRef", "exchange.QueryMap",
                                                 "exchange.Release", "exchange.Release"));
        EXPECT_FALSE(exchange.cancelled);
        EXPECT_TRUE(test::SameBytes(exchange.info, before));
    }
};

TEST_F(DialogScript, IsTheResourceOfTheLayoutsNameByteForByte) {
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte.push_back(static_cast<char>(byte));
    }
    bundle.AddResource("ToneSettingsDialog.tarn", everyByte + "\r\n\n");
    EXPECT_EQ(ScriptOf(kToneSettingsDialogID), everyByte + "\r\n\n");
    EXPECT_EQ(ScriptOf(kToneSettingsWithIdentifiersDialogID), "identifiers");
}

TEST_F(DialogScript, ThatIsMissingShowsNothingAndChangesNothing) {
    std::filesystem::remove_all(bundle.Folder() / "Contents" / "Resources");
    EXPECT_EQ(ScriptOf(kToneSettingsDialogID), std::nullopt);
    ExpectNothingHappens();
}

TEST_F(DialogScript, ThatIsEmptyShowsNothingAndChangesNothing) {
    bundle.AddResource("ToneSettingsDialog.tarn", "");
    ExpectNothingHappens();
}

TEST(DialogWithoutBundle, ShowsNothingAndChangesNothing) {
    ASSERT_EQ(CFBundleGetBundleWithIdentifier("org.barsandtone.importer"), nullptr);
    EXPECT_EQ(ScriptOf(kToneSettingsDialogID), std::nullopt);

    test::FakeToolkit toolkit;
    test::RecordingDataExchange exchange(toolkit.Log());
    HandleToneSettingsDialog(kToneSettingsDialogID, Brio::BrioUnknownRef(&exchange), nullptr, nullptr);
    EXPECT_THAT(toolkit.Calls(), ElementsAre("exchange.AddRef", "exchange.AddRef", "exchange.QueryMap",
                                             "exchange.Release", "exchange.Release"));
    EXPECT_FALSE(exchange.cancelled);
}
