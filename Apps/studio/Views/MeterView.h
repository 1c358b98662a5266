#pragma once

#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Sound/PeakBank.h"
#include "Apps/studio/Views/MeterBallistics.h"

#include <QPixmap>
#include <QWidget>
#include <vector>

namespace studio {

/// A peak meter a channel, in dBFS, with its held peak as a figure above it, and with the two line-up levels marked:
/// -18 (EBU) and -20 (SMPTE).
class MeterView : public QWidget {
    Q_OBJECT

public:
    explicit MeterView(QWidget* parent = nullptr);

    void SetChannels(std::vector<ShownChannel> channels);

    /// Takes what was heard in the last `seconds`; null when nothing plays.
    void Advance(PeakBank* peaks, double seconds);

    /// Shows these levels and no others, at rest.
    void Show(PeakBank& peaks);

    /// Nothing moves any more.
    [[nodiscard]] bool IsAtRest() const;

    /// The bar of the channel shown at `place`, from the left.
    [[nodiscard]] const MeterBallistics& Bar(std::size_t place) const { return mBars[place]; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QRectF Plot() const;
    [[nodiscard]] double Y(double levelDb) const;
    void DrawScale(QPainter& painter) const;
    void DrawBar(QPainter& painter, std::size_t place) const;
    void Describe();
    [[nodiscard]] QFont FigureFont() const;
    [[nodiscard]] int FigureWidth() const;
    [[nodiscard]] int FigureRows() const;
    [[nodiscard]] double SlotWidth() const;
    [[nodiscard]] int WidthFor(int slot) const;

    std::vector<ShownChannel> mChannels;
    std::vector<MeterBallistics> mBars;
    double mSinceDescribed = 0;
};

}  // namespace studio
