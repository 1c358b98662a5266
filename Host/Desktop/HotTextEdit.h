#pragma once

#include <QLineEdit>
#include <QPoint>

namespace zelui::qt {

/// The text of a hot-text number, inside its spin box. At rest it looks like a link: underlined, in the
/// link colour, with no field around it. A drag to the side reports how far it went; with the keyboard's
/// focus it becomes a field to type into, and a double click lets the mouse place the cursor as well.
class HotTextEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit HotTextEdit(QWidget* parent);

    /// Shows the text in red, or as usual.
    void MarkWrong(bool wrong);

Q_SIGNALS:
    /// The mouse moved `pixels` to the right (negative: left) with its button down.
    void Dragged(int pixels, Qt::KeyboardModifiers modifiers);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Mouse {
        Free,      // the button is up
        Pressed,   // down, and not moved far enough to tell a drag from a click
        Dragging,  // each further move changes the number
    };

    void SetPlacingCursor(bool placing);
    void SelectNumber();
    void PaintOutline();

    Mouse mMouse = Mouse::Free;
    QPoint mLast;
    bool mPlacingCursor = false;
    bool mIsWrong = false;
};

}  // namespace zelui::qt
