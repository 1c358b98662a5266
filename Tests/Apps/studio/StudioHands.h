#pragma once

#include "Apps/studio/Window/StudioWindow.h"
#include "Tests/Host/Desktop/OpenDialog.h"
#include "Tests/Support/TestFolder.h"

#include <QDialog>
#include <QTest>
#include <functional>
#include <memory>
#include <string>

namespace test {

/// The plug-in of the bundle under test, loaded once.
[[nodiscard]] const std::shared_ptr<const lineup::Importer>& ThePlugin();

/// The settings of a clip of the plug-in's.
[[nodiscard]] lineup::ClipDocument DocumentWith(const char* ident);

/// Fails the test when `condition` has not come to hold after a minute. Events go on meanwhile.
template <class Condition>
void WaitFor(Condition condition, const char* what) {
    EXPECT_TRUE(QTest::qWaitFor(condition, 60000)) << "this never happened: " << what;
}

/// Clicks the button of `dialog` that says `text`, mnemonics left out.
void ClickButton(QDialog& dialog, const QString& text);

/// What the message box says that `open` brings up; it is then closed.
[[nodiscard]] std::string SaidBy(const std::function<void()>& open);

/// A window, and a person's hands on it. What the program remembers is forgotten before each test.
class StudioTest : public TestFolder {
protected:
    explicit StudioTest(std::shared_ptr<const lineup::Importer> plugin = ThePlugin());
    ~StudioTest() override;

    /// Opens a fresh window, in place of the one before.
    void OpenWindow();
    [[nodiscard]] studio::StudioWindow& Window() { return *mWindow; }

    template <class Widget = QWidget>
    [[nodiscard]] Widget& Find(const char* name) {
        auto* const widget = mWindow->findChild<Widget*>(name);
        if (widget == nullptr) {
            throw std::runtime_error(std::string("the window has no ") + name);
        }
        return *widget;
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// Presses a key that opens a dialog and lets `act` use that.
    void PressFor(Qt::Key key, Qt::KeyboardModifiers modifiers, const std::function<void(DialogHands&)>& act);

    /// Saves under `file` through the file dialog.
    void SaveAs(const QString& file);

    [[nodiscard]] QString InFolder(const char* name) const;

    [[nodiscard]] studio::ExportPanel& Panel() { return Find<studio::ExportPanel>("exportPanel"); }

    /// Begins to export long.mp4, which takes minutes and little room.
    void BeginALongExport();

    /// Closes the window as its close box does. True when it is gone from the screen.
    bool CloseWindow() { return mWindow->close(); }
    void DestroyWindow() { mWindow.reset(); }

private:
    std::shared_ptr<const lineup::Importer> mPlugin;
    std::unique_ptr<studio::StudioWindow> mWindow;
};

}  // namespace test
