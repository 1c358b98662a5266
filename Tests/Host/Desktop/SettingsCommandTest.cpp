#include <lineup/SettingsFile.h>
#include "Apps/lineup/Commands/SettingsCommand.h"
#include "Tests/Host/Desktop/OpenDialog.h"
#include "Tests/Support/BundleWithForms.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using test::BundleWithForms;
using test::Bytes;
using test::ClipWith;
using test::DialogHands;
using testing::HasSubstr;

struct Answer {
    int status;
    std::string out;
    std::string error;
};

Answer Run(const QStringList& arguments, const QProcessEnvironment& environment) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(TEST_PROGRAM, arguments);
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

// Runs the program with no display to be found.
Answer RunWithoutDisplay(const QStringList& arguments, const char* display = "") {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY"}) {
        environment.remove(name);
    }
    environment.insert("DISPLAY", display);
    return Run(arguments, environment);
}

// Runs the program with a dialog, if there is one, that nobody sees or answers.
Answer RunOffscreen(const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    return Run(arguments, environment);
}

// A folder of a test's own, and the command run in this process, where a test's hands can reach its dialog.
class SettingsCommand : public testing::Test {
protected:
    SettingsCommand()
        : mFolder(fs::path(testing::TempDir()) /
                  (std::string("settings-") + testing::UnitTest::GetInstance()->current_test_info()->name())),
          mFile(mFolder / "clip.batn") {
        fs::remove_all(mFolder);
        fs::create_directories(mFolder);
    }
    ~SettingsCommand() override { fs::remove_all(mFolder); }

    [[nodiscard]] QStringList Arguments(const QStringList& more = {}) const {
        return QStringList{"settings", QString::fromStdString(mFile.string())} + more;
    }

    void WriteFile(const lineup::BarsAndToneInfo& settings) const {
        std::ofstream(mFile, std::ios::binary).write(reinterpret_cast<const char*>(&settings), sizeof settings);
    }

    // What the command says on its standard output while `act` uses its dialog.
    [[nodiscard]] std::string RunWith(const std::function<void(DialogHands&)>& act,
                                      const std::string& more = "") const {
        CLI::App app;
        cli::AddSettingsCommand(app);
        testing::internal::CaptureStdout();
        test::WithDialog([&] { app.parse("settings --plugin " TEST_BUNDLE " " + mFile.string() + " " + more); }, act);
        return testing::internal::GetCapturedStdout();
    }

    [[nodiscard]] std::size_t FilesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(mFolder), fs::directory_iterator()));
    }

    fs::path mFolder;
    fs::path mFile;
};

TEST_F(SettingsCommand, MakesANewFileWithWhatWasChosen) {
    const std::string said = RunWith([](DialogHands& hands) {
        hands.FocusAndType("frequencyHotTextNumber", "440");
        hands.Click("okButton");
    });
    EXPECT_THAT(said, HasSubstr("wrote " + mFile.string()));
    EXPECT_EQ(fs::file_size(mFile), 32U);
    EXPECT_EQ(lineup::ReadSettings(mFile).frequency, 440.0F);
    EXPECT_EQ(lineup::ReadSettings(mFile).numChannels, 2U);
}

TEST_F(SettingsCommand, MakesANewFileOfTheLayoutAskedFor) {
    (void)RunWith([](DialogHands& hands) { hands.Click("okButton"); }, "--channels 5.1 --sample-rate 96000");
    EXPECT_EQ(lineup::ReadSettings(mFile).numChannels, 6U);
    EXPECT_EQ(lineup::ReadSettings(mFile).sampleRate, 96000.0F);
}

TEST_F(SettingsCommand, MakesNoFileWhenCancelled) {
    const std::string said = RunWith([](DialogHands& hands) { hands.Click("cancelButton"); });
    EXPECT_THAT(said, HasSubstr("cancelled: " + mFile.string() + " was not made"));
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(SettingsCommand, EditsAFileThatIsThere) {
    WriteFile(ClipWith(6));
    (void)RunWith([](DialogHands& hands) {
        hands.Click("identifyChannelsBtn");
        hands.Click("okButton");
    });
    lineup::BarsAndToneInfo expected = ClipWith(6);
    expected.identifyChannels = 1;
    EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(expected));
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(SettingsCommand, LeavesAFileThatIsThereWhenTheWindowIsClosed) {
    WriteFile(ClipWith(1));
    const std::string said = RunWith([](DialogHands& hands) {
        hands.FocusAndType("frequencyHotTextNumber", "440");
        hands.ClickCloseBox();
    });
    EXPECT_THAT(said, HasSubstr("is as it was"));
    EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(ClipWith(1)));
}

TEST_F(SettingsCommand, WithoutADisplaySaysSoAndWritesNothing) {
    const Answer none = RunWithoutDisplay(Arguments());
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.error, HasSubstr("cannot show a dialog: no display"));
    const Answer dead = RunWithoutDisplay(Arguments(), ":987");
    EXPECT_EQ(dead.status, 1);
    EXPECT_THAT(dead.error, HasSubstr("the X server at :987 does not answer"));
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(SettingsCommand, AFormWithoutAControlThatTheDialogNeedsIsSaid) {
    WriteFile(ClipWith(2));
    for (const std::string name : {"okButton", "cancelButton", "frequencyHotTextNumber", "amplitudeHotTextNumber",
                                   "steadyTonesBtn", "identifyChannelsBtn"}) {
        const fs::path bundle = BundleWithForms(mFolder, '"' + name + '"', "\"other\"");
        const Answer answer = RunOffscreen(Arguments({"--plugin", QString::fromStdString(bundle.string())}));
        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.error, HasSubstr("lineup: cannot set up the dialog ToneSettingsWithIdentifiersDialog: its "
                                            "layout has no " +
                                            name + "\n"));
        EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(ClipWith(2)));
    }
}

TEST_F(SettingsCommand, AFormForMonoWithoutAControlIsSaidAndNoFileIsMade) {
    const fs::path bundle = BundleWithForms(mFolder, "\"okButton\"", "\"other\"");
    const Answer answer =
        RunOffscreen(Arguments({"--channels", "mono", "--plugin", QString::fromStdString(bundle.string())}));
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.error, HasSubstr("cannot set up the dialog ToneSettingsDialog: its layout has no okButton\n"));
    EXPECT_FALSE(fs::exists(mFile));
}

TEST_F(SettingsCommand, AFormWithAControlOfAnotherKindIsSaid) {
    struct Change {
        std::string name, kind, otherKind;
    };
    for (const auto& [name, kind, otherKind] : {Change{"okButton", "QPushButton", "QToolButton"},
                                                {"frequencyHotTextNumber", "HotTextNumber", "QDoubleSpinBox"},
                                                {"steadyTonesBtn", "QRadioButton", "QCheckBox"},
                                                {"identifierFormatPopup", "QComboBox", "QListWidget"}}) {
        const auto widget = [&name = name](const std::string& of) { return of + "\" name=\"" + name + '"'; };
        const fs::path bundle = BundleWithForms(mFolder, widget(kind), widget(otherKind));
        const Answer answer = RunOffscreen(Arguments({"--plugin", QString::fromStdString(bundle.string())}));
        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.error, HasSubstr("lineup: cannot set up the dialog ToneSettingsWithIdentifiersDialog: " +
                                            name + " is a " + otherKind + ", which the dialog cannot use\n"));
        EXPECT_FALSE(fs::exists(mFile));
    }
}

TEST_F(SettingsCommand, DefaultsNeedNoDisplay) {
    const Answer answer = RunWithoutDisplay(Arguments({"--defaults", "--sample-rate", "44100"}));
    EXPECT_EQ(answer.status, 0) << answer.error;
    lineup::BarsAndToneInfo expected;
    expected.sampleRate = 44100.0F;
    EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(expected));
}

TEST_F(SettingsCommand, DefaultsReplaceAFileOnlyWhenAllowed) {
    WriteFile(ClipWith(6));
    EXPECT_EQ(RunWithoutDisplay(Arguments({"--defaults"})).status, 2);
    EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(ClipWith(6)));
    EXPECT_EQ(RunWithoutDisplay(Arguments({"--defaults", "-y", "-q"})).out, "");
    EXPECT_EQ(Bytes(lineup::ReadSettings(mFile)), Bytes(lineup::BarsAndToneInfo()));
}

TEST_F(SettingsCommand, AFileOfAnotherSizeIsSaid) {
    for (const std::size_t size : {0U, 31U, 33U}) {
        std::ofstream(mFile) << std::string(size, 'x');
        const Answer answer = RunWithoutDisplay(Arguments());
        EXPECT_EQ(answer.status, 1);
        EXPECT_THAT(answer.error, HasSubstr("settings are 32 bytes, and it holds"));
        EXPECT_EQ(fs::file_size(mFile), size);
    }
}

TEST_F(SettingsCommand, ALayoutForAFileThatIsThereIsRefused) {
    WriteFile(ClipWith(2));
    const Answer answer = RunWithoutDisplay(Arguments({"--channels", "5.1"}));
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.error, HasSubstr("is for a new file"));
}

TEST_F(SettingsCommand, OtherCommandsUseTheFileAndNoOtherToneOptions) {
    lineup::BarsAndToneInfo settings = ClipWith(6);
    settings.frequency = 440.0F;
    WriteFile(settings);
    const QString file = QString::fromStdString(mFile.string());
    EXPECT_THAT(RunWithoutDisplay({"info", "--settings", file}).out, HasSubstr("440 Hz at -12.04 dBFS"));
    for (const QStringList& other :
         {QStringList{"--frequency", "1000"}, QStringList{"--level", "-20"}, QStringList{"--channels", "mono"},
          QStringList{"--sample-rate", "48000"}, QStringList{"--ident", "blits"}}) {
        const Answer answer = RunWithoutDisplay(QStringList{"info", "--settings", file} + other);
        EXPECT_EQ(answer.status, 2);
        EXPECT_THAT(answer.error, HasSubstr("leave out " + other.front().toStdString()));
    }
}

}  // namespace
