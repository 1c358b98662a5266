#include <lineup/Exporter.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Export/TimeLeft.h"
#include "Apps/studio/Views/CardPicture.h"
#include "Apps/studio/Views/LanePainter.h"
#include "Apps/studio/Views/LaneSpan.h"
#include "Apps/studio/Views/MeterBallistics.h"
#include "Apps/studio/Views/MeterView.h"
#include "Apps/studio/Views/PixelReadout.h"
#include "Apps/studio/Views/Probes.h"
#include "Apps/studio/Views/VectorscopeView.h"
#include "Apps/studio/Views/WaveformView.h"
#include "Apps/studio/Window/Theme.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <memory>
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
    for (const studio::LevelCount& count : picture.LevelsOf(studio::Component::Luma, 520)) {
        EXPECT_GT(count.value, before);
        before = count.value;
        pixels += count.pixels;
    }
    EXPECT_EQ(pixels, 1080);
    EXPECT_EQ(picture.LevelsOf(studio::Component::Luma, 0).size(), 4U);  // the four bands of the left edge
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

std::shared_ptr<const CardPicture> HdPicture() {
    static const auto picture = std::make_shared<const CardPicture>(TheClip(), lineup::PictureFormat(), Matrix::Bt709);
    return picture;
}

// Bars, from their columns.
constexpr std::array<int, 4> kColumns = {520, 720, 1000, 1500};

// The brightest of a colour's parts about a point.
int Brightest(const QImage& image, QPointF at) {
    int best = 0;
    for (int y = static_cast<int>(at.y()) - 1; y <= static_cast<int>(at.y()) + 1; ++y) {
        for (int x = static_cast<int>(at.x()) - 1; x <= static_cast<int>(at.x()) + 1; ++x) {
            const QColor colour = image.pixelColor(x, y);
            best = std::max({best, colour.red(), colour.green(), colour.blue()});
        }
    }
    return best;
}

TEST(WaveformView, DrawsEveryBarAtItsLuma) {
    studio::WaveformView scope(studio::WaveformView::Kind::Luma);
    scope.resize(640, 400);
    scope.SetPicture(HdPicture());
    const QImage image = scope.grab().toImage().scaled(scope.size());
    for (const int column : kColumns) {
        const double luma = static_cast<double>(HdPicture()->At(column, 100).y);
        EXPECT_GT(Brightest(image, {scope.X(0, column), scope.Y(luma)}), 150) << column;
        EXPECT_LT(Brightest(image, {scope.X(0, column), scope.Y(luma + 0.035)}), 100) << column;
    }
}

TEST(WaveformView, AsAParadeDrawsRedGreenAndBlueBesideOneAnother) {
    studio::WaveformView parade(studio::WaveformView::Kind::Parade);
    parade.resize(900, 400);
    parade.SetPicture(HdPicture());
    const QImage image = parade.grab().toImage().scaled(parade.size());
    const QPointF place(parade.X(0, 520), parade.Y(0.75));  // yellow's red
    EXPECT_GT(Brightest(image, place), 150);
    EXPECT_GT(image.pixelColor(place.toPoint()).red(), image.pixelColor(place.toPoint()).blue());
    EXPECT_GT(Brightest(image, {parade.X(1, 520), parade.Y(0.75)}), 150);
    EXPECT_GT(Brightest(image, {parade.X(2, 520), parade.Y(0)}), 150);
    EXPECT_LT(Brightest(image, {parade.X(2, 520), parade.Y(0.4)}), 120);
}

// 75 % bars in 8 bits by BT.709: yellow 168, 44, 136.
TEST(VectorscopeView, DrawsTheBarsInTheTargetsOf75Percent) {
    studio::VectorscopeView scope;
    scope.resize(400, 400);
    scope.SetPicture(HdPicture());
    const QImage image = scope.grab().toImage().scaled(scope.size());
    EXPECT_GT(Brightest(image, scope.Place(-84.0 / 224, 8.0 / 224)), 200);
    EXPECT_GT(Brightest(image, scope.Place(0, 0)), 200);  // grey, black, white
    EXPECT_LT(Brightest(image, scope.Place(0.3, -0.3)), 30);
    const double half = studio::VectorscopeView::kTargetReach;
    const QPointF corner = scope.Place(-0.5 * 0.75 - half, 0.75 * 0.0458 + half);  // of yellow's target
    EXPECT_GT(Brightest(image, corner), 90);
    EXPECT_GT(Brightest(image, scope.Place(-0.5 - 1.4 * half, 0.0458 + 1.4 * half)), 90);  // and of 100 %
}

QString ReadAt(studio::Scope& scope, QPointF place) {
    QTest::mouseMove(&scope, place.toPoint());
    QMouseEvent move(QEvent::MouseMove, place, scope.mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&scope, &move);
    return scope.Readout();
}

TEST(Scope, ReadsThePlaceUnderThePointer) {
    studio::VectorscopeView vectorscope;
    studio::WaveformView parade(studio::WaveformView::Kind::Parade);
    for (studio::Scope* const scope :
         {static_cast<studio::Scope*>(&vectorscope), static_cast<studio::Scope*>(&parade)}) {
        scope->resize(900, 900);
        EXPECT_EQ(ReadAt(*scope, QPointF(400, 400)), "") << "there is no picture yet";
        scope->SetPicture(HdPicture());
    }
    EXPECT_EQ(ReadAt(vectorscope, vectorscope.Place(0, 0)), QString::fromUtf8("Cb 0.0 % 512  Cr 0.0 % 512  0\u00B0"));
    const QString magenta = ReadAt(vectorscope, vectorscope.Place(0.25, 0.25));
    EXPECT_TRUE(magenta.contains(QString::fromUtf8(" 45\u00B0")) && magenta.startsWith("Cb 2")) << qPrintable(magenta);
    const QString green = ReadAt(parade, {parade.X(1, 960), parade.Y(0.5)});
    EXPECT_TRUE(green.contains(QString::fromUtf8("G\u2032 50.")) || green.contains(QString::fromUtf8("G\u2032 49.")))
        << qPrintable(green);
    EXPECT_TRUE(QRegularExpression("^x 9[56]\\d ").match(green).hasMatch()) << qPrintable(green);
}

TEST(Scope, ArrowKeysLeadTheReadout) {
    studio::VectorscopeView scope;
    scope.resize(400, 400);
    scope.SetPicture(HdPicture());
    for (int press = 0; press < 3; ++press) {
        QTest::keyClick(&scope, Qt::Key_Right, Qt::ShiftModifier);
    }
    EXPECT_FALSE(scope.Readout().startsWith("Cb 0.0 %")) << qPrintable(scope.Readout());
    EXPECT_TRUE(scope.Readout().contains("Cr 0.0 % 512"));
    EXPECT_EQ(scope.accessibleDescription(), scope.Readout());
}

TEST(Scope, MarksProbesWhereTheirPixelsShow) {
    studio::VectorscopeView scope;
    scope.resize(400, 400);
    scope.SetPicture(HdPicture());
    const QImage without = scope.grab().toImage().scaled(scope.size());
    scope.SetProbes({{520, 300}});
    const QImage with = scope.grab().toImage().scaled(scope.size());
    const QPointF ring = scope.Place(-84.0 / 224, 8.0 / 224) + QPointF(-4, 0);
    EXPECT_GT(Brightest(with, ring), Brightest(without, ring) + 40);
}

// 168, 44, 136: what an HD file holds for 75 % yellow.
TEST(PixelReadout, SaysPercentAndCodesOfThePointerAndOfEachProbe) {
    const auto sd = std::make_shared<const CardPicture>(TheClip(), lineup::PictureFormat(), Matrix::Bt601);
    studio::PixelReadout readout;
    EXPECT_EQ(readout.Text(), "");
    readout.SetPicture(sd);
    readout.SetProbes({{10, 9}});
    const QString probe = readout.Text();
    EXPECT_TRUE(probe.startsWith("1  x 10 y 9  BT.601  ")) << qPrintable(probe);
    readout.PointAt(QPoint(520, 300));
    EXPECT_EQ(readout.Text(),
              QString::fromUtf8("x 520 y 300  BT.601  Y\u2032 66.2 % 644  Cb \u221237.5 % 176  Cr 6.3 % 568  "
                                "R\u2032 75.0 % 721  G\u2032 74.7 % 718  B\u2032 \u22120.2 % 62\n") +
                  probe);
    EXPECT_EQ(readout.accessibleDescription(), readout.Text());
}

TEST(PixelReadout, GoesOnInFurtherLinesWhereThereIsLittleRoom) {
    studio::PixelReadout readout;
    const int wide = readout.heightForWidth(readout.sizeHint().width());
    EXPECT_EQ(readout.heightForWidth(readout.sizeHint().width() - 1), 2 * wide);
    EXPECT_EQ(readout.heightForWidth(readout.minimumSizeHint().width()), 2 * wide);
}

TEST(Probes, AreTakenAwayByPinningThereAgain) {
    studio::Probes probes;
    probes.Toggle({100, 100}, 5);
    probes.Toggle({200, 100}, 5);
    probes.Toggle({102, 101}, 5);
    EXPECT_EQ(probes.Pixels(), (std::vector<QPoint>{{200, 100}}));
    for (int i = 0; i < 7; ++i) {
        probes.Toggle({10 * i, 0}, 5);
    }
    EXPECT_EQ(probes.Pixels().size(), studio::Probes::kMost);
    EXPECT_EQ(probes.Pixels().front(), QPoint(10, 0));
    probes.KeepWithin({35, 35});
    EXPECT_EQ(probes.Pixels().size(), 3U);
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

TEST(MeterView, HasAFigureOfTwoDecimalsAboveEachBarAndTheBarsStandOut) {
    for (const studio::Appearance appearance : {studio::Appearance::Light, studio::Appearance::Dark}) {
        studio::Theme::Apply(appearance);
        const studio::Theme& theme = studio::Theme::Current();
        EXPECT_GT(std::abs(theme.meterOff.lightness() - theme.window.lightness()), 25);
        EXPECT_LT(theme.surround.lightness(), 64) << "a dark surround, which tints nothing";
        EXPECT_LE(std::abs(theme.surround.red() - theme.surround.blue()), 2);
    }
    studio::MeterView meters;
    meters.SetChannels({{0, "L"}, {1, "R"}});
    studio::PeakBank peaks(2);
    const std::array<float, 1> sample = {0.125F};
    peaks.Add(0, sample);
    peaks.Add(1, sample);
    meters.Advance(&peaks, 0.5);
    EXPECT_EQ(meters.accessibleDescription(), QString::fromUtf8("L \u221218.06 dBFS, R \u221218.06 dBFS"));
}

TEST(TimeLeft, IsTheRestAtThePaceSoFar) {
    EXPECT_EQ(studio::TimeLeftWords(0.25, 2), "About 6 s left");
    EXPECT_EQ(studio::TimeLeftWords(0.01, 1), "About 1 min 39 s left");
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
    EXPECT_EQ(studio::SignalWords(lineup::Clip(test::ThePlugin(), settings)), "Unknown ident 7: silent");
}

TEST(ClipWords, SayWhatAPersonWouldSay) {
    EXPECT_EQ(studio::LevelWords(0.125), QString::fromUtf8("\u221218.06 dBFS"));
    EXPECT_EQ(studio::LevelWords(0), "Silence");
    EXPECT_EQ(studio::FrameRateWords({30000, 1001}), "29.97");
    EXPECT_EQ(studio::TimeWords(59.9996), "1:00.000");
    EXPECT_EQ(studio::TimeWords(3661.5), "1:01:01.500");
    EXPECT_EQ(studio::PictureWords({.width = 720, .height = 576}),
              QString::fromUtf8("720 \u00D7 576 \u00B7 25 fps \u00B7 SD card"));
}

}  // namespace
