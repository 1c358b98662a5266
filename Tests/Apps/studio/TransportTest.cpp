#include "Tests/Apps/studio/StudioHands.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QSettings>
#include <QSlider>
#include <QSpinBox>
#include <QWheelEvent>

namespace {

using test::StudioTest;
using test::WaitFor;

class Transport : public StudioTest {
protected:
    studio::Player& Sound() { return Window().Sound(); }
    studio::LanesView& Lanes() { return Find<studio::LanesView>("lanes"); }

    void Wheel(int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const QPointF at(Lanes().width() / 2.0, Lanes().height() / 2.0);
        QWheelEvent event(at, Lanes().mapToGlobal(at), {}, {0, notches * 120}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&Lanes(), &event);
    }
};

TEST_F(Transport, KeysSeek) {
    Press(Qt::Key_Right);
    EXPECT_EQ(Sound().Position(), 1920);  // a 25th of a second
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Sound().Position(), 49920);
    Press(Qt::Key_Left);
    EXPECT_EQ(Sound().Position(), 48000);
    EXPECT_EQ(Find<QLabel>("time").text(), "0:01.000");
    Press(Qt::Key_End);
    EXPECT_EQ(Sound().Position(), 240000);
    Press(Qt::Key_Home);
    Press(Qt::Key_Left);
    EXPECT_EQ(Sound().Position(), 0);
}

// In Arabic, where the window runs from right to left and digits are others, and in Turkish.
TEST_F(Transport, SaysAndTakesTheSameNumbersInEveryCountry) {
    for (const QLocale& locale : {QLocale("ar_EG"), QLocale("tr_TR")}) {
        QLocale::setDefault(locale);
        QGuiApplication::setLayoutDirection(locale.textDirection());
        OpenWindow();
        EXPECT_EQ(Find<QLabel>("lengthText").text(), QString::fromUtf8("/ 0:05.000 \u00B7 125 frames"));
        auto& frame = Find<QSpinBox>("frame");
        frame.setFocus();
        frame.selectAll();
        QTest::keyClicks(&frame, "50");
        QTest::keyClick(&frame, Qt::Key_Return);
        EXPECT_EQ(Sound().Position(), 50 * 1920) << locale.name().toStdString();
        EXPECT_EQ(Find<QLabel>("time").text(), "0:02.000");
        Press(Qt::Key_Right);
        EXPECT_EQ(Sound().Position(), 51 * 1920);
    }
    QLocale::setDefault(QLocale::c());
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

// What the program remembers has no place where nobody can write.
TEST_F(Transport, PlaysWhereThereIsNoHomeFolder) {
    const QString folder =
        QFileInfo(QSettings(QSettings::IniFormat, QSettings::UserScope, "any").fileName()).absolutePath();
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/proc");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, "/proc/nowhere");
    OpenWindow();
    Press(Qt::Key_Space);
    WaitFor([this] { return Sound().Position() > 0; }, "it plays");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder);
    qputenv("HOME", home);
}

TEST_F(Transport, AClickIntoTheLanesSeeksToTheNearestFrame) {
    const int x = static_cast<int>(Lanes().X(120000));  // in the middle of frame 62
    QTest::mouseClick(&Lanes(), Qt::LeftButton, {}, QPoint(x, Lanes().height() / 2));
    EXPECT_NEAR(static_cast<double>(Sound().Position()), 120000, 960 + Lanes().Span().SamplesPerPixel());
    EXPECT_EQ(Sound().Position() % 1920, 0);
}

TEST_F(Transport, FramesOf2997AreSteppedThroughWithoutDrift) {
    lineup::ClipDocument ntsc;
    ntsc.picture.frameRate = {30000, 1001};
    ntsc.lengthFrames = 300;
    Window().Document().New(ntsc);
    for (int frame = 1; frame <= 7; ++frame) {
        Press(Qt::Key_Right);
        EXPECT_EQ(Sound().Position(), std::llround(frame * 1601.6));
    }
    for (int frame = 6; frame >= 0; --frame) {
        Press(Qt::Key_Left);
        EXPECT_EQ(Sound().Position(), std::llround(frame * 1601.6));
    }
}

TEST_F(Transport, FrameNumberAndTimeCodeAreShownAndTyped) {
    lineup::ClipDocument blits = test::DocumentWith("blits");
    blits.lengthFrames = 670;
    Window().Document().New(blits);
    EXPECT_EQ(Find<QLabel>("lengthText").text(), QString::fromUtf8("/ 0:26.800 \u00B7 670 frames \u00B7 2 cycles"));
    auto& frame = Find<QSpinBox>("frame");
    auto& timecode = Find<QLineEdit>("timecode");
    Press(Qt::Key_Right);
    EXPECT_EQ(frame.value(), 1);
    EXPECT_EQ(timecode.text(), "00:00:00:01");
    frame.setFocus();
    frame.selectAll();
    QTest::keyClicks(&frame, "42");
    QTest::keyClick(&frame, Qt::Key_Return);
    EXPECT_EQ(Sound().Position(), 42 * 1920);
    EXPECT_EQ(timecode.text(), "00:00:01:17");
    timecode.setFocus();
    timecode.setText("00:00:02:05");
    QTest::keyClick(&timecode, Qt::Key_Return);
    EXPECT_EQ(Sound().Position(), 55 * 1920);
    timecode.setText("00:00:02:25");  // there are 25 frames in a second, 0 to 24
    QTest::keyClick(&timecode, Qt::Key_Return);
    EXPECT_EQ(Sound().Position(), 55 * 1920);
}

TEST_F(Transport, SpacePlaysAndPauses) {
    Press(Qt::Key_Space);
    WaitFor([&] { return Sound().Position() > 4800; }, "the playhead moves");
    Press(Qt::Key_Space);
    EXPECT_FALSE(Sound().IsPlaying());
    const std::int64_t position = Sound().Position();
    EXPECT_EQ(position % 1920, 0);  // the start of a frame
    QApplication::processEvents();
    EXPECT_EQ(Sound().Position(), position);
}

TEST_F(Transport, WithoutLoopItStopsAtTheEndAndStartsAgainFromTheBeginning) {
    Press(Qt::Key_L);
    Press(Qt::Key_End);
    Press(Qt::Key_Left);
    Press(Qt::Key_Space);
    WaitFor([&] { return !Sound().IsPlaying(); }, "it ends");
    EXPECT_EQ(Sound().Position(), Sound().Length());
    Press(Qt::Key_Space);
    EXPECT_LT(Sound().Position(), Sound().Length() / 2);
}

TEST_F(Transport, WithLoopItGoesOnFromTheBeginning) {
    lineup::ClipDocument brief;
    brief.lengthFrames = 5;
    Window().Document().New(brief);
    Press(Qt::Key_Space);
    WaitFor([&] { return Sound().Position() > 4800; }, "it gets past the middle");
    WaitFor([&] { return Sound().Position() < 4800; }, "it begins again");
    EXPECT_TRUE(Sound().IsPlaying());
}

TEST_F(Transport, MetersShowTheLevelOfTheClip) {
    Press(Qt::Key_Space);
    const auto& meters = Find<studio::MeterView>("meters");
    WaitFor([&] { return meters.Bar(1).HoldDb() > -13; }, "the meter rises");
    EXPECT_NEAR(meters.Bar(0).HoldDb(), -12.04, 0.01);
    EXPECT_NEAR(meters.Bar(1).HoldDb(), -12.04, 0.01);
    Press(Qt::Key_Space);
    WaitFor([&] { return meters.IsAtRest(); }, "the meter falls");
}

TEST_F(Transport, AnEditWhilePlayingGoesOnAtTheSameTime) {
    Window().Document().New(test::DocumentWith("blits"));
    Sound().Seek(96000);
    Press(Qt::Key_Space);
    lineup::ClipDocument edited = Window().Document().Values();
    edited.settings.sampleRate = 96000;
    Window().Document().Edit(edited, "Edit");
    EXPECT_TRUE(Sound().IsPlaying());
    EXPECT_GE(Sound().Position(), 192000);
}

TEST_F(Transport, WithoutASoundDeviceItSaysSo) {
    EXPECT_EQ(Find<QLabel>("sound").text(), "No sound device: playing in silence");
}

TEST_F(Transport, VolumeAndMuteAreSetByKeysAndRemembered) {
    auto& volume = Find<QSlider>("volume");
    const auto gain = [&] { return Sound().Playback()->Loudness().Wanted(); };
    Press(Qt::Key_Space);
    EXPECT_EQ(gain(), 1.0F);
    volume.setFocus();
    QTest::keyClick(&volume, Qt::Key_PageDown);
    EXPECT_EQ(volume.toolTip(), QString::fromUtf8("Volume: \u22126 dB"));
    EXPECT_NEAR(gain(), 0.501F, 0.001F);
    Press(Qt::Key_M);
    EXPECT_EQ(gain(), 0.0F);
    QTest::keyClick(&volume, Qt::Key_Home);
    Press(Qt::Key_M);
    EXPECT_EQ(gain(), 0.0F) << "the slider's end is silence";
    QTest::keyClick(&volume, Qt::Key_PageUp);
    EXPECT_TRUE(CloseWindow());
    OpenWindow();
    EXPECT_EQ(Find<QSlider>("volume").value(), -35);
}

TEST_F(Transport, ADeviceThatIsNotThereKeepsItsPlaceInTheMenu) {
    QSettings().setValue("sound/device", "usb");
    OpenWindow();
    auto& menu = Find<QMenu>("devices");
    Q_EMIT menu.aboutToShow();
    ASSERT_GE(menu.actions().size(), 2);
    EXPECT_EQ(menu.actions().front()->text(), "Automatic");
    EXPECT_EQ(menu.actions().back()->text(), "usb (not there)");
    EXPECT_TRUE(menu.actions().back()->isChecked());
    menu.actions().front()->trigger();
    EXPECT_EQ(Sound().WantedDevice(), "");
}

TEST_F(Transport, AnHourIsAskedForOnceAndThePlayheadMovesWithoutAsking) {
    lineup::ClipDocument hour = test::DocumentWith("blits");
    hour.lengthFrames = 90000;
    Window().Document().New(hour);
    Lanes().repaint();
    const std::int64_t before = Lanes().Requests();
    for (int second = 0; second < 3600; second += 60) {
        Sound().Seek(second * std::int64_t{48000});
        Lanes().repaint();
    }
    EXPECT_EQ(Lanes().Requests(), before);
    Wheel(1);
    Lanes().repaint();
    EXPECT_EQ(Lanes().Requests(), before + 1);
}

TEST_F(Transport, TheWheelZoomsAboutThePointerAndWithShiftScrolls) {
    const double x = Lanes().width() / 2.0;
    const auto under = [&] { return Lanes().Span().Sample(x - Lanes().X(Lanes().Span().Start())); };
    const std::int64_t sample = under();
    const double before = Lanes().Span().SamplesPerPixel();
    Wheel(4);
    EXPECT_NEAR(Lanes().Span().SamplesPerPixel(), before / std::pow(1.25, 4), 1e-9);
    EXPECT_NEAR(static_cast<double>(under()), static_cast<double>(sample), before);
    const std::int64_t start = Lanes().Span().Start();
    Wheel(-1, Qt::ShiftModifier);
    EXPECT_GT(Lanes().Span().Start(), start);
    Press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_TRUE(Lanes().Span().ShowsAll());
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(Lanes().Span().SamplesPerPixel(), before / 2);
}

}  // namespace
