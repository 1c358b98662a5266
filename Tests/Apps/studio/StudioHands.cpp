#include "Tests/Apps/studio/StudioHands.h"

#include <lineup/ToneChoice.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSettings>
#include <utility>

namespace test {

const std::shared_ptr<const lineup::Importer>& ThePlugin() {
    static const auto plugin = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return plugin;
}

lineup::ClipDocument DocumentWith(const char* ident) {
    lineup::ClipDocument document;
    document.settings = lineup::MakeSettings(*ThePlugin(), {.ident = ident});
    return document;
}

void ClickButton(QDialog& dialog, const QString& text) {
    for (QAbstractButton* const button : dialog.findChildren<QAbstractButton*>()) {
        if (button->text().remove('&') == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    ADD_FAILURE() << "the dialog has no button " << text.toStdString();
}

std::string SaidBy(const std::function<void()>& open) {
    std::string text;
    WithDialog(open, [&](DialogHands& hands) {
        text = hands.Find<QLabel>("qt_msgbox_label").text().toStdString();
        hands.Press(Qt::Key_Escape);
    });
    return text;
}

StudioTest::StudioTest(std::shared_ptr<const lineup::Importer> plugin) : mPlugin(std::move(plugin)) {
    QSettings().clear();
    OpenWindow();
}

StudioTest::~StudioTest() = default;

void StudioTest::OpenWindow() {
    mWindow.reset();
    mWindow = std::make_unique<studio::StudioWindow>(mPlugin);
    mWindow->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(mWindow.get(), 60000));
    mWindow->activateWindow();  // which a window manager does, where there is one
    EXPECT_TRUE(QTest::qWaitForWindowActive(mWindow.get(), 60000));
}

void StudioTest::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    // Where there is no window manager, nobody makes the window the active one when a dialog has left it.
    mWindow->activateWindow();
    WaitFor([this] { return QApplication::activeWindow() == mWindow.get(); }, "the window is active");
    QTest::keyClick(mWindow.get(), key, modifiers);
}

void StudioTest::PressFor(Qt::Key key, Qt::KeyboardModifiers modifiers, const std::function<void(DialogHands&)>& act) {
    WithDialog([&] { Press(key, modifiers); }, act);
}

void StudioTest::SaveAs(const QString& file) {
    PressFor(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("fileNameEdit").setText(file);
        hands.Press(Qt::Key_Return);
    });
}

// Small pictures, each of them encoded.
void StudioTest::BeginALongExport() {
    lineup::ClipDocument document;
    document.picture.width = 64;
    document.picture.height = 64;
    document.lengthFrames = 200'000;
    Window().Document().New(document);
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("exportFile").setText(InFolder("long.mp4"));
        hands.Press(Qt::Key_Return);
    });
    WaitFor([&] { return Find<QProgressBar>("exportBar").isVisible(); }, "the export begins");
    EXPECT_TRUE(Panel().IsRunning());
}

QString StudioTest::InFolder(const char* name) const {
    return QString::fromStdString((Folder() / name).string());
}

}  // namespace test
