// A session of the desktop program without a mouse or a key, as assistive technology drives it. Runs in a D-Bus session
// and on a display of its own.
#include <lineup/ClipDocument.h>
#include "Tests/Apps/studio/Accessible.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

namespace {

namespace fs = std::filesystem;
using test::Accessible;
using testing::HasSubstr;
using testing::StartsWith;

class AccessibleStudio : public test::TestFolder {
protected:
    void SetUp() override {
        WriteDocument(Folder() / "session.lineup", lineup::ClipDocument(), false);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        environment.insert("XDG_CONFIG_HOME", QString::fromStdString(Folder().string()));
        environment.insert("LC_ALL", "C.UTF-8");
        mProgram.setProcessEnvironment(environment);
        mProgram.start(TEST_STUDIO, {InFolder("session.lineup")});
        ASSERT_TRUE(mProgram.waitForStarted());
        const auto desktop = test::AccessibleDesktop();
        ASSERT_TRUE(desktop) << "this session has no bus of accessible objects";
        mWindow = Await(*desktop, "frame", "session");
    }
    ~AccessibleStudio() override {
        mProgram.kill();
        mProgram.waitForFinished();
    }

    [[nodiscard]] QString InFolder(const char* name) const {
        return QString::fromStdString((Folder() / name).string());
    }

    // What appears among the objects of `root` sooner or later.
    static Accessible Await(const Accessible& root, const char* role, const char* name) {
        std::optional<Accessible> found;
        const bool came = QTest::qWaitFor(
            [&] {
                found = root.Find(role, QString::fromUtf8(name));
                return found.has_value();
            },
            60000);
        if (!came) {
            throw std::runtime_error(std::string("no ") + role + " called " + name + " among\n" +
                                     root.Tree().toStdString());
        }
        return *found;
    }
    [[nodiscard]] Accessible Await(const char* role, const char* name) const { return Await(*mWindow, role, name); }
    [[nodiscard]] Accessible AwaitDialog(const char* name) const {
        return Await(*test::AccessibleDesktop(), "dialog", name);
    }

    std::optional<Accessible> mWindow;

private:
    QProcess mProgram;
};

// Names that do not say what they are for, and values that are hidden, were what a screen reader met here.
TEST_F(AccessibleStudio, IsReadEditedPlayedAndExportedWithoutAMouse) {
    EXPECT_THAT(Await("label", "Sound of the clip").Name().toStdString(), HasSubstr("1000 Hz at \u221212.04 dBFS"));
    EXPECT_THAT(Await("label", "Length").Name().toStdString(), HasSubstr("125 frames"));
    (void)Await("label", "Time: 0:00.000");

    Await("push button", "Edit Tone").Act();
    const Accessible dialog = AwaitDialog("Tone Settings");
    const Accessible frequency = Await(dialog, "spin box", "Frequency");
    EXPECT_EQ(frequency.Description(), "1 to 24000 Hz");
    Await(frequency, "text", "").SetText("440 Hz");
    Await(dialog, "push button", "OK").Act();
    (void)Await("label", "Sound of the clip: 440 Hz");

    Await("push button", "Play").Act();
    (void)Await("push button", "Pause");
    const Accessible meters = *mWindow->Find("filler", "Level meters");
    EXPECT_TRUE(QTest::qWaitFor([&] { return meters.Description().contains("L \u221212.04 dBFS"); }, 60000))
        << meters.Description().toStdString();
    Await("push button", "Pause").Act();

    Await("push button", "Export").Act();
    const Accessible exporting = AwaitDialog("Export");
    Await(exporting, "text", "File").SetText(InFolder("tone.wav"));
    Await(exporting, "push button", "Export").Act();
    (void)Await("label", "Wrote tone.wav");
    EXPECT_GT(fs::file_size(Folder() / "tone.wav"), 1000000U);
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
