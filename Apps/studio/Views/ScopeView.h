#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QImage>
#include <QWidget>
#include <memory>

namespace studio {

/// A waveform monitor: luma over the picture's width, from the frame's own values. The graticule is in percent
/// of the way from black to white.
class ScopeView : public QWidget {
    Q_OBJECT

public:
    explicit ScopeView(QWidget* parent = nullptr);

    /// Null: shows an empty view.
    void SetPicture(std::shared_ptr<const CardPicture> picture);

    /// The widget's y of a luma value, 0 black and 1 white.
    [[nodiscard]] double Y(double luma) const;

    [[nodiscard]] QSize sizeHint() const override { return {420, 300}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {180, 120}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QRectF Plot() const;
    void DrawGraticule(QPainter& painter) const;
    [[nodiscard]] QImage DrawTrace(QSize pixels) const;

    std::shared_ptr<const CardPicture> mPicture;
    QImage mTrace;
};

}  // namespace studio
