#pragma once

#include "Apps/studio/Views/Scope.h"

namespace studio {

/// A vectorscope: chroma of the whole picture, Cb to the right and Cr upwards, with targets for the bars of 75 and
/// 100 % amplitude by the picture's matrix.
class VectorscopeView : public Scope {
    Q_OBJECT

public:
    explicit VectorscopeView(QWidget* parent = nullptr);

    /// Where a chroma stands on the widget.
    [[nodiscard]] QPointF Place(double cb, double cr) const;

    /// Half a target's side, in chroma.
    static constexpr double kTargetReach = 0.018;

protected:
    [[nodiscard]] QRectF Plot() const override;
    void DrawGraticule(QPainter& painter) const override;
    [[nodiscard]] QImage DrawTrace(QSize pixels) const override;
    [[nodiscard]] QString Read(QPointF place) const override;
    [[nodiscard]] std::vector<QPointF> PlacesOf(const Ycc& colour, int column) const override;

private:
    void DrawTargets(QPainter& painter, double amplitude) const;
};

}  // namespace studio
