#include "Tests/Host/Desktop/OpenDialog.h"

#include <gtest/gtest.h>

#include <QLocale>
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
        EXPECT_EQ(hands.Shown(test::kLevel), "-12.04 dB");
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
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.FocusAndType(test::kFrequency, "30000"); }), 24000.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, 30000); }), 24000.0F);
    BarsAndToneInfo settings = ClipWith(1);
    settings.sampleRate = 44100.0F;
    const auto after = EditWith(settings, [](DialogHands& hands) {
        hands.FocusAndType(test::kFrequency, "24000");
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(after.frequency, 22050.0F);
}

TEST(HotText, StopsAtOneHertzAndAtTheEndsOfTheLevel) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.FocusAndType(test::kFrequency, "0"); }), 1.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.Drag(test::kFrequency, -5000); }), 1.0F);
    EXPECT_EQ(After(1, [](DialogHands& hands) { hands.FocusAndType(test::kLevel, "6"); }).amplitude, 1.0F);
    EXPECT_EQ(After(1, [](DialogHands& hands) { hands.FocusAndType(test::kLevel, "-400"); }).amplitude,
              GainFromDb(-300));
}

TEST(HotText, TextThatIsNoNumberChangesNothing) {
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) { hands.FocusAndType(test::kFrequency, "abc"); }), 1000.0F);
    EXPECT_EQ(FrequencyAfter([](DialogHands& hands) {
                  hands.FocusAndType(test::kFrequency, "");
                  hands.Press(Qt::Key_Delete);
              }),
              1000.0F);
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
    EXPECT_EQ(After(2, [](DialogHands& hands) { hands.Drag(test::kLevel, -10); }).amplitude, GainFromDb(-13.04F));
}

TEST(HotText, ShowsWhatItHasBecomeAtEveryStep) {
    (void)EditWith(ClipWith(1), [](DialogHands& hands) {
        hands.Wheel(test::kFrequency, 1);
        EXPECT_EQ(hands.Shown(test::kFrequency), "1010 Hz");
        hands.Wheel(test::kFrequency, 1);
        EXPECT_EQ(hands.Shown(test::kFrequency), "1020 Hz");
        hands.Drag(test::kLevel, -20);
        EXPECT_EQ(hands.Shown(test::kLevel), "-14.04 dB");
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
        EXPECT_EQ(hands.Shown(test::kLevel), "-12,04 dB");
        hands.FocusAndType(test::kFrequency, "440,5");
    });
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(frequency, 440.5F);
}

}  // namespace
