#include "Tests/Host/Desktop/OpenDialog.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QRadioButton>
#include <QStringList>

namespace {

using test::Bytes;
using test::ClipWith;
using test::DialogHands;
using test::EditWith;

QString TabOrder(DialogHands& hands) {
    QStringList order;
    while (order.size() < 20 && (order.isEmpty() || hands.Focus() != order.front())) {
        order << hands.Focus();
        hands.Press(Qt::Key_Tab);
    }
    return order.join(" ");
}

TEST(Keyboard, TabGoesThroughTheMonoDialogFromTopToBottom) {
    (void)EditWith(ClipWith(1), [](DialogHands& hands) {
        EXPECT_EQ(TabOrder(hands), "frequencyHotTextNumber amplitudeHotTextNumber okButton cancelButton");
        hands.ClickCloseBox();
    });
}

// Of the two radio buttons Tab stops at the one that is on, and disabled controls are passed over.
TEST(Keyboard, TabStopsOnlyAtWhatCanBeUsed) {
    BarsAndToneInfo settings = ClipWith(2);
    (void)EditWith(settings, [](DialogHands& hands) {
        EXPECT_EQ(TabOrder(hands),
                  "steadyTonesBtn frequencyHotTextNumber amplitudeHotTextNumber okButton cancelButton");
        hands.ClickCloseBox();
    });
    settings.identifyChannels = 1;
    (void)EditWith(settings, [](DialogHands& hands) {
        EXPECT_EQ(TabOrder(hands), "identifyChannelsBtn identifierFormatPopup okButton cancelButton");
        hands.ClickCloseBox();
    });
}

// Space in a record that has an ident leaves it one.
TEST(Keyboard, TheDialogOpensOnWhatIsChosen) {
    for (const std::uint32_t identify : {0U, 1U}) {
        BarsAndToneInfo settings = ClipWith(6);
        settings.identifyChannels = identify;
        const auto after = EditWith(settings, [&](DialogHands& hands) {
            EXPECT_EQ(hands.Focus(), identify == 1 ? "identifyChannelsBtn" : "steadyTonesBtn");
            hands.Press(Qt::Key_Space);
            hands.Press(Qt::Key_Return);
        });
        EXPECT_EQ(Bytes(after), Bytes(settings));
    }
}

TEST(Keyboard, EnterInANumberTakesTheNumberAndPressesOK) {
    for (const std::uint32_t channels : {1U, 2U, 6U}) {
        const auto after = EditWith(ClipWith(channels), [](DialogHands& hands) {
            hands.FocusAndType(test::kFrequency, "400");
            hands.Press(Qt::Key_Return);
        });
        EXPECT_EQ(after.frequency, 400.0F);
    }
}

TEST(Keyboard, EscapePressesCancel) {
    for (const std::uint32_t channels : {1U, 2U, 6U}) {
        bool cancelled = false;
        const BarsAndToneInfo before = ClipWith(channels);
        const auto after = EditWith(before, [&](DialogHands& hands) {
            QObject::connect(&hands.Find<QAbstractButton>("cancelButton"), &QAbstractButton::clicked,
                             [&] { cancelled = true; });
            hands.FocusAndType(test::kFrequency, "400");
            hands.Press(Qt::Key_Escape);
        });
        EXPECT_TRUE(cancelled);
        EXPECT_EQ(Bytes(after), Bytes(before));
    }
}

TEST(Keyboard, EnterOnCancelPressesCancel) {
    const auto after = EditWith(ClipWith(1), [](DialogHands& hands) {
        hands.FocusAndType(test::kFrequency, "400");
        hands.Find("cancelButton").setFocus();
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.frequency, 1000.0F);
}

TEST(Keyboard, MnemonicsReachEveryControl) {
    (void)EditWith(ClipWith(2), [](DialogHands& hands) {
        hands.PressMnemonic(Qt::Key_F, [&] { return hands.Focus() == test::kFrequency; });
        hands.PressMnemonic(Qt::Key_L, [&] { return hands.Focus() == test::kLevel; });
        hands.PressMnemonic(Qt::Key_I, [&] { return hands.Find<QRadioButton>("identifyChannelsBtn").isChecked(); });
        hands.PressMnemonic(Qt::Key_Q, [&] { return hands.Focus() == "identifierFormatPopup"; });
        hands.PressMnemonic(Qt::Key_S, [&] { return hands.Find<QRadioButton>("steadyTonesBtn").isChecked(); });
        hands.PressMnemonic(Qt::Key_C, [&] { return !hands.Dialog().isVisible(); });
    });
}

// The mnemonic leaves the focus, and what has been typed, in the number.
TEST(Keyboard, TheMnemonicOfOKTakesANumberThatIsStillBeingTyped) {
    const auto after = EditWith(ClipWith(2), [](DialogHands& hands) {
        hands.FocusAndType(test::kFrequency, "20k");
        hands.PressMnemonic(Qt::Key_O, [&] { return !hands.Dialog().isVisible(); });
    });
    EXPECT_EQ(after.frequency, 20000.0F);
}

TEST(Keyboard, ArrowsSwitchBetweenSteadyToneAndIdentification) {
    const auto after = EditWith(ClipWith(2), [](DialogHands& hands) {
        hands.Find("steadyTonesBtn").setFocus();
        hands.Press(Qt::Key_Down);
        EXPECT_TRUE(hands.IsEnabled("identifierFormatPopup"));
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.identifyChannels, 1U);
}

TEST(Keyboard, ArrowsChooseTheSequence) {
    BarsAndToneInfo settings = ClipWith(6);
    settings.identifyChannels = 1;
    const auto after = EditWith(settings, [](DialogHands& hands) {
        hands.Find("identifierFormatPopup").setFocus();
        hands.Press(Qt::Key_Down);
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.identifierFormat, BLITS5_1);
}

TEST(ToneKind, GovernsWhatCanBeChosen) {
    for (const std::uint32_t channels : {2U, 6U}) {
        const auto after = EditWith(ClipWith(channels), [](DialogHands& hands) {
            EXPECT_TRUE(hands.IsEnabled(test::kFrequency) && hands.IsEnabled(test::kLevel));
            EXPECT_FALSE(hands.IsEnabled("identifierFormatPopup"));
            hands.Click("identifyChannelsBtn");
            EXPECT_FALSE(hands.IsEnabled(test::kFrequency) || hands.IsEnabled(test::kLevel));
            EXPECT_FALSE(hands.IsEnabled("frequencyLabel") || hands.IsEnabled("frequencyRange"));
            EXPECT_TRUE(hands.IsEnabled("identifierFormatPopup") && hands.IsEnabled("identifierFormatLabel"));
            hands.Click("steadyTonesBtn");
            EXPECT_TRUE(hands.IsEnabled(test::kFrequency) && hands.IsEnabled(test::kLevel) &&
                        hands.IsEnabled("frequencyLabel"));
            EXPECT_FALSE(hands.IsEnabled("identifierFormatPopup"));
            hands.Click("identifyChannelsBtn");
            hands.Click("okButton");
        });
        EXPECT_EQ(after.identifyChannels, 1U);
    }
}

TEST(ToneKind, OffersTheSequencesOfTheLayout) {
    const auto items = [](std::uint32_t channels) {
        QStringList texts;
        (void)EditWith(ClipWith(channels), [&](DialogHands& hands) {
            const auto& popup = hands.Find<QComboBox>("identifierFormatPopup");
            for (int i = 0; i < popup.count(); ++i) {
                texts << popup.itemText(i);
            }
            hands.ClickCloseBox();
        });
        return texts;
    };
    EXPECT_EQ(items(2), QStringList({"EBU Stereo (1000 Hz)", "EBU Stereo (400 Hz)"}));
    EXPECT_EQ(items(6), QStringList({"EBU Multichannel (5.1)", "BLITS (5.1)"}));
}

}  // namespace
