#include "Tests/Host/Desktop/OpenDialog.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <array>
#include <cmath>

namespace {

using test::ClipWith;
using test::DialogHands;
using test::EditWith;

// The settings after `act` and OK, begun from a clip with `numChannels` channels at 48 kHz, 1000 Hz and a
// gain of 0.25, which is -12.04 dB.
template <class Act>
BarsAndToneInfo After(std::uint32_t numChannels, Act act) {
    return EditWith(ClipWith(numChannels), [&](DialogHands& hands) {
        act(hands);
        hands.Click("okButton");
    });
}

template <class Act>
float FrequencyAfter(Act act) {
    const float inMono = After(1, act).frequency;
    EXPECT_EQ(After(2, act).frequency, inMono);
    EXPECT_EQ(After(6, act).frequency, inMono);
    return inMono;
}

float GainFromDb(float levelDb) {
    return static_cast<float>(std::pow(10.0, static_cast<double>(levelDb / 20)));
}

TEST(HotText, ShowsTheSettingsWithTheirUnits) {
    (void)After(2, [](DialogHands& hands) {
        EXPECT_EQ(hands.Shown(test::kFrequency), "1000 Hz");
        EXPECT_EQ(hands.Shown(test::kLevel), "-12.0412 dB");
    });
}

TEST(HotText, ShowsSilenceAsMinus300Db) {
    BarsAndToneInfo silent = ClipWith(1);
    silent.amplitude = 0;
    const auto after = EditWith(silent, [](DialogHands& hands) {
        EXPECT_EQ(hands.Shown(test::kLevel), "-300 dB");
        hands.Click("okButton");
    });
    EXPECT_EQ(after.amplitude, 0.0F);
}

TEST(HotText, ShowsWhatLiesOutsideTheRangeAsItIs) {
    BarsAndToneInfo odd = ClipWith(2);
    odd.frequency = 30000.5F;
    odd.amplitude = 10.0F;
    (void)EditWith(odd, [](DialogHands& hands) {
        EXPECT_EQ(hands.Shown(test::kFrequency), "30000.5 Hz");
        EXPECT_EQ(hands.Shown(test::kLevel), "20 dB");
        hands.Click("okButton");
    });
}

TEST(HotText, TakesATypedFrequency) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.FocusAndType(test::kFrequency, "440.25"); }), 440.25F);
}

TEST(HotText, TakesANumberTypedAfterADoubleClick) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.DoubleClickAndType(test::kFrequency, "997"); }), 997.0F);
}

TEST(HotText, Minus20DbTypedIsAGainOfATenth) {
    EXPECT_EQ(After(1, [](DialogHands& hands) { hands.FocusAndType(test::kLevel, "-20"); }).amplitude, 0.1F);
    EXPECT_EQ(After(6, [](DialogHands& hands) { hands.FocusAndType(test::kLevel, "-20"); }).amplitude, 0.1F);
}

TEST(HotText, ZeroDbTypedIsFullScale) {
    EXPECT_EQ(After(2, [](DialogHands& hands) { hands.FocusAndType(test::kLevel, "0"); }).amplitude, 1.0F);
}

TEST(HotText, StopsAtHalfTheSampleRate) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, 30000); }), 24000.0F);
    BarsAndToneInfo settings = ClipWith(1);
    settings.sampleRate = 44100.0F;
    const auto after = EditWith(settings, [](DialogHands& hands) {
        hands.Drag(test::kFrequency, 30000);
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.frequency, 22050.0F);
}

TEST(HotText, StopsAtOneHertzAndAtTheEndsOfTheLevel) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, -5000); }), 1.0F);
    EXPECT_EQ(After(1, [](DialogHands& hands) { hands.Drag(test::kLevel, 500); }).amplitude, 1.0F);
    EXPECT_EQ(After(1, [](DialogHands& hands) { hands.Drag(test::kLevel, -4000); }).amplitude, GainFromDb(-300));
}

// The field's own unit stands behind what is typed.
TEST(HotText, UnderstandsDecimalMarksThousandsAndUnitsAsPeopleTypeThem) {
    struct Typed {
        const char* place;
        const char* number;
        const char* text;
        double value;  // Hz or dB
    };
    constexpr std::array<Typed, 16> kTyped = {{
        {"en_US", test::kFrequency, "20k", 20000},
        {"en_US", test::kFrequency, "1.5 kHz", 1500},
        {"en_US", test::kFrequency, "1e3", 1000},
        {"en_US", test::kFrequency, "440 Hz", 440},
        {"en_US", test::kFrequency, "440,5HZ", 440.5},
        {"en_US", test::kFrequency, "12.3456", 12.3456},
        {"en_US", test::kLevel, "-12,5", -12.5},
        {"en_US", test::kLevel, "-12,041", -12.041},
        {"en_US", test::kLevel, "\u221220 dB", -20},
        {"en_US", test::kLevel, "-12.0412", -12.0412},
        {"de_DE", test::kLevel, "-12,0412", -12.0412},
        {"de_DE", test::kLevel, "-12.5", -12.5},
        {"de_DE", test::kFrequency, "1,5k", 1500},
        {"fr_FR", test::kFrequency, "997.5", 997.5},
        {"fr_FR", test::kFrequency, "997,5 Hz", 997.5},
        {"ja_JP", test::kFrequency, "400", 400},
    }};
    for (const Typed& typed : kTyped) {
        SCOPED_TRACE(std::string(typed.place) + ": " + typed.text);
        QLocale::setDefault(QLocale(typed.place));
        const bool isLevel = typed.number == test::kLevel;
        const auto after = After(2, [&](DialogHands& hands) { hands.FocusAndType(typed.number, typed.text); });
        const auto value = static_cast<float>(typed.value);
        EXPECT_EQ(isLevel ? after.amplitude : after.frequency, isLevel ? GainFromDb(value) : value);
    }
    QLocale::setDefault(QLocale::c());
}

// The colour in which a number's text is written.
QColor TextColour(DialogHands& hands, const char* number) {
    return hands.Find(number).findChild<QLineEdit*>()->palette().color(QPalette::Text);
}

TEST(HotText, WhatIsNoNumberInTheRangeIsRedAndCannotBeTaken) {
    struct Typed {
        const char* number;
        const char* text;
    };
    constexpr std::array<Typed, 10> kTyped = {{{test::kLevel, "18"},
                                               {test::kLevel, "-301"},
                                               {test::kLevel, "6 dB"},
                                               {test::kLevel, "loud"},
                                               {test::kLevel, "-1.2.3"},
                                               {test::kFrequency, "0"},
                                               {test::kFrequency, "24001"},
                                               {test::kFrequency, "30k"},
                                               {test::kFrequency, "1,000"},  // one or a thousand
                                               {test::kFrequency, "20 kHz 5"}}};
    QLocale::setDefault(QLocale("en_US"));
    for (const auto& [number, text] : kTyped) {
        SCOPED_TRACE(text);
        const BarsAndToneInfo before = ClipWith(2);
        const auto after = EditWith(before, [&number = number, &text = text](DialogHands& hands) {
            const QColor usual = TextColour(hands, number);
            hands.FocusAndType(number, text);
            EXPECT_FALSE(hands.IsEnabled("okButton"));
            const QColor red = TextColour(hands, number);
            EXPECT_TRUE(red != usual && red.red() > 2 * red.green()) << qPrintable(red.name());
            hands.Press(Qt::Key_Return);
            hands.PressMnemonic(Qt::Key_O, [] { return true; });
            hands.Press(Qt::Key_Tab);
            ASSERT_TRUE(hands.Dialog().isVisible());
            EXPECT_TRUE(hands.Shown(number).startsWith(text)) << "it stands as it was typed";
            EXPECT_FALSE(hands.IsEnabled("okButton"));
            hands.Press(Qt::Key_Escape);
        });
        EXPECT_EQ(test::Bytes(after), test::Bytes(before));
    }
    QLocale::setDefault(QLocale::c());
}

TEST(HotText, AWrongNumberSaysItsRangeUntilItIsPutRight) {
    const auto after = EditWith(ClipWith(2), [](DialogHands& hands) {
        auto& range = hands.Find<QLabel>("amplitudeRange");
        const QColor usual = range.palette().color(range.foregroundRole());
        hands.FocusAndType(test::kLevel, "18");
        EXPECT_NE(range.palette().color(range.foregroundRole()), usual);
        const auto* const spoken = QAccessible::queryAccessibleInterface(&hands.Find(test::kLevel));
        EXPECT_EQ(spoken->text(QAccessible::Description), "-300 to 0 dB");
        hands.Press(Qt::Key_A, Qt::ControlModifier);
        hands.FocusAndType(test::kLevel, "-18");
        EXPECT_EQ(range.palette().color(range.foregroundRole()), usual);
        EXPECT_TRUE(hands.IsEnabled("okButton"));
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.amplitude, GainFromDb(-18));
}

TEST(HotText, TwoWrongNumbersTakeTwoCorrections) {
    (void)After(1, [](DialogHands& hands) {
        hands.FocusAndType(test::kLevel, "18");
        hands.FocusAndType(test::kFrequency, "x");
        hands.Press(Qt::Key_A, Qt::ControlModifier);
        hands.FocusAndType(test::kFrequency, "500");
        EXPECT_FALSE(hands.IsEnabled("okButton"));
        hands.Wheel(test::kLevel, -1);  // from the number that was there
        EXPECT_EQ(hands.Shown(test::kLevel), "-13.0412 dB");
        EXPECT_TRUE(hands.IsEnabled("okButton"));
    });
}

TEST(HotText, AWrongNumberIsTakenBackWhenItCannotBeChangedAnyMore) {
    const auto after = After(2, [](DialogHands& hands) {
        hands.FocusAndType(test::kFrequency, "30000");
        hands.Click("identifyChannelsBtn");
        EXPECT_EQ(hands.Shown(test::kFrequency), "1000 Hz");
        EXPECT_TRUE(hands.IsEnabled("okButton"));
    });
    EXPECT_EQ(after.frequency, 1000.0F);
}

TEST(HotText, ShowsANumberAgainAsItWasTyped) {
    BarsAndToneInfo settings = After(2, [](DialogHands& hands) {
        hands.FocusAndType(test::kFrequency, "12345.6");
        hands.FocusAndType(test::kLevel, "-12.345");
    });
    (void)EditWith(settings, [](DialogHands& hands) {
        EXPECT_EQ(hands.Shown(test::kFrequency), "12345.6 Hz");
        EXPECT_EQ(hands.Shown(test::kLevel), "-12.345 dB");
        hands.ClickCloseBox();
    });
}

TEST(HotText, TypingTheEndOfTheRangeOverANumberBeyondItCounts) {
    BarsAndToneInfo settings = ClipWith(2);
    settings.amplitude = 4.0F;
    const auto after = EditWith(settings, [](DialogHands& hands) {
        hands.FocusAndType(test::kLevel, "0");
        hands.Click("okButton");
    });
    EXPECT_EQ(after.amplitude, 1.0F);
}

// A pixel is a tenth of a step, and a step is 10 Hz or 1 dB.
TEST(HotText, DraggingChangesOneHertzOrATenthOfADecibelAPixel) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, 100); }), 1100.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, -60); }), 940.0F);
    EXPECT_EQ(After(2, [](DialogHands& hands) { hands.Drag(test::kLevel, -10); }).amplitude, GainFromDb(-13.0412F));
}

TEST(HotText, ShowsWhatItHasBecomeAtEveryStep) {
    (void)EditWith(ClipWith(1), [](DialogHands& hands) {
        hands.Wheel(test::kFrequency, 1);
        EXPECT_EQ(hands.Shown(test::kFrequency), "1010 Hz");
        hands.Wheel(test::kFrequency, 1);
        EXPECT_EQ(hands.Shown(test::kFrequency), "1020 Hz");
        hands.Drag(test::kLevel, -20);
        EXPECT_EQ(hands.Shown(test::kLevel), "-14.0412 dB");
        hands.ClickCloseBox();
    });
}

TEST(HotText, ShiftIsTenTimesCoarserAndCtrlTenTimesFiner) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, 20, Qt::ShiftModifier); }), 1200.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, 20, Qt::ControlModifier); }),
              1002.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Wheel(test::kFrequency, 2, Qt::ShiftModifier); }), 1200.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Wheel(test::kFrequency, -3, Qt::ControlModifier); }),
              997.0F);
}

TEST(HotText, AClickThatDoesNotMoveChangesNothing) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Click(test::kFrequency); }), 1000.0F);
}

TEST(HotText, AClickSelectsTheNumberSoThatTypingReplacesIt) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) {
                  hands.ClickNumber(test::kFrequency);
                  EXPECT_EQ(hands.Selected(test::kFrequency), "1000");
                  hands.FocusAndType(test::kFrequency, "2000");
              }),
              2000.0F);
}

TEST(HotText, OtherButtonsAndAMouseThatPassesByChangeNothing) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) {
                  hands.MoveOver(test::kFrequency);
                  hands.ClickNumber(test::kFrequency, Qt::MiddleButton);
                  hands.ClickNumber(test::kFrequency, Qt::BackButton);
              }),
              1000.0F);
}

// The first double click makes it a field; from then on the mouse places the cursor, until the field is left.
TEST(HotText, ADraggedMouseChangesNothingInAFieldThatIsTypedInto) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) {
                  hands.DoubleClickNumber(test::kFrequency);
                  hands.Drag(test::kFrequency, 100);
                  hands.DoubleClickNumber(test::kFrequency);
              }),
              1000.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) {
                  hands.DoubleClickNumber(test::kFrequency);
                  hands.Find(test::kLevel).setFocus();
                  hands.Drag(test::kFrequency, 100);
              }),
              1100.0F);
}

TEST(HotText, AMoveTooShortForADragIsAClick) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Nudge(test::kFrequency); }), 1000.0F);
}

TEST(HotText, TheWheelChangesAStepANotch) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Wheel(test::kFrequency, 3); }), 1030.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Wheel(test::kFrequency, -1); }), 990.0F);
}

TEST(HotText, ArrowAndPageKeysStep) {
    const auto pressed = [](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        return FrequencyAfter([=](DialogHands& hands) {
            hands.Find(test::kFrequency).setFocus();
            hands.Press(key, modifiers);
        });
    };
    EXPECT_EQ(pressed(Qt::Key_Up, Qt::NoModifier), 1010.0F);
    EXPECT_EQ(pressed(Qt::Key_Down, Qt::NoModifier), 990.0F);
    EXPECT_EQ(pressed(Qt::Key_Up, Qt::ShiftModifier), 1100.0F);
    EXPECT_EQ(pressed(Qt::Key_Down, Qt::ControlModifier), 999.0F);
    EXPECT_EQ(pressed(Qt::Key_PageUp, Qt::NoModifier), 1100.0F);
    EXPECT_EQ(pressed(Qt::Key_PageDown, Qt::NoModifier), 900.0F);
}

TEST(HotText, SpeaksTheLanguageOfThePlace) {
    QLocale::setDefault(QLocale("de_DE"));
    const float frequency = FrequencyAfter([](DialogHands& hands) {
        EXPECT_EQ(hands.Shown(test::kLevel), "-12,0412 dB");
        hands.FocusAndType(test::kFrequency, "440,5");
    });
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(frequency, 440.5F);
}

}  // namespace
