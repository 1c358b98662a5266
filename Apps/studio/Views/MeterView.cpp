#include "Apps/studio/Views/MeterView.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QAccessible>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace studio {

namespace {

constexpr int kBarWidth = 14;
constexpr int kGap = 21;  // room for a number above each bar
constexpr int kEdge = 8;
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
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
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
    if (moved) {
        Describe();
        update();
    }
}

bool MeterView::IsAtRest() const {
    return std::ranges::all_of(mBars, [](const MeterBallistics& bar) {
        return bar.LevelDb() <= MeterBallistics::kLowestDb && bar.HoldDb() <= MeterBallistics::kLowestDb;
    });
}

// For a screen reader that asks; nobody wants to be told sixty times a second.
void MeterView::Describe() {
    if (!QAccessible::isActive() && !accessibleDescription().isEmpty()) {
        return;
    }
    QStringList levels;
    for (std::size_t place = 0; place < mBars.size(); ++place) {
        levels += QString("%1 %2 dBFS").arg(mChannels[place].name, SignedNumber(mBars[place].HoldDb(), 1));
    }
    setAccessibleDescription(levels.join(", "));
}

QSize MeterView::sizeHint() const {
    const int bars = std::max<int>(2, static_cast<int>(mChannels.size()));
    const int numbers = fontMetrics().horizontalAdvance("\u221260") + 14;
    return {numbers + bars * (kBarWidth + kGap) + 2 * kEdge, 260};
}

QSize MeterView::minimumSizeHint() const {
    return {sizeHint().width(), 120};
}

QRectF MeterView::Plot() const {
    const int numbers = fontMetrics().horizontalAdvance("\u221260") + 14;
    const int line = fontMetrics().height();
    return QRectF(rect()).adjusted(kEdge + numbers, line + 8, -kEdge, -line - 8);
}

double MeterView::Y(double levelDb) const {
    const QRectF plot = Plot();
    const double share = (kTopDb - levelDb) / (kTopDb - MeterBallistics::kLowestDb);
    return plot.top() + std::clamp(share, 0.0, 1.0) * plot.height();
}

void MeterView::DrawScale(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    const int line = fontMetrics().height();
    double lowestNumber = -1e9;
    for (const Mark& mark : kMarks) {
        const double y = std::round(Y(mark.levelDb)) + 0.5;
        painter.setPen(QPen(mark.isLineUp ? theme.accent : theme.line, 1));
        painter.drawLine(QPointF(plot.left() - 5, y), QPointF(plot.right(), y));
        // The two line-up levels stand close together: each number keeps to its side of the pair.
        const double shift = mark.levelDb == -18 ? -line * 0.35 : mark.levelDb == -20 ? line * 0.35 : 0;
        const double middle = y + shift;
        if (middle - lowestNumber < line * 0.72 && !mark.isLineUp) {
            continue;
        }
        painter.setPen(mark.isLineUp ? theme.text : theme.dim);
        painter.drawText(QRectF(0, middle - line / 2.0, plot.left() - 8, line), Qt::AlignRight | Qt::AlignVCenter,
                         SignedNumber(mark.levelDb, 0));
        lowestNumber = middle;
    }
}

void MeterView::DrawBar(QPainter& painter, std::size_t place) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    const MeterBallistics& bar = mBars[place];
    const double x = plot.left() + kGap / 2.0 + static_cast<double>(place) * (kBarWidth + kGap);
    painter.fillRect(QRectF(x, plot.top(), kBarWidth, plot.height()), theme.meterOff);
    const auto fill = [&](double fromDb, double toDb, const QColor& colour) {
        const double top = Y(std::min(toDb, bar.LevelDb()));
        if (bar.LevelDb() > fromDb) {
            painter.fillRect(QRectF(x, top, kBarWidth, Y(fromDb) - top), colour);
        }
    };
    fill(MeterBallistics::kLowestDb, kLineUpDb, theme.meterLow);
    fill(kLineUpDb, kPermittedDb, theme.meterMid);
    fill(kPermittedDb, kTopDb, theme.meterHigh);
    for (const Mark& mark : kMarks) {
        if (mark.isLineUp) {
            painter.fillRect(QRectF(x, std::round(Y(mark.levelDb)), kBarWidth, 1), theme.accent);
        }
    }
    const int line = fontMetrics().height();
    const QRectF slot(x - kGap / 2.0 - 2, 4, kBarWidth + kGap + 4, line);
    if (bar.HoldDb() > MeterBallistics::kLowestDb) {
        painter.fillRect(QRectF(x, Y(bar.HoldDb()) - 1, kBarWidth, 2), theme.text);
        painter.setPen(theme.text);
        QFont small = font();
        small.setPointSizeF(small.pointSizeF() * 0.8);
        painter.setFont(small);
        painter.drawText(slot, Qt::AlignCenter, SignedNumber(bar.HoldDb(), 1));
        painter.setFont(font());
    }
    painter.setPen(theme.dim);
    painter.drawText(QRectF(slot.x(), plot.bottom() + 4, slot.width(), line), Qt::AlignCenter, mChannels[place].name);
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
