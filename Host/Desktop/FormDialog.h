#pragma once

#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <exception>
#include <functional>

namespace zelui::qt {

/// The window of a dialog that a form describes. It opens with the focus on what is chosen. The default button cannot
/// be pressed while a number is wrong. Enter presses the form's default button. Escape presses
/// the button that the form's property "escapeButton" names; the window's own close box presses none.
class FormDialog : public QDialog {
    Q_OBJECT

public:
    explicit FormDialog(QWidget* parent = nullptr);

    /// Looks up what the form says about the dialog's buttons. Call once, when the form has been read.
    void Prepare();

    /// Shows the dialog and returns when it has been closed: true when the default button did it. Throws
    /// what a handler threw, after closing.
    bool Run();

    /// Ends Run; without one it does nothing.
    void EndRun();

    /// Calls `handlers`, which answer to something a person did in the dialog. What they throw must not
    /// pass through Qt's event loop: it ends the run instead, which then throws it.
    void CallHandlers(const std::function<void()>& handlers);

    /// Takes up what has been typed and not been left yet.
    void CommitTyping();

    /// While one lives, the dialog's controls are being set by code and report nothing.
    class CodeChange {
    public:
        explicit CodeChange(const QWidget& control);
        ~CodeChange();
        CodeChange(const CodeChange&) = delete;
        CodeChange& operator=(const CodeChange&) = delete;

    private:
        QPointer<FormDialog> mDialog;
    };
    [[nodiscard]] bool IsSetByCode() const noexcept { return mCodeChanges > 0; }

    /// The dialog that `widget` is in, or null.
    [[nodiscard]] static FormDialog* Of(const QWidget* widget);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void FocusChosen();
    void JudgeNumbers();

    QPointer<QPushButton> mDefaultButton;
    QPointer<QPushButton> mEscapeButton;
    QPointer<QPushButton> mPressed;  // last
    std::exception_ptr mError;
    int mCodeChanges = 0;
};

}  // namespace zelui::qt
