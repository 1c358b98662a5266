#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QRectF>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

namespace studio {

/// A patch of the picture: what it should be and what it is.
struct ScopePatch {
    QRectF area;  ///< of the picture, in pixels
    Ycc due;
    Ycc found;
    bool isOff = false;  ///< further than is tolerated
};

/// What the scopes share: the picture they look at, its trace over a graticule, the points that were pinned, and a
/// readout of the place under the pointer, or where the arrow keys have led.
class Scope : public QWidget {
    Q_OBJECT

public:
    explicit Scope(QWidget* parent = nullptr);

    /// Null: shows an empty view.
    void SetPicture(std::shared_ptr<const CardPicture> picture);

    /// Pixels of the picture that are marked, with their numbers from 1.
    void SetProbes(std::vector<QPoint> probes);

    /// A box where each patch should be, and a line to where it is when that is elsewhere.
    void SetPatches(std::vector<ScopePatch> patches);

    /// What stands at the place that is pointed at; empty without one.
    [[nodiscard]] QString Readout() const;

    [[nodiscard]] QSize sizeHint() const override { return {420, 260}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {120, 72}; }

protected:
    /// Where the trace is drawn.
    [[nodiscard]] virtual QRectF Plot() const = 0;
    virtual void DrawGraticule(QPainter& painter) const = 0;
    /// The trace on as many pixels as the plot has. There is a picture.
    [[nodiscard]] virtual QImage DrawTrace(QSize pixels) const = 0;
    /// What a place of the plot stands for. There is a picture.
    [[nodiscard]] virtual QString Read(QPointF place) const = 0;
    /// Where a colour in a column of the picture shows. There is a picture.
    [[nodiscard]] virtual std::vector<QPointF> PlacesOf(const Ycc& colour, int column) const = 0;

    [[nodiscard]] const CardPicture* Picture() const noexcept { return mPicture.get(); }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void PointAt(std::optional<QPointF> place);
    void DrawPatches(QPainter& painter) const;
    void DrawProbes(QPainter& painter) const;
    void DrawReadout(QPainter& painter) const;

    std::shared_ptr<const CardPicture> mPicture;
    QImage mTrace;
    std::vector<QPoint> mProbes;
    std::vector<ScopePatch> mPatches;
    std::optional<QPointF> mPlace;
};

}  // namespace studio
