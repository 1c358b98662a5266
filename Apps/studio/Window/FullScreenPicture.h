#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QWidget>
#include <memory>

namespace studio {

/// The picture alone, over a whole screen: another one than the window's where there is one. Escape, F11 and a double
/// click end it.
class FullScreenPicture : public QWidget {
    Q_OBJECT

public:
    explicit FullScreenPicture(QWidget* window);

    /// Null: black.
    void SetPicture(std::shared_ptr<const CardPicture> picture);

    void ShowBeside(const QWidget& window);

Q_SIGNALS:
    void Closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    std::shared_ptr<const CardPicture> mPicture;
    QImage mScaled;  // for the size it is shown at
};

}  // namespace studio
