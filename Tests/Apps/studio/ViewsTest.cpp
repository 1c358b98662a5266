#include <lineup/Exporter.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Export/TimeLeft.h"
#include "Apps/studio/Views/CardPicture.h"
#include "Apps/studio/Views/LanePainter.h"
#include "Apps/studio/Views/LaneSpan.h"
#include "Apps/studio/Views/MeterBallistics.h"
#include "Apps/studio/Views/PixelReadout.h"
#include "Apps/studio/Views/ScopeView.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <gtest/gtest.h>

#include <QImage>
#include <vector>

namespace {

using studio::CardPicture;
using studio::LaneSpan;
using studio::Matrix;
using studio::MeterBallistics;
using studio::Ycc;

const lineup::Clip& TheClip() {
    static const lineup::Clip clip(test::ThePlugin());
    return clip;
}

// 75 % yellow of the card's numbers, 161, 44, 142 in 8 bits.
constexpr Ycc kYellow = {145.0F / 219, -84.0F / 224, 14.0F / 224};

TEST(Colour, YellowIsRedAndGreen) {
    const studio::Rgb rgb = studio::ToRgb(kYellow, Matrix::Bt601);
    EXPECT_NEAR(rgb.r, 0.75, 0.005);
    EXPECT_NEAR(rgb.g, 0.75, 0.005);
    EXPECT_NEAR(rgb.b, 0, 0.005);
}

TEST(Colour, CodesAreThoseOfLegalRangeAndGoBeyondIt) {
    EXPECT_EQ(studio::LumaCode10(0), 64);
    EXPECT_EQ(studio::LumaCode10(1), 940);
    EXPECT_EQ(studio::LumaCode10(-0.02F), 46);
    EXPECT_EQ(studio::ChromaCode10(0), 512);
    EXPECT_EQ(studio::ChromaCode10(-0.5F), 64);
    EXPECT_EQ(studio::ChromaCode10(0.5F), 960);
}

TEST(CardPicture, HoldsTheFramesValuesAndShowsThemOnTheScreen) {
    const CardPicture picture(TheClip(), {}, Matrix::Bt601);
    const Ycc yellow = picture.At(520, 300);
    EXPECT_FLOAT_EQ(yellow.y, kYellow.y);
    EXPECT_FLOAT_EQ(yellow.cb, kYellow.cb);
    EXPECT_FLOAT_EQ(yellow.cr, kYellow.cr);
    const QColor screen = picture.Screen().pixelColor(520, 300);
    EXPECT_NEAR(screen.red(), 191, 1);
    EXPECT_NEAR(screen.green(), 191, 1);
    EXPECT_NEAR(screen.blue(), 0, 1);
}

// 168, 44, 136 in 8 bits: what an HD file holds for 75 % yellow.
TEST(CardPicture, HoldsWhatAnHdExportWillHold) {
    const CardPicture picture(TheClip(), {}, studio::MatrixOfExport(1080));
    EXPECT_EQ(picture.ShownMatrix(), Matrix::Bt709);
    const Ycc yellow = picture.At(520, 300);
    EXPECT_NEAR(yellow.y, 152.0F / 219, 0.5F / 219);
    EXPECT_NEAR(yellow.cb, -84.0F / 224, 0.5F / 224);
    EXPECT_NEAR(yellow.cr, 8.0F / 224, 0.5F / 224);
    EXPECT_EQ(picture.Screen(), CardPicture(TheClip(), {}, Matrix::Bt601).Screen());
    EXPECT_EQ(studio::MatrixOfExport(576), Matrix::Bt601);
}

TEST(CardPicture, ListsEveryLumaValueOfAColumn) {
    const CardPicture picture(TheClip(), {}, Matrix::Bt601);
    int pixels = 0;
    float before = -1;
    for (const studio::LumaCount& count : picture.LumaOf(520)) {
        EXPECT_GT(count.luma, before);
        before = count.luma;
        pixels += count.pixels;
    }
    EXPECT_EQ(pixels, 1080);
    EXPECT_EQ(picture.LumaOf(0).size(), 4U);  // the four bands of the left edge
}

TEST(CardPicture, ShapeAndMatrixAreThoseThatAnExportIsTaggedWith) {
    const test::TemporaryFolder folder;
    struct Size {
        int width;
        int height;
    };
    for (const Size size : {Size{720, 576}, Size{720, 486}, Size{720, 480}, Size{1280, 720}, Size{720, 720}}) {
        lineup::ExportSettings settings;
        settings.target = folder.Path() / "card.mov";
        settings.width = size.width;
        settings.height = size.height;
        settings.frames = 1;
        settings.overwrite = true;
        const auto report = lineup::Export(TheClip(), settings);
        const CardPicture picture(TheClip(), {.width = size.width, .height = size.height}, Matrix::Bt601);
        EXPECT_DOUBLE_EQ(picture.PixelAspect(),
                         static_cast<double>(report.video->sampleAspect.num) / report.video->sampleAspect.den);
        EXPECT_EQ(report.video->colour == "bt709", studio::MatrixOfExport(size.height) == Matrix::Bt709);
    }
}

TEST(ScopeView, DrawsEveryBarAtItsLuma) {
    studio::ScopeView scope;
    scope.resize(640, 400);
    const auto picture = std::make_shared<CardPicture>(TheClip(), lineup::PictureFormat(), Matrix::Bt709);
    scope.SetPicture(picture);
    const QImage image = scope.grab().toImage().scaled(scope.size());
    const int left = scope.fontMetrics().horizontalAdvance("100") + 14;  // where the plot begins
    const auto x = [&](int column) { return left + (scope.width() - 10 - left) * column / 1920; };
    const auto brightest = [&](int at, double luma) {
        int best = 0;
        for (int y = static_cast<int>(scope.Y(luma)) - 1; y <= static_cast<int>(scope.Y(luma)) + 1; ++y) {
            best = std::max(best, image.pixelColor(at, y).green());
        }
        return best;
    };
    for (const int column : {520, 720, 1000, 1500}) {
        const double luma = static_cast<double>(picture->At(column, 100).y);
        EXPECT_GT(brightest(x(column), luma), 150) << column;
        EXPECT_LT(brightest(x(column), luma + 0.025), 100) << column;
    }
}

TEST(PixelReadout, SaysPercentAndCodes) {
    studio::PixelReadout readout;
    readout.Show({7, 9}, kYellow, Matrix::Bt601);
    EXPECT_EQ(readout.Text(),
              QString::fromUtf8("x 7 y 9  BT.601  Y\u2032 66.2 % 644  Cb \u221237.5 % 176  Cr 6.3 % 568  "
                                "R\u2032 75.0 % 721  G\u2032 74.7 % 718  B\u2032 \u22120.2 % 62"));
    readout.Clear();
    EXPECT_EQ(readout.Text(), "");
}

TEST(LaneSpan, BeginsWithAllOfTheClip) {
    LaneSpan span;
    span.SetWidth(100);
    span.SetClip(48000);
    EXPECT_TRUE(span.ShowsAll());
    EXPECT_DOUBLE_EQ(span.X(24000), 50);
    EXPECT_EQ(span.Sample(50), 24000);
    EXPECT_EQ(span.Sample(-5), 0);
    EXPECT_EQ(span.Sample(500), 48000);
}

TEST(LaneSpan, ZoomsAboutAPoint) {
    LaneSpan span;
    span.SetWidth(100);
    span.SetClip(48000);
    span.Zoom(4, 75);
    EXPECT_EQ(span.Sample(75), 36000);
    EXPECT_DOUBLE_EQ(span.Visible(), 12000);
    EXPECT_EQ(span.Start(), 27000);
}

TEST(LaneSpan, StaysWithinTheClip) {
    LaneSpan span;
    span.SetWidth(100);
    span.SetClip(48000);
    span.Zoom(2, 0);
    span.ScrollTo(1'000'000);
    EXPECT_EQ(span.Start(), 24000);
    span.ScrollTo(-7);
    EXPECT_EQ(span.Start(), 0);
    span.Zoom(0.001, 20);
    EXPECT_TRUE(span.ShowsAll());
    EXPECT_EQ(span.Start(), 0);
}

TEST(LaneSpan, ZoomsNoDeeperThanThereIsSomethingToSee) {
    LaneSpan span;
    span.SetWidth(100);
    span.SetClip(48000);
    span.Zoom(1e12, 0);
    EXPECT_DOUBLE_EQ(span.SamplesPerPixel(), LaneSpan::kLeastSamplesPerPixel);
    span.SetClip(1);  // shorter than that
    EXPECT_DOUBLE_EQ(span.Visible(), 1);
}

TEST(MeterBallistics, RisesAtOnceAndFallsTwentyDecibelsIn1Point7Seconds) {
    MeterBallistics bar;
    bar.Update(1, 0.016);
    EXPECT_DOUBLE_EQ(bar.LevelDb(), 0);
    bar.Update(0, 1.7);
    EXPECT_NEAR(bar.LevelDb(), -20, 1e-9);
}

TEST(MeterBallistics, HoldsThePeakForAWhile) {
    MeterBallistics bar;
    bar.Update(0.5, 0.016);
    bar.Update(0.1, 1.4);
    EXPECT_NEAR(bar.HoldDb(), -6.02, 0.01);
    bar.Update(0.1, 0.2);
    EXPECT_LT(bar.HoldDb(), -6.1);
}

TEST(MeterBallistics, HoldsAnEqualPeakFromThenOn) {
    MeterBallistics bar;
    bar.Update(0.5, 0.016);
    bar.Update(0.1, 1.4);
    bar.Update(0.5, 0.016);
    bar.Update(0.1, 1.4);
    EXPECT_NEAR(bar.HoldDb(), -6.02, 0.01);
}

TEST(TimeLeft, IsTheRestAtThePaceSoFar) {
    EXPECT_EQ(studio::TimeLeftWords(0.25, 2), "about 6 s left");
    EXPECT_EQ(studio::TimeLeftWords(0.01, 1), "about 1 min 39 s left");
    EXPECT_EQ(studio::TimeLeftWords(0.5, 0.1), "");
    EXPECT_EQ(studio::TimeLeftWords(0, 10), "");
}

TEST(LanePainter, CoversThePixelsAtABoxesEndsInPart) {
    lanes::Drawing drawing;
    drawing.boxes = {{{0, 0, 4, 5}, 0x000000}, {{1, 1.5, 2, 1.7}, 0xFFFFFF}, {{-9, 4, 99, 99}, 0xFF0000, 0.2}};
    const QImage image = studio::Paint(drawing, {4, 5}, {});
    const std::vector<QRgb> outside = {qRgb(0, 0, 0), qRgb(0, 0, 0), qRgb(0, 0, 0), qRgb(0, 0, 0), qRgb(51, 0, 0)};
    const std::vector<QRgb> inside = {qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(255, 255, 255), qRgb(51, 51, 51),
                                      qRgb(51, 0, 0)};
    for (int y = 0; y < 5; ++y) {
        const auto row = static_cast<std::size_t>(y);
        EXPECT_EQ(image.pixel(0, y), outside[row]) << y;
        EXPECT_EQ(image.pixel(1, y), inside[row]) << y;
        EXPECT_EQ(image.pixel(2, y), inside[row]) << y;
        EXPECT_EQ(image.pixel(3, y), outside[row]) << y;
    }
}

TEST(LanePainter, DrawsTheTextsThatAreListed) {
    lanes::Drawing drawing;
    drawing.boxes = {{{0, 0, 60, 30}, 0x000000}};
    drawing.labels = {{"88", {20, 0x00FF00, true}, {10, 5, 30, 15}}};
    const QImage image = studio::Paint(drawing, {60, 30}, {});
    QRect ink;
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 60; ++x) {
            ink |= qGreen(image.pixel(x, y)) > 128 ? QRect(x, y, 1, 1) : QRect();
        }
    }
    EXPECT_NEAR(ink.left(), 10, 3);
    EXPECT_NEAR(ink.top(), 5, 2);
    EXPECT_NEAR(ink.bottom(), 19, 2);
}

TEST(ClipWords, SayThatAnUnknownIdentIsSilent) {
    lineup::BarsAndToneInfo settings;
    settings.identifyChannels = 1;
    settings.identifierFormat = static_cast<lineup::IdentifierFormat>(7);
    EXPECT_EQ(studio::SignalWords(lineup::Clip(test::ThePlugin(), settings)), "unknown ident 7: silent");
}

TEST(ClipWords, SayWhatAPersonWouldSay) {
    EXPECT_EQ(studio::LevelWords(0.125), QString::fromUtf8("\u221218.06 dBFS"));
    EXPECT_EQ(studio::LevelWords(0), "silence");
    EXPECT_EQ(studio::FrameRateWords({30000, 1001}), "29.97");
    EXPECT_EQ(studio::TimeWords(59.9996), "1:00.000");
    EXPECT_EQ(studio::TimeWords(3661.5), "1:01:01.500");
    EXPECT_EQ(studio::PictureWords({.width = 720, .height = 576}),
              QString::fromUtf8("720 \u00D7 576 \u00B7 25 fps \u00B7 SD card"));
}

}  // namespace
