#include "Apps/studio/Views/WaveformView.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Window/Theme.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace studio {

namespace {

constexpr double kHighest = 1.12;  // level at the top
constexpr double kLowest = -0.12;
constexpr int kMarkStep = 10;  // percent
constexpr int kNumberStep = 20;
constexpr double kPartGap = 6;  // points between the parts of a parade

}  // namespace

std::span<const WaveformView::Part> WaveformView::PartsOf(Kind kind) {
    static constexpr std::array<Part, 1> kLuma = {{{Component::Luma, "Y\u2032", kPhosphor}}};
    static constexpr std::array<Part, 3> kParade = {{{Component::Red, "R\u2032", {0.95F, 0.30F, 0.26F}},
                                                     {Component::Green, "G\u2032", {0.30F, 0.92F, 0.42F}},
                                                     {Component::Blue, "B\u2032", {0.36F, 0.55F, 1.0F}}}};
    return kind == Kind::Luma ? std::span<const Part>(kLuma) : std::span<const Part>(kParade);
}

WaveformView::WaveformView(Kind kind, QWidget* parent) : Scope(parent), mParts(PartsOf(kind)) {
    setObjectName(kind == Kind::Luma ? "scope" : "parade");
    setAccessibleName(kind == Kind::Luma ? tr("Waveform monitor") : tr("RGB parade"));
    setToolTip(kind == Kind::Luma ? tr("Luma over the width of the picture, in percent")
                                  : tr("R\u2032, G\u2032 and B\u2032 over the width of the picture, in percent"));
}

QRectF WaveformView::Plot() const {
    const int numbers = fontMetrics().horizontalAdvance("100") + 14;
    return QRectF(rect()).adjusted(numbers, 8, -10, -8);
}

double WaveformView::Y(double level) const {
    const QRectF plot = Plot();
    return plot.top() + (kHighest - level) / (kHighest - kLowest) * plot.height();
}

double WaveformView::PartWidth() const {
    const auto parts = static_cast<double>(mParts.size());
    return (Plot().width() - kPartGap * (parts - 1)) / parts;
}

double WaveformView::X(std::size_t part, int column) const {
    const double width = PartWidth();
    return Plot().left() + static_cast<double>(part) * (width + kPartGap) + width * (column + 0.5) / Picture()->Width();
}

void WaveformView::DrawGraticule(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    const double line = fontMetrics().height();
    double lastNumber = plot.bottom() + line;
    for (int percent = -kMarkStep; percent <= 110; percent += kMarkStep) {
        const double y = std::round(Y(percent / 100.0)) + 0.5;
        const bool isEnd = percent == 0 || percent == 100;
        painter.setPen(QPen(isEnd ? theme.scopeStrong : theme.scopeGrid, 1));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        // In a low view numbers would lie upon one another.
        if (percent % kNumberStep == 0 && lastNumber - y >= line * 0.9) {
            painter.setPen(isEnd ? theme.scopeStrong : theme.scopeNumber);
            painter.drawText(QRectF(0, y - line / 2, plot.left() - 6, line), Qt::AlignRight | Qt::AlignVCenter,
                             SignedNumber(percent, 0));
            lastNumber = y;
        }
    }
    painter.setPen(theme.scopeNumber);
    for (std::size_t part = 0; part < mParts.size(); ++part) {
        const double left = plot.left() + static_cast<double>(part) * (PartWidth() + kPartGap);
        painter.drawText(QRectF(left + 2, plot.top(), PartWidth(), line), Qt::AlignLeft | Qt::AlignTop,
                         QString::fromUtf8(mParts[part].name));
    }
    if (Picture() != nullptr) {
        // At the foot where the last part's name leaves it no room at the top.
        const char* const matrix = NameOf(Picture()->ShownMatrix());
        const QString both = QString("B\u2032  ") + matrix;
        const bool fits = PartWidth() > fontMetrics().horizontalAdvance(both);
        painter.drawText(plot.adjusted(0, 0, -2, 0),
                         static_cast<int>(Qt::AlignRight | (fits ? Qt::AlignTop : Qt::AlignBottom)), matrix);
    }
}

// A column of the plot takes the columns of the picture that lie under it. The more pixels share a value, the
// brighter it is, on a scale that leaves a single line of the picture visible.
void WaveformView::DrawColumn(QImage& image, int x, std::size_t part, int first, int last) const {
    const double ratio = devicePixelRatioF();
    const auto reach = static_cast<int>(std::ceil(kBeamReach * ratio));
    const int height = image.height();
    std::vector<float> brightness(static_cast<std::size_t>(height));
    const double all = static_cast<double>(last - first) * Picture()->Height();
    for (int column = first; column < last; ++column) {
        for (const LevelCount& count : Picture()->LevelsOf(mParts[part].component, column)) {
            const double y = (kHighest - static_cast<double>(count.value)) / (kHighest - kLowest) * height;
            const auto share = static_cast<float>(std::pow(count.pixels / all, 0.4));
            const int from = std::max(0, static_cast<int>(y) - reach);
            const int to = std::min(height - 1, static_cast<int>(y) + reach);
            for (int line = from; line <= to; ++line) {
                brightness[static_cast<std::size_t>(line)] += 1.15F * share * Beam((line + 0.5 - y) / ratio);
            }
        }
    }
    for (int line = 0; line < height; ++line) {
        image.setPixel(x, line, BeamColour(brightness[static_cast<std::size_t>(line)], mParts[part].tint));
    }
}

QImage WaveformView::DrawTrace(QSize pixels) const {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const double ratio = devicePixelRatioF();
    const int width = std::max(1, static_cast<int>(PartWidth() * ratio));
    for (std::size_t part = 0; part < mParts.size(); ++part) {
        const int left = static_cast<int>(static_cast<double>(part) * (PartWidth() + kPartGap) * ratio);
        for (int x = 0; x < width && left + x < pixels.width(); ++x) {
            const int first = x * Picture()->Width() / width;
            const int last = std::max(first + 1, (x + 1) * Picture()->Width() / width);
            DrawColumn(image, left + x, part, first, last);
        }
    }
    return image;
}

QString WaveformView::Read(QPointF place) const {
    const QRectF plot = Plot();
    const double width = PartWidth() + kPartGap;
    const double from = place.x() - plot.left();
    const auto part = std::min(static_cast<std::size_t>(from / width), mParts.size() - 1);
    const double share = std::min((from - static_cast<double>(part) * width) / PartWidth(), 1.0);
    const int column = std::min(static_cast<int>(share * Picture()->Width()), Picture()->Width() - 1);
    const auto level = static_cast<float>(kHighest - (place.y() - plot.top()) / plot.height() * (kHighest - kLowest));
    return QString("x %1  %2 %3 %4")
        .arg(column)
        .arg(QString::fromUtf8(mParts[part].name), Percent(level))
        .arg(LumaCode10(level));
}

std::vector<QPointF> WaveformView::PlacesOf(const Ycc& colour, int column) const {
    std::vector<QPointF> places;
    for (std::size_t part = 0; part < mParts.size(); ++part) {
        const float level = ValueOf(mParts[part].component, colour, Picture()->ShownMatrix());
        places.emplace_back(X(part, column), Y(static_cast<double>(level)));
    }
    return places;
}

}  // namespace studio
