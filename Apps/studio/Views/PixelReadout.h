#pragma once

#include "Apps/studio/Views/CardPicture.h"

#include <QPoint>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

namespace studio {

/// The values of pixels: of the one that is pointed at, and of those that are pinned, a row each: where it is, Y'CbCr
/// and R'G'B' in percent and as 10-bit codes. Where there is little room a row goes on in the next line.
class PixelReadout : public QWidget {
    Q_OBJECT

public:
    explicit PixelReadout(QWidget* parent = nullptr);

    /// Null: there is nothing to read.
    void SetPicture(std::shared_ptr<const CardPicture> picture);
    /// Within the picture, or none.
    void PointAt(std::optional<QPoint> pixel);
    /// Within the picture.
    void SetProbes(std::vector<QPoint> probes);

    /// What is shown, a line a row: "x 960 y 540  BT.709  Y' 75.0 % 721 ..."; that of a probe begins with its number.
    /// Empty when there is nothing.
    [[nodiscard]] QString Text() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Row {
        QPoint pixel;
        std::size_t number = 0;  // of a probe; 0: the pointer's
    };
    [[nodiscard]] std::vector<Row> Rows() const;
    [[nodiscard]] QString TextOf(const Row& row) const;
    void RowsChanged();
    [[nodiscard]] int PlaceWidth() const;
    [[nodiscard]] int CellWidth() const;
    [[nodiscard]] int LinesFor(int width) const;
    [[nodiscard]] int LineHeight() const;
    void DrawPlace(QPainter& painter, const Row& row, QPoint at) const;
    void DrawRow(QPainter& painter, const Row& row, int top) const;

    std::shared_ptr<const CardPicture> mPicture;
    std::optional<QPoint> mPixel;
    std::vector<QPoint> mProbes;
};

}  // namespace studio
