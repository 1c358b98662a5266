#include "Tests/Apps/studio/StudioHands.h"

#include <QPointer>

namespace {

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
