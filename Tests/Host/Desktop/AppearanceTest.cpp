#include "Tests/Host/Desktop/OpenDialog.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QLineEdit>

namespace {

using test::ClipWith;
using test::DialogHands;
using test::EditWith;

// How many pixels of a widget's picture have about this colour.
int PixelsLike(QWidget& widget, const QColor& colour) {
    const QImage image = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            const int distance = std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                                 std::abs(pixel.blue() - colour.blue());
            count += distance < 48 ? 1 : 0;
        }
    }
    return count;
}

QString AccessibleName(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

TEST(Appearance, NumbersLookLikeLinksUntilTheyAreDisabled) {
    (void)EditWith(ClipWith(2), [](DialogHands& hands) {
        QWidget& number = hands.Find(test::kFrequency);
        const QColor link = number.palette().color(QPalette::Link);
        EXPECT_GT(PixelsLike(number, link), 20);
        hands.Click("identifyChannelsBtn");
        EXPECT_EQ(PixelsLike(number, link), 0);
        hands.ClickCloseBox();
    });
}

TEST(Appearance, AWideNumberHasRoomInFull) {
    BarsAndToneInfo settings = ClipWith(1);
    settings.frequency = 123456789.0F;
    (void)EditWith(settings, [](DialogHands& hands) {
        QWidget& number = hands.Find(test::kFrequency);
        EXPECT_GE(number.width(), number.fontMetrics().horizontalAdvance(hands.Shown(test::kFrequency)));
        hands.ClickCloseBox();
    });
}

TEST(Appearance, AFieldFitsItsLongestValueAtEverySampleRate) {
    for (const float rateHz : {8000.0F, 48000.0F, 192000.0F}) {
        BarsAndToneInfo settings = ClipWith(2);
        settings.sampleRate = rateHz;
        (void)EditWith(settings, [&](DialogHands& hands) {
            for (const auto& [number, longest] :
                 {std::pair(test::kFrequency, QString::number(rateHz / 2 - 1) + ".9876 Hz"),
                  std::pair(test::kLevel, QString("-299.8765 dB"))}) {
                const QWidget& field = *hands.Find(number).findChild<QLineEdit*>();
                EXPECT_GE(field.width(), field.fontMetrics().horizontalAdvance(longest) + 4) << rateHz << number;
            }
            hands.ClickCloseBox();
        });
    }
}

TEST(Appearance, RangesAreShownWithTheirUnits) {
    BarsAndToneInfo settings = ClipWith(2);
    settings.sampleRate = 44100.0F;
    (void)EditWith(settings, [](DialogHands& hands) {
        EXPECT_EQ(hands.Find<QLabel>("frequencyRange").text(), "1 to 22050 Hz");
        EXPECT_EQ(hands.Find<QLabel>("amplitudeRange").text(), "-300 to 0 dB");
        hands.ClickCloseBox();
    });
}

// A list's name is what is chosen in it; what it is for is said by the label that is its own.
TEST(Appearance, TheListOfSequencesHasItsLabel) {
    (void)EditWith(ClipWith(2), [](DialogHands& hands) {
        auto* const list = QAccessible::queryAccessibleInterface(&hands.Find("identifierFormatPopup"));
        const auto labels = list->relations(QAccessible::Label);
        ASSERT_EQ(labels.size(), 1);
        EXPECT_EQ(labels.front().first->object(), &hands.Find("identifierFormatLabel"));
        hands.ClickCloseBox();
    });
}

TEST(Appearance, ControlsTellAScreenReaderTheirNames) {
    (void)EditWith(ClipWith(2), [](DialogHands& hands) {
        EXPECT_TRUE(AccessibleName(hands.Find(test::kFrequency)).startsWith("Frequency"));
        EXPECT_TRUE(AccessibleName(hands.Find("amplitudeHotTextNumber")).startsWith("Level"));
        EXPECT_EQ(AccessibleName(hands.Find("steadyTonesBtn")), "Steady tone");
        hands.ClickCloseBox();
    });
}

}  // namespace
