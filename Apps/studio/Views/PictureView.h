#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QPoint>
#include <QRectF>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

namespace studio {

/// The picture, as large as it fits, in its own shape. The pixel under the pointer, or where the arrow keys
/// have led, is the one that is pointed at; a click or
/// Enter there asks for a pin, or for its end.
class PictureView : public QWidget {
    Q_OBJECT

public:
    explicit PictureView(QWidget* parent = nullptr);

    /// Null: shows an empty view.
    void SetPicture(std::shared_ptr<const CardPicture> picture);

    /// Pixels of the picture that are marked, with their numbers from 1.
    void SetProbes(std::vector<QPoint> probes);

    /// Areas of the picture, in its pixels, that are outlined as faults.
    void SetOutlines(std::vector<QRectF> outlines);

    /// Where on the widget the picture stands.
    [[nodiscard]] QRectF Frame() const;

    [[nodiscard]] QSize sizeHint() const override { return {640, 360}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {160, 88}; }

Q_SIGNALS:
    /// None: the pointer is elsewhere.
    void PixelPointedAt(std::optional<QPoint> pixel);
    /// `reach`: how many pixels away is still on it.
    void PinWanted(QPoint pixel, int reach);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void Pin();
    [[nodiscard]] QPointF CentreOf(QPoint pixel) const;
    void DrawOutlines(QPainter& painter) const;
    void DrawProbes(QPainter& painter) const;
    void PointAt(std::optional<QPoint> pixel, bool byKey);

    std::shared_ptr<const CardPicture> mPicture;
    std::vector<QPoint> mProbes;
    std::vector<QRectF> mOutlines;
    QImage mScaled;  // for the size it is shown at
    std::optional<QPoint> mPixel;
    bool mByKey = false;  // then the pixel is marked
};

}  // namespace studio
