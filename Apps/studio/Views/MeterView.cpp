#include "Apps/studio/Views/MeterView.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace studio {

namespace {

constexpr int kBarWidth = 14;
constexpr int kLeastBarWidth = 8;
constexpr int kMostFigureRows = 3;
constexpr double kDescribedEverySeconds = 0.25;
constexpr int kMeterEdge = 8;
constexpr double kTopDb = 0;
constexpr double kPermittedDb = -9;  // the permitted maximum level of EBU R 68
constexpr double kLineUpDb = -18;

struct Mark {
    int levelDb;
    bool isLineUp;
};
constexpr std::array<Mark, 10> kMarks = {{{0, false},
                                          {-6, false},
                                          {-9, false},
                                          {-12, false},
                                          {-18, true},
                                          {-20, true},
                                          {-30, false},
                                          {-40, false},
                                          {-50, false},
                                          {-60, false}}};

}  // namespace

MeterView::MeterView(QWidget* parent) : QWidget(parent) {
    setObjectName("meters");
    setAccessibleName(tr("Level meters"));
    setToolTip(tr("Sample peaks in dBFS, held for 1.5 s. Line-up levels: \u221218 (EBU), \u221220 (SMPTE)"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
}

void MeterView::SetChannels(std::vector<ShownChannel> channels) {
    mChannels = std::move(channels);
    mBars.assign(mChannels.size(), {});
    Describe();
    updateGeometry();
    update();
}

void MeterView::Advance(PeakBank* peaks, double seconds) {
    bool moved = false;
    for (std::size_t place = 0; place < mBars.size(); ++place) {
        const std::size_t channel = mChannels[place].index;
        const bool isHeard = peaks != nullptr && channel < peaks->NumChannels();
        const MeterBallistics before = mBars[place];
        mBars[place].Update(isHeard ? static_cast<double>(peaks->Take(channel)) : 0, seconds);
        moved = moved || before.LevelDb() != mBars[place].LevelDb() || before.HoldDb() != mBars[place].HoldDb();
    }
    mSinceDescribed += seconds;
    if (moved) {
        update();
        if (mSinceDescribed >= kDescribedEverySeconds || IsAtRest()) {
            Describe();
        }
    }
}

void MeterView::Show(PeakBank& peaks) {
    mBars.assign(mChannels.size(), {});
    Advance(&peaks, kDescribedEverySeconds);
    update();
}

bool MeterView::IsAtRest() const {
    return std::ranges::all_of(mBars, [](const MeterBallistics& bar) {
        return bar.LevelDb() <= MeterBallistics::kLowestDb && bar.HoldDb() <= MeterBallistics::kLowestDb;
    });
}

// For a screen reader; nobody wants to be told sixty times a second.
void MeterView::Describe() {
    mSinceDescribed = 0;
    QStringList levels;
    for (std::size_t place = 0; place < mBars.size(); ++place) {
        levels += QString("%1 %2 dBFS").arg(mChannels[place].name, SignedNumber(mBars[place].HoldDb(), 2));
    }
    setAccessibleDescription(levels.join(", "));
}

int MeterView::FigureWidth() const {
    return QFontMetrics(FigureFont()).horizontalAdvance("\u221200.00") + 4;
}

QFont MeterView::FigureFont() const {
    QFont bold = font();
    bold.setBold(true);
    return bold;
}

double MeterView::SlotWidth() const {
    return Plot().width() / static_cast<double>(std::max<std::size_t>(1, mBars.size()));
}

// Figures that are wider than their bar's room stand in several rows, each above its bar.
int MeterView::FigureRows() const {
    const int numbers = fontMetrics().horizontalAdvance("\u221260") + 14;
    const double slot =
        (width() - 2.0 * kMeterEdge - numbers) / static_cast<double>(std::max<std::size_t>(1, mBars.size()));
    const auto rows = static_cast<int>(std::ceil(FigureWidth() / std::max(1.0, slot)));
    return std::clamp(rows, 1, kMostFigureRows);
}

int MeterView::WidthFor(int slot) const {
    const int bars = std::max<int>(2, static_cast<int>(mChannels.size()));
    const int numbers = fontMetrics().horizontalAdvance("\u221260") + 14;
    return numbers + bars * slot + 2 * kMeterEdge;
}

QSize MeterView::sizeHint() const {
    return {WidthFor(mChannels.size() > 2 ? FigureWidth() / 2 + 4 : FigureWidth()), 260};
}

QSize MeterView::minimumSizeHint() const {
    return {WidthFor(std::max(fontMetrics().horizontalAdvance("LFE") + 4, FigureWidth() / kMostFigureRows + 1)), 110};
}

QRectF MeterView::Plot() const {
    const int numbers = fontMetrics().horizontalAdvance("\u221260") + 14;
    const int line = fontMetrics().height();
    return QRectF(rect()).adjusted(kMeterEdge + numbers, FigureRows() * line + 8, -kMeterEdge, -line - 8);
}

double MeterView::Y(double levelDb) const {
    const QRectF plot = Plot();
    const double share = (kTopDb - levelDb) / (kTopDb - MeterBallistics::kLowestDb);
    return plot.top() + std::clamp(share, 0.0, 1.0) * plot.height();
}

// Every mark has its line; of the numbers the ends and the line-up levels come first, and others where there is room.
void MeterView::DrawScale(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    const double line = fontMetrics().height();
    std::vector<double> taken;
    for (const bool isFirstRound : {true, false}) {
        for (const Mark& mark : kMarks) {
            const bool isEnd = mark.levelDb == kMarks.front().levelDb || mark.levelDb == kMarks.back().levelDb;
            if ((isEnd || mark.isLineUp) != isFirstRound) {
                continue;
            }
            const double y = std::round(Y(mark.levelDb)) + 0.5;
            painter.setPen(QPen(mark.isLineUp ? theme.accent : theme.line, 1));
            painter.drawLine(QPointF(plot.left() - 5, y), QPointF(plot.right(), y));
            // The two line-up levels stand close together: each number keeps to its side of the pair.
            const double shift = mark.levelDb == -18 ? -line * 0.4 : mark.levelDb == -20 ? line * 0.4 : 0;
            const double middle = y + shift;
            if (std::ranges::any_of(taken, [&](double other) { return std::abs(other - middle) < line * 0.85; })) {
                continue;
            }
            painter.setPen(mark.isLineUp ? theme.text : theme.dim);
            painter.drawText(QRectF(0, middle - line / 2.0, plot.left() - 8, line), Qt::AlignRight | Qt::AlignVCenter,
                             SignedNumber(mark.levelDb, 0));
            taken.push_back(middle);
        }
    }
}

void MeterView::DrawBar(QPainter& painter, std::size_t place) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    const MeterBallistics& bar = mBars[place];
    const double slotWidth = SlotWidth();
    const double barWidth = std::clamp<double>(std::floor(slotWidth * 0.55), kLeastBarWidth, kBarWidth);
    const double middle = plot.left() + (static_cast<double>(place) + 0.5) * slotWidth;
    const double x = std::round(middle - barWidth / 2);
    painter.fillRect(QRectF(x, plot.top(), barWidth, plot.height()), theme.meterOff);
    const auto fill = [&](double fromDb, double toDb, const QColor& colour) {
        const double top = Y(std::min(toDb, bar.LevelDb()));
        if (bar.LevelDb() > fromDb) {
            painter.fillRect(QRectF(x, top, barWidth, Y(fromDb) - top), colour);
        }
    };
    fill(MeterBallistics::kLowestDb, kLineUpDb, theme.meterLow);
    fill(kLineUpDb, kPermittedDb, theme.meterMid);
    fill(kPermittedDb, kTopDb, theme.meterHigh);
    for (const Mark& mark : kMarks) {
        if (mark.isLineUp) {
            painter.fillRect(QRectF(x, std::round(Y(mark.levelDb)), barWidth, 1), theme.accent);
        }
    }
    const int line = fontMetrics().height();
    if (bar.HoldDb() > MeterBallistics::kLowestDb) {
        painter.fillRect(QRectF(x, Y(bar.HoldDb()) - 1, barWidth, 2), theme.text);
        const auto row = static_cast<double>(place % static_cast<std::size_t>(FigureRows()));
        const double left = std::min(middle - FigureWidth() / 2.0, width() - 1.0 * FigureWidth());
        const QRectF figure(left, 4 + row * line, FigureWidth(), line);
        painter.setPen(theme.text);
        painter.setFont(FigureFont());
        painter.drawText(figure, Qt::AlignCenter, SignedNumber(bar.HoldDb(), 2));
        painter.setFont(font());
    }
    painter.setPen(theme.dim);
    painter.drawText(QRectF(middle - slotWidth, plot.bottom() + 4, 2 * slotWidth, line), Qt::AlignCenter,
                     mChannels[place].name);
}

void MeterView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    DrawScale(painter);
    for (std::size_t place = 0; place < mBars.size(); ++place) {
        DrawBar(painter, place);
    }
}

void MeterView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

}  // namespace studio
