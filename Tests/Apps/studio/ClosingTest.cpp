#include "Tests/Apps/studio/StudioHands.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using test::DialogHands;
using test::StudioTest;
using test::WaitFor;

class Closing : public StudioTest {};

TEST_F(Closing, DuringPlayback) {
    Press(Qt::Key_Space);
    WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays");
    EXPECT_TRUE(CloseWindow());
    EXPECT_FALSE(Window().Sound().IsPlaying());
    DestroyWindow();
}

TEST_F(Closing, DestroyedWhilePlaying) {
    Press(Qt::Key_Space);
    WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays");
    DestroyWindow();
}

TEST_F(Closing, DestroyedBeforeThePictureHasCome) {
    lineup::ClipDocument large;
    large.picture.width = 4096;
    large.picture.height = 2160;
    Window().Document().New(large);
    DestroyWindow();
}

TEST_F(Closing, DuringAnExportAsksAndThenStopsIt) {
    BeginALongExport();
    test::WithDialog([&] { EXPECT_FALSE(CloseWindow()); },
                     [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Cancel"); });
    EXPECT_TRUE(Panel().IsRunning());
    test::WithDialog([&] { EXPECT_TRUE(CloseWindow()); },
                     [](DialogHands& hands) { test::ClickButton(hands.Dialog(), "Stop and Close"); });
    DestroyWindow();
    EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(Closing, DestroyedDuringAnExportAndPlayback) {
    BeginALongExport();
    Press(Qt::Key_Space);
    WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays");
    DestroyWindow();
    EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(Closing, WithTheToneDialogOpenClosesThatFirst) {
    PressFor(Qt::Key_T, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.FocusAndType("frequencyHotTextNumber", "440");
        EXPECT_FALSE(CloseWindow());
        EXPECT_FALSE(hands.Dialog().isVisible());
    });
    WaitFor([&] { return !Window().isVisible(); }, "the window follows");
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
    DestroyWindow();
}

TEST_F(Closing, WithTheToneDialogOpenDuringPlayback) {
    Press(Qt::Key_Space);
    PressFor(Qt::Key_T, Qt::ControlModifier, [&](DialogHands& hands) {
        WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays on");
        EXPECT_FALSE(CloseWindow());
        EXPECT_FALSE(hands.Dialog().isVisible());
    });
    WaitFor([&] { return !Window().isVisible(); }, "the window follows");
    DestroyWindow();
}

}  // namespace
