#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include "Apps/studio/Export/ExportPresets.h"
#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Apps/studio/UrlCatcher.h"
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QUrl>
#include <cstring>

namespace {

namespace fs = std::filesystem;
using test::DialogHands;
using test::StudioTest;
using test::WaitFor;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// Frames of a clip in the order of files.
std::vector<float> InFileOrder(const lineup::Clip& clip, std::int64_t frames) {
    const auto channels = static_cast<std::size_t>(clip.NumChannels());
    std::vector<std::vector<float>> planes(channels, std::vector<float>(static_cast<std::size_t>(frames)));
    std::vector<float*> targets;
    for (auto& plane : planes) {
        targets.push_back(plane.data());
    }
    lineup::AudioReader(clip).Read(0, frames, targets);
    std::vector<float> interleaved;
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        for (const int channel : lineup::FindChannelLayout(clip.NumChannels())->fileOrder) {
            interleaved.push_back(planes[static_cast<std::size_t>(channel)][i]);
        }
    }
    return interleaved;
}

class StudioExport : public StudioTest {
protected:
    [[nodiscard]] bool NothingIsLeft() const { return fs::is_empty(Folder()); }
};

TEST_F(StudioExport, TheFilesSamplesAreThePlugIns) {
    lineup::ClipDocument document = test::DocumentWith("blits");
    document.lengthFrames = 335;  // a cycle
    Window().Document().New(document);
    const QString file = InFolder("blits.wav");
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        auto& name = hands.Find<QLineEdit>("exportFile");
        name.clear();
        QTest::keyClicks(&name, file);
        auto& audio = hands.Find<QComboBox>("exportAudio");
        for (int i = 0; i < 10 && audio.currentData() != "pcm-f32"; ++i) {
            QTest::keyClick(&audio, Qt::Key_Down);
        }
        EXPECT_FALSE(hands.IsEnabled("exportVideo"));
        hands.Click("exportButton");
    });
    WaitFor([&] { return !Panel().IsRunning(); }, "the export ends");
    EXPECT_THAT(Find<QLabel>("exportText").text().toStdString(), HasSubstr("Wrote blits.wav"));

    const auto decoded = test::RunProgram("ffmpeg -v error -i '" + file.toStdString() + "' -f f32le -", Folder());
    const std::vector<float> expected = InFileOrder(*Window().Document().Clip(), 643200);
    ASSERT_EQ(decoded.out.size(), expected.size() * sizeof(float)) << decoded.err;
    EXPECT_EQ(std::memcmp(decoded.out.data(), expected.data(), decoded.out.size()), 0);
}

// Fields are offered where the codec has them, and what is chosen is what the file has.
TEST_F(StudioExport, OffersFieldsWhereTheCodecHasThem) {
    lineup::ClipDocument document = test::DocumentWith("blits");
    document.lengthFrames = 1;
    Window().Document().New(document);
    const QString file = InFolder("line-up.mxf");
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        auto& name = hands.Find<QLineEdit>("exportFile");
        name.setText(InFolder("card.png"));
        EXPECT_FALSE(hands.IsEnabled("exportScan"));
        name.setText(file);
        EXPECT_TRUE(hands.IsEnabled("exportScan"));
        hands.Find<QComboBox>("exportScan").setCurrentIndex(1);
        hands.Click("exportButton");
    });
    WaitFor([&] { return !Panel().IsRunning(); }, "the export ends");
    const auto read = test::RunProgram(
        "ffprobe -v error -select_streams v -show_entries stream=field_order -of csv=p=0 '" + file.toStdString() + "'",
        Folder());
    EXPECT_THAT(read.out, StartsWith("tt"));
}

TEST_F(StudioExport, RevealsTheFilesFolder) {
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("card.png"));
        hands.Press(Qt::Key_Return);
    });
    WaitFor([&] { return Find("exportReveal").isVisible(); }, "the file is there");
    EXPECT_TRUE(fs::exists(Folder() / "card.png"));
    test::UrlCatcher catcher;
    QTest::mouseClick(&Find("exportReveal"), Qt::LeftButton);
    EXPECT_EQ(catcher.Last(), QUrl::fromLocalFile(QString::fromStdString(Folder().string())));
}

TEST_F(StudioExport, SaysWhatCannotBeExportedWhileItIsChosen) {
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        auto& name = hands.Find<QLineEdit>("exportFile");
        name.setText(InFolder("clip.xyz"));
        EXPECT_FALSE(hands.IsEnabled("exportButton"));
        EXPECT_THAT(hands.Find<QLabel>("exportProblem").text().toStdString(),
                    AllOf(StartsWith("File name "), HasSubstr("clip.xyz: the name must end in .")));
        name.setText(InFolder("clip.mov"));
        EXPECT_TRUE(hands.IsEnabled("exportButton"));
        hands.Find<QLineEdit>("exportTimecode").setText("10:00:00:99");
        EXPECT_FALSE(hands.IsEnabled("exportButton"));
        hands.Press(Qt::Key_Escape);
    });
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(StudioExport, RefusesAToneThatTheFileWouldNotHold) {
    lineup::ClipDocument high;
    high.settings.sampleRate = 8000.0F;
    high.settings.frequency = 10000.0F;
    Window().Document().New(high);
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("clip.wav"));
        EXPECT_FALSE(hands.IsEnabled("exportButton"));
        EXPECT_EQ(hands.Find<QLabel>("exportProblem").text(),
                  "Frequency 10000 Hz: must be 1 Hz or more, and below 4000 Hz: at half the sample rate a sine is next "
                  "to silent.");
        hands.Press(Qt::Key_Escape);
    });
}

TEST_F(StudioExport, AsksBeforeItReplacesAFile) {
    test::WriteFile(Folder() / "card.png", "precious");
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("card.png"));
        test::WithDialog([&] { hands.Press(Qt::Key_Return); },
                         [](DialogHands& box) { test::ClickButton(box.Dialog(), "Cancel"); });
        EXPECT_TRUE(hands.Dialog().isVisible());
        hands.Press(Qt::Key_Escape);
    });
    EXPECT_EQ(test::ReadFile(Folder() / "card.png"), "precious");
}

TEST_F(StudioExport, EnterInTheQuestionKeepsTheFile) {
    test::WriteFile(Folder() / "card.png", "precious");
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("card.png"));
        test::WithDialog([&] { hands.Press(Qt::Key_Return); }, [](DialogHands& box) { box.Press(Qt::Key_Return); });
        EXPECT_TRUE(hands.Dialog().isVisible());
        hands.Press(Qt::Key_Escape);
    });
    EXPECT_EQ(test::ReadFile(Folder() / "card.png"), "precious");
}

// Without a folder for movies too.
TEST_F(StudioExport, OffersAFolderThatExistsAndSaysWhereANameWithoutOneGoes) {
    QSettings().setValue("export/folder", InFolder("gone"));
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        auto& name = hands.Find<QLineEdit>("exportFile");
        const QFileInfo offered(name.text());
        EXPECT_TRUE(offered.isAbsolute() && offered.absoluteDir().exists()) << name.text().toStdString();
        EXPECT_EQ(hands.Find<QLabel>("exportWhere").text(), "");
        name.setText("bars.wav");
        EXPECT_EQ(hands.Find<QLabel>("exportWhere").text(), "Goes to " + offered.absolutePath() + "/bars.wav");
        name.clear();
        EXPECT_FALSE(hands.IsEnabled("exportButton"));
        hands.Press(Qt::Key_Escape);
    });
}

TEST_F(StudioExport, PresetsAndFormatsNameTheFileAndItsCodecs) {
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        auto& name = hands.Find<QLineEdit>("exportFile");
        auto& preset = hands.Find<QComboBox>("exportPreset");
        auto& format = hands.Find<QComboBox>("exportFormat");
        auto& audio = hands.Find<QComboBox>("exportAudio");
        const auto choose = [](QComboBox& box, const char* text) {
            box.setFocus();
            QTest::keyClicks(&box, text);
        };
        EXPECT_TRUE(preset.currentText().startsWith("Editing: ProRes 422 HQ"));
        choose(preset, "Arch");
        EXPECT_TRUE(name.text().endsWith(".mkv"));
        EXPECT_EQ(hands.Find<QComboBox>("exportVideo").currentData(), "ffv1");
        EXPECT_EQ(audio.currentData(), "flac");
        EXPECT_TRUE(hands.IsEnabled("exportButton"));
        audio.setCurrentIndex(audio.findData("pcm-s16"));
        EXPECT_EQ(preset.currentText(), "Own choice");
        choose(format, "Broadcast");
        EXPECT_TRUE(name.text().endsWith("/Untitled.wav")) << name.text().toStdString();
        EXPECT_EQ(audio.currentData(), "pcm-s16") << "a choice that goes with the format stays";
        name.setText("still.png");
        EXPECT_TRUE(format.currentText().startsWith("PNG"));
        EXPECT_TRUE(preset.currentText().startsWith("Still"));
        QTest::keyClick(&preset, Qt::Key_Home);
        for (const studio::ExportPreset& row : studio::ExportPresets()) {
            EXPECT_EQ(preset.currentText().toStdString(), row.name);
            EXPECT_TRUE(hands.IsEnabled("exportButton")) << row.name;
            QTest::keyClick(&preset, Qt::Key_Down);
        }
        hands.Press(Qt::Key_Escape);
    });
}

// A folder may go between choosing and writing.
TEST_F(StudioExport, AFailureLooksLikeOneAndKeepsTheChoices) {
    fs::create_directory(Folder() / "there");
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("there/clip.mov"));
        hands.Find<QComboBox>("exportAudio").setCurrentIndex(1);
        hands.Find<QLineEdit>("exportTimecode").setText("10:00:00:00");
        fs::remove(Folder() / "there");
        hands.Click("exportButton");
    });
    WaitFor([&] { return Find("exportAgain").isVisible(); }, "it fails");
    auto& failure = Find<QLabel>("exportFailure");
    EXPECT_THAT(failure.text().toStdString(), HasSubstr("there/clip.mov"));
    EXPECT_TRUE(failure.isVisible());
    EXPECT_EQ(failure.palette().color(QPalette::WindowText), studio::Theme::Current().error);
    test::WithDialog([&] { QTest::mouseClick(&Find("exportAgain"), Qt::LeftButton); },
                     [&](DialogHands& hands) {
                         EXPECT_EQ(hands.Find<QLineEdit>("exportFile").text(), InFolder("there/clip.mov"));
                         EXPECT_EQ(hands.Find<QComboBox>("exportAudio").currentData(), "pcm-s16");
                         EXPECT_EQ(hands.Find<QLineEdit>("exportTimecode").text(), "10:00:00:00");
                         hands.Press(Qt::Key_Escape);
                     });
}

TEST_F(StudioExport, IsCancelledAndLeavesNothing) {
    BeginALongExport();
    QTest::mouseClick(&Find("exportCancel"), Qt::LeftButton);
    WaitFor([&] { return !Panel().IsRunning(); }, "it stops");
    EXPECT_EQ(Find<QLabel>("exportText").text(), "Cancelled: long.mp4 was not written");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(StudioExport, TheWindowPlaysAndEditsMeanwhile) {
    BeginALongExport();
    Press(Qt::Key_Space);
    WaitFor([&] { return Window().Sound().Position() > 9600; }, "the playhead moves");
    Window().Document().Edit(test::DocumentWith("ebu-5.1"), "Edit");
    EXPECT_TRUE(Panel().IsRunning());
    WaitFor([&] { return Find<QProgressBar>("exportBar").value() > 0; }, "the bar moves");
}

}  // namespace
