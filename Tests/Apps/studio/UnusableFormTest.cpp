#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Support/BundleWithForms.h"

#include <gmock/gmock.h>

namespace {

using test::SaidBy;
using test::StudioTest;
using test::WaitFor;
using testing::HasSubstr;

// A plug-in whose dialog lacks a control. It has to be the process's first: the one that is loaded first serves its
// forms to all of the same identifier.
std::shared_ptr<const lineup::Importer> PluginWithoutAFrequency() {
    static const test::TemporaryFolder folder;
    return std::make_shared<const lineup::Importer>(
        test::BundleWithForms(folder.Path(), "\"frequencyHotTextNumber\"", "\"other\""));
}

class UnusableForm : public StudioTest {
protected:
    UnusableForm() : StudioTest(PluginWithoutAFrequency()) {}
};

TEST_F(UnusableForm, IsSaidAndTheWindowGoesOn) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_THAT(SaidBy([&] { Press(Qt::Key_T, Qt::ControlModifier); }),
                    HasSubstr("its layout has no frequencyHotTextNumber"));
    }
    EXPECT_EQ(Window().Document().Values(), lineup::ClipDocument());
    EXPECT_EQ(Window().Document().Undo().count(), 0);
    Press(Qt::Key_Space);
    WaitFor([&] { return Window().Sound().Position() > 4800; }, "it plays");
    EXPECT_TRUE(CloseWindow());
    DestroyWindow();
}

}  // namespace
