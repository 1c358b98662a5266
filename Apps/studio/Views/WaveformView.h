#pragma once

#include "Apps/studio/Views/Beam.h"
#include "Apps/studio/Views/Scope.h"

#include <span>

namespace studio {

/// Levels over the picture's width, from the frame's own values: luma alone, the waveform monitor, or R', G' and B'
/// beside one another, the parade. The graticule is in percent of the way from black to white.
class WaveformView : public Scope {
    Q_OBJECT

public:
    enum class Kind { Luma, Parade };
    explicit WaveformView(Kind kind, QWidget* parent = nullptr);

    /// The widget's y of a level, 0 black and 1 white.
    [[nodiscard]] double Y(double level) const;

    /// Where a column of the picture stands in the part of a component, counted from 0.
    [[nodiscard]] double X(std::size_t part, int column) const;

protected:
    [[nodiscard]] QRectF Plot() const override;
    void DrawGraticule(QPainter& painter) const override;
    [[nodiscard]] QImage DrawTrace(QSize pixels) const override;
    [[nodiscard]] QString Read(QPointF place) const override;
    [[nodiscard]] std::vector<QPointF> PlacesOf(const Ycc& colour, int column) const override;

private:
    struct Part {
        Component component;
        const char* name;
        BeamTint tint;
    };
    static std::span<const Part> PartsOf(Kind kind);
    [[nodiscard]] double PartWidth() const;
    void DrawColumn(QImage& image, int x, std::size_t part, int first, int last) const;

    std::span<const Part> mParts;
};

}  // namespace studio
