#include "Apps/studio/Window/FullScreenPicture.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <utility>

namespace studio {

FullScreenPicture::FullScreenPicture(QWidget* window) : QWidget(window, Qt::Window) {
    setObjectName("fullScreen");
    setWindowTitle(tr("Picture"));
    setAccessibleName(tr("Picture, full screen"));
    setCursor(Qt::BlankCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void FullScreenPicture::SetPicture(std::shared_ptr<const CardPicture> picture) {
    mPicture = std::move(picture);
    mScaled = {};
    update();
}

void FullScreenPicture::ShowBeside(const QWidget& window) {
    QScreen* chosen = window.screen();
    for (QScreen* const screen : QGuiApplication::screens()) {
        if (screen != window.screen()) {
            chosen = screen;
            break;
        }
    }
    setGeometry(chosen->geometry());
    showFullScreen();
    activateWindow();
    setFocus();
}

void FullScreenPicture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (mPicture == nullptr) {
        return;
    }
    QSizeF size(mPicture->Width() * mPicture->PixelAspect(), mPicture->Height());
    size.scale(this->size(), Qt::KeepAspectRatio);
    QRectF frame(QPointF(), size);
    frame.moveCenter(QRectF(rect()).center());
    const QRect whole = frame.toRect();
    const QSize pixels = (QSizeF(whole.size()) * devicePixelRatioF()).toSize();
    if (mScaled.size() != pixels) {
        mScaled = mPicture->Screen().size() == pixels
                      ? mPicture->Screen()
                      : mPicture->Screen().scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    painter.drawImage(whole, mScaled);
}

void FullScreenPicture::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F11) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void FullScreenPicture::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    close();
}

void FullScreenPicture::closeEvent(QCloseEvent* event) {
    Q_EMIT Closed();
    QWidget::closeEvent(event);
}

}  // namespace studio
