#pragma once

#include "Apps/studio/Views/Colour.h"

#include <QPoint>
#include <QWidget>
#include <array>
#include <optional>

namespace studio {

/// The value of one pixel, in a line: where it is, Y'CbCr and R'G'B' in percent and as 10-bit codes.
class PixelReadout : public QWidget {
    Q_OBJECT

public:
    explicit PixelReadout(QWidget* parent = nullptr);

    void Show(QPoint pixel, const Ycc& value, Matrix matrix);
    void Clear();

    /// What is shown, as one text: "x 960 y 540  BT.709  Y' 75.0 % 721 ...". Empty when there is nothing.
    [[nodiscard]] QString Text() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Cell {
        QString name;
        QString percent;
        QString code;
    };
    [[nodiscard]] std::array<Cell, 6> Cells() const;

    std::optional<QPoint> mPixel;
    Ycc mValue;
    Matrix mMatrix = Matrix::Bt601;
};

}  // namespace studio
