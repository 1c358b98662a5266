#include "Tests/Apps/studio/SoundServer.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <QLabel>

namespace {

using test::StudioTest;
using test::WaitFor;

class ClosingWithADevice : public StudioTest {
protected:
    void Play() {
        test::TheSoundServer().UseNullSink("plain", 2, test::kStereoMap);
        WaitFor([&] { return Find<QLabel>("sound").text() == "Speakers"; }, "the device is found");
        Press(Qt::Key_Space);
        WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays");
    }
};

TEST_F(ClosingWithADevice, WhileItPlays) {
    Play();
    EXPECT_TRUE(CloseWindow());
    EXPECT_FALSE(Window().Sound().IsPlaying());
    DestroyWindow();
}

TEST_F(ClosingWithADevice, DestroyedWhileItPlays) {
    Play();
    DestroyWindow();
}

TEST_F(ClosingWithADevice, AfterTheClipHasChangedWhileItPlays) {
    Play();
    Window().Document().Edit(test::DocumentWith("ebu-5.1"), "Edit");
    Press(Qt::Key_Home);
    DestroyWindow();
}

}  // namespace
