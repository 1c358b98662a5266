#include "Apps/studio/Window/ClipDialog.h"
#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QUrl>
#include <algorithm>
#include <vector>

namespace {

using studio::Act;
using test::DialogHands;
using test::SaidBy;
using test::StudioTest;
using test::WaitFor;
using testing::HasSubstr;

class StudioWindowTest : public StudioTest {};

TEST_F(StudioWindowTest, BeginsWithTheDefaultClipAndNothingToSave) {
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
    EXPECT_FALSE(Window().isWindowModified());
    EXPECT_EQ(Find<QLabel>("signal").text(), QString::fromUtf8("1000 Hz at \u221212.04 dBFS"));
}

TEST_F(StudioWindowTest, TheToneIsEditedInThePlugInsDialogOverTheWindow) {
    PressFor(Qt::Key_T, Qt::ControlModifier, [&](DialogHands& hands) {
        EXPECT_EQ(hands.Dialog().parentWidget(), &Window());
        hands.FocusAndType("frequencyHotTextNumber", "440");
        hands.Click("okButton");
    });
    EXPECT_EQ(Window().Document().Values().settings.frequency, 440.0F);
    EXPECT_THAT(Find<QLabel>("signal").text().toStdString(), HasSubstr("440 Hz"));
    EXPECT_TRUE(Window().isWindowModified());
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
    EXPECT_FALSE(Window().isWindowModified());
    Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Window().Document().Values().settings.frequency, 440.0F);
}

TEST_F(StudioWindowTest, ACancelledDialogIsNoStepOfUndo) {
    PressFor(Qt::Key_T, Qt::ControlModifier, [](DialogHands& hands) {
        hands.FocusAndType("frequencyHotTextNumber", "440");
        hands.Click("cancelButton");
    });
    EXPECT_EQ(Window().Document().Undo().count(), 0);
}

TEST_F(StudioWindowTest, SavesAndOpensWhatWasMade) {
    PressFor(Qt::Key_T, Qt::ControlModifier, [](DialogHands& hands) {
        hands.FocusAndType("frequencyHotTextNumber", "440");
        hands.Click("okButton");
    });
    const lineup::ClipDocument made = Window().Document().Values();
    SaveAs(InFolder("made"));
    EXPECT_EQ(lineup::ReadDocument(Folder() / "made.lineup"), made);
    EXPECT_FALSE(Window().isWindowModified());
    EXPECT_TRUE(CloseWindow());
    OpenWindow();
    PressFor(Qt::Key_O, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("fileNameEdit").setText(InFolder("made.lineup"));
        hands.Press(Qt::Key_Return);
    });
    EXPECT_EQ(Window().Document().Values(), made);
    EXPECT_EQ(Window().Document().Name(), "made");
    EXPECT_EQ(studio::RecentFiles::Files(), QStringList{InFolder("made.lineup")});
}

TEST_F(StudioWindowTest, ASaveThatFailsKeepsTheNameAndTheChanges) {
    SaveAs(InFolder("kept.lineup"));
    lineup::ClipDocument changed;
    changed.lengthFrames = 50;
    Window().Document().Edit(changed, "Change");
    EXPECT_THROW(Window().Document().SaveAs(InFolder("nowhere/lost.lineup")), lineup::Error);
    EXPECT_EQ(Window().Document().File(), InFolder("kept.lineup"));
    EXPECT_TRUE(Window().isWindowModified());
}

TEST_F(StudioWindowTest, ADamagedOrForeignDocumentGetsASentenceAndChangesNothing) {
    test::WriteFile(Folder() / "damaged.lineup", R"({"kind": "lineup", "version": 1, "settings": "00"})");
    test::WriteFile(Folder() / "foreign.lineup",
                    "\x7F"
                    "ELF");
    EXPECT_EQ(SaidBy([&] { Window().Open(InFolder("damaged.lineup")); }),
              "Cannot open " + (Folder() / "damaged.lineup").string() +
                  ": it is damaged: \"settings\" must be 64 hexadecimal digits.");
    EXPECT_THAT(SaidBy([&] { Window().Open(InFolder("foreign.lineup")); }), HasSubstr("it is no Lineup document"));
    EXPECT_THAT(SaidBy([&] { Window().Open(InFolder("none.lineup")); }), HasSubstr("No such file"));
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
    EXPECT_TRUE(studio::RecentFiles::Files().isEmpty());
}

TEST_F(StudioWindowTest, ADocumentOfAClipThatCannotBeGetsASentence) {
    lineup::ClipDocument document;
    document.settings.numChannels = 0;
    WriteDocument(Folder() / "no-channels.lineup", document, false);
    EXPECT_THAT(SaidBy([&] { Window().Open(InFolder("no-channels.lineup")); }), HasSubstr("Cannot open a clip of 0"));
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
}

TEST_F(StudioWindowTest, ASampleRateTooLowForTheToneAsksWhatBecomesOfIt) {
    lineup::ClipDocument high;
    high.settings.frequency = 10000.0F;
    Window().Document().New(high);
    PressFor(Qt::Key_I, Qt::ControlModifier, [](DialogHands& hands) {
        auto& ok = *hands.Dialog().findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        auto& move = hands.Find<QCheckBox>("moveTone");
        auto& rate = hands.Find<QComboBox>("sampleRate");
        EXPECT_FALSE(move.isVisible());
        rate.setCurrentText("20001");
        EXPECT_TRUE(ok.isEnabled());  // just high enough
        rate.setCurrentText("20000");
        EXPECT_FALSE(ok.isEnabled());
        rate.setCurrentText("8000");
        EXPECT_EQ(hands.Find<QLabel>("clipProblem").text(),
                  "Frequency 10000 Hz: must be 1 Hz or more, and below 4000 Hz: at half the sample rate a sine is next "
                  "to silent.");
        EXPECT_FALSE(ok.isEnabled());
        move.click();
        EXPECT_TRUE(ok.isEnabled());
        ok.click();
    });
    lineup::ClipDocument low = high;
    low.settings.sampleRate = 8000.0F;
    low.settings.frequency = 1000.0F;
    EXPECT_EQ(Window().Document().Values(), low);
    Press(Qt::Key_Z, Qt::ControlModifier);  // rate and tone are one step
    EXPECT_EQ(Window().Document().Values(), high);
}

TEST_F(StudioWindowTest, AsksBeforeChangesAreLost) {
    lineup::ClipDocument changed;
    changed.lengthFrames = 50;
    Window().Document().Edit(changed, "Change");
    test::WithDialog([&] { EXPECT_FALSE(CloseWindow()); },
                     [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Cancel"); });
    test::WithDialog([&] { EXPECT_TRUE(CloseWindow()); },
                     [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Discard"); });
}

TEST_F(StudioWindowTest, SavingOnTheWayOutSaves) {
    lineup::ClipDocument changed;
    changed.lengthFrames = 50;
    Window().Document().Edit(changed, "Change");
    SaveAs(InFolder("kept.lineup"));
    changed.lengthFrames = 75;
    Window().Document().Edit(changed, "Change");
    test::WithDialog([&] { EXPECT_TRUE(CloseWindow()); },
                     [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Save"); });
    EXPECT_EQ(lineup::ReadDocument(Folder() / "kept.lineup").lengthFrames, 75);
}

TEST_F(StudioWindowTest, TakesADroppedDocument) {
    WriteDocument(Folder() / "dropped.lineup", test::DocumentWith("blits"), false);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(InFolder("dropped.lineup"))});
    QDragEnterEvent enter(QPoint(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Window(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Window(), &drop);
    WaitFor([&] { return Window().Document().Name() == "dropped"; }, "the document is opened");
    EXPECT_EQ(Find<QLabel>("signal").text(), "BLITS ident, 5.1");
}

TEST_F(StudioWindowTest, ANewClipIsWhatItsDialogSays) {
    PressFor(Qt::Key_N, Qt::ControlModifier, [](DialogHands& hands) {
        hands.Find<QComboBox>("channels").setFocus();
        QTest::keyClicks(&hands.Find("channels"), "5");
        hands.Find<QComboBox>("size").setCurrentIndex(4);
        hands.Find<QComboBox>("sampleRate").setCurrentText("96000");
        hands.Find<QDoubleSpinBox>("length").setValue(2);
        test::ClickButton(hands.Dialog(), "OK");
    });
    const lineup::ClipDocument& made = Window().Document().Values();
    EXPECT_EQ(made.settings.numChannels, 6U);
    EXPECT_EQ(made.settings.channelType, 3U);
    EXPECT_EQ(made.settings.sampleRate, 96000.0F);
    EXPECT_EQ(made.picture.width, 720);
    EXPECT_EQ(made.picture.height, 576);
    EXPECT_EQ(made.lengthFrames, 50);
}

TEST_F(StudioWindowTest, ClipSettingsLeftAsTheyAreChangeNothing) {
    lineup::ClipDocument odd = test::DocumentWith("ebu-5.1");
    odd.settings.sampleRate = 44055.94F;
    odd.picture.frameRate = {120, 1};
    odd.lengthFrames = 7;
    Window().Document().New(odd);
    PressFor(Qt::Key_I, Qt::ControlModifier, [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Cancel"); });
    studio::ClipDialog dialog(*test::ThePlugin(), odd, "Clip Settings", nullptr);
    EXPECT_EQ(dialog.Values(), odd);
}

TEST_F(StudioWindowTest, AnIdentThatDoesNotGoWithTheChannelsIsTakenOut) {
    Window().Document().New(test::DocumentWith("blits"));
    PressFor(Qt::Key_I, Qt::ControlModifier, [](DialogHands& hands) {
        QTest::keyClicks(&hands.Find("channels"), "S");
        test::ClickButton(hands.Dialog(), "OK");
    });
    EXPECT_EQ(Window().Document().Values().settings.numChannels, 2U);
    EXPECT_EQ(Window().Document().Values().settings.identifyChannels, 0U);
}

TEST_F(StudioWindowTest, RemembersHowItWasLeft) {
    Press(Qt::Key_W);
    Press(Qt::Key_L);
    Press(Qt::Key_D, Qt::ControlModifier);
    Window().resize(1000, 700);
    EXPECT_TRUE(CloseWindow());
    OpenWindow();
    EXPECT_TRUE(Find("scope").isVisible());
    EXPECT_FALSE(Window().Sound().Loop());
    EXPECT_TRUE(studio::Theme::Current().isDark);
    EXPECT_EQ(Window().size(), QSize(1000, 700));
}

TEST_F(StudioWindowTest, EveryCommandHasANameAndEveryShortcutIsItsOwn) {
    QStringList shortcuts;
    for (const QAction* const action : Window().Commands().findChildren<QAction*>()) {
        EXPECT_FALSE(action->text().isEmpty());
        for (const QKeySequence& keys : action->shortcuts()) {
            EXPECT_FALSE(shortcuts.contains(keys.toString())) << keys.toString().toStdString();
            shortcuts += keys.toString();
        }
    }
    EXPECT_GT(shortcuts.size(), 20);
}

TEST_F(StudioWindowTest, ReadsWhatTheExportWillHoldOrThePlugInsOwnNumbers) {
    auto& picture = Find<studio::PictureView>("picture");
    const auto yellow = [&] {
        WaitFor([&] { return !picture.Frame().isEmpty(); }, "the picture comes");
        const QRectF frame = picture.Frame();
        QTest::mouseMove(&picture, QPointF(frame.x() + frame.width() * 0.27, frame.y() + 20).toPoint());
        return Find<studio::PixelReadout>("readout").Text();
    };
    WaitFor([&] { return yellow().contains(QString::fromUtf8("BT.709  Y\u2032 69.3 %")); }, "the exported value");
    Window().Commands()[Act::OwnNumbers].trigger();
    WaitFor([&] { return yellow().contains(QString::fromUtf8("BT.601  Y\u2032 66.2 %")); }, "the plug-in's value");
}

TEST_F(StudioWindowTest, AClickOrEnterInThePicturePinsAPixelForEveryScope) {
    auto& picture = Find<studio::PictureView>("picture");
    const auto& readout = Find<studio::PixelReadout>("readout");
    WaitFor([&] { return !picture.Frame().isEmpty(); }, "the picture comes");
    Press(Qt::Key_V);
    Press(Qt::Key_R);
    EXPECT_TRUE(Find("vectorscope").isVisible() && Find("parade").isVisible());
    EXPECT_FALSE(Find("scope").isVisible());
    int height = readout.height();
    const auto clickYellow = [&] {
        const QRectF frame = picture.Frame();
        const QPointF at(frame.x() + frame.width() * 0.27, frame.y() + frame.height() * 0.1);
        QTest::mouseClick(&picture, Qt::LeftButton, {}, at.toPoint());
    };
    clickYellow();
    WaitFor([&] { return readout.height() > height; }, "the readout grows");
    height = readout.height();
    EXPECT_TRUE(readout.Text().contains("\n1  x 5")) << readout.Text().toStdString();
    picture.setFocus();
    QTest::keyClick(&picture, Qt::Key_Right, Qt::ShiftModifier);
    for (int step = 0; step < 5; ++step) {
        QTest::keyClick(&picture, Qt::Key_Down, Qt::ShiftModifier);
    }
    QTest::keyClick(&picture, Qt::Key_Return);
    EXPECT_TRUE(readout.Text().contains("\n2  x ")) << readout.Text().toStdString();
    WaitFor([&] { return readout.height() > height; }, "the readout grows");
    clickYellow();  // the first one goes
    WaitFor([&] { return readout.height() == height; }, "the readout shrinks");
    EXPECT_FALSE(readout.Text().contains("\n2  x "));
    Press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_FALSE(readout.Text().contains("1  x "));
}

// Each scope alone and two together, with few channels and many.
TEST_F(StudioWindowTest, FitsIntoNarrowWindowsWithoutCuttingOrOverlapping) {
    for (const char* const ident : {"ebu-stereo-1000", "blits"}) {
        Window().Document().New(test::DocumentWith(ident));
        for (const auto& scopes : std::vector<std::vector<Act>>{{}, {Act::Scope}, {Act::Parade, Act::Vectorscope}}) {
            for (const Act act : {Act::Scope, Act::Parade, Act::Vectorscope}) {
                Window().Commands()[act].setChecked(std::ranges::find(scopes, act) != scopes.end());
            }
            for (const QSize size : {QSize(660, 450), QSize(1000, 800)}) {
                Window().resize(size);
                QCoreApplication::processEvents();
                EXPECT_EQ(Window().size(), size) << ident << " " << scopes.size();
                for (const QLabel* const label : Window().findChildren<QLabel*>()) {
                    const bool isCut = qobject_cast<const studio::ElidedLabel*>(label) == nullptr &&
                                       label->isVisible() && label->width() < label->sizeHint().width();
                    EXPECT_FALSE(isCut) << label->objectName().toStdString();
                }
                const auto& readout = Find<studio::PixelReadout>("readout");
                EXPECT_GE(readout.height(), readout.heightForWidth(readout.width())) << ident << scopes.size();
                const auto bar = Find("transport").findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
                for (const QWidget* const one : bar) {
                    for (const QWidget* const other : bar) {
                        const bool both = one != other && one->isVisible() && other->isVisible();
                        EXPECT_FALSE(both && one->geometry().intersects(other->geometry()))
                            << one->objectName().toStdString() << " " << other->objectName().toStdString();
                    }
                }
            }
        }
    }
}

TEST_F(StudioWindowTest, ThePictureFillsAnotherScreenUntilEscape) {
    auto& full = Find<studio::FullScreenPicture>("fullScreen");
    WaitFor([&] { return !Find<studio::PictureView>("picture").Frame().isEmpty(); }, "the picture comes");
    Press(Qt::Key_F11);
    WaitFor([&] { return full.isVisible(); }, "the screen is filled");
    if (QGuiApplication::screens().size() > 1) {
        EXPECT_NE(full.screen(), Window().screen());
    }
    EXPECT_EQ(full.size(), full.screen()->size());
    const QColor yellow = full.grab().toImage().pixelColor(full.width() * 27 / 100, full.height() / 4);
    EXPECT_TRUE(yellow.red() > 180 && yellow.green() > 180 && yellow.blue() < 10) << qPrintable(yellow.name());
    QTest::keyClick(&full, Qt::Key_Escape);
    EXPECT_FALSE(full.isVisible());
    EXPECT_FALSE(Window().Commands()[Act::FullScreen].isChecked());
}

TEST_F(StudioWindowTest, EnterPressesTheButtonThatHasTheFocus) {
    auto& button = Find<QPushButton>("clipSettingsButton");
    button.setFocus();
    test::WithDialog([&] { QTest::keyClick(&button, Qt::Key_Return); },
                     [](DialogHands& hands) {
                         EXPECT_EQ(hands.Dialog().objectName(), "clipDialog");
                         hands.Press(Qt::Key_Escape);
                     });
}

TEST_F(StudioWindowTest, LabelsSayTheirValuesToAScreenReader) {
    const auto spoken = [&](const char* name) {
        return QAccessible::queryAccessibleInterface(&Find(name))->text(QAccessible::Name);
    };
    EXPECT_EQ(spoken("signal"), QString::fromUtf8("Sound of the clip: 1000 Hz at \u221212.04 dBFS"));
    EXPECT_THAT(spoken("details").toStdString(), HasSubstr("48 kHz"));
    EXPECT_EQ(spoken("lengthText"), QString::fromUtf8("Length: 0:05.000 \u00B7 125 frames"));
    Press(Qt::Key_Right);
    EXPECT_EQ(spoken("time"), "Time: 0:00.040");
}

TEST_F(StudioWindowTest, TheFocusIsVisibleInTheLanes) {
    auto& lanes = Find<studio::LanesView>("lanes");
    const QRgb without = lanes.grab().toImage().pixel(1, lanes.height() / 2);
    Press(Qt::Key_Home);  // makes the window the active one
    lanes.setFocus();
    EXPECT_NE(lanes.grab().toImage().pixel(1, lanes.height() / 2), without);
}

TEST_F(StudioWindowTest, WhatCanHaveTheFocusHasAnAccessibleName) {
    for (QWidget* const widget : Window().findChildren<QWidget*>()) {
        if (widget->focusPolicy() != Qt::NoFocus && widget->isVisible()) {
            const auto* const interface = QAccessible::queryAccessibleInterface(widget);
            const QString name = interface == nullptr ? QString() : interface->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className() << " "
                                         << widget->objectName().toStdString();
        }
    }
}

}  // namespace
