#pragma once

#include <lineup/Clip.h>
#include "Apps/studio/Views/LanePainter.h"
#include "Apps/studio/Views/LaneSpan.h"

#include <QPixmap>
#include <QScrollBar>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>

namespace studio {

/// The waveform overview, a lane a channel, with a playhead. The wheel zooms, with Shift it scrolls; a click
/// seeks. Peaks are asked for when what is visible changes, and for that alone; the playhead moves over a
/// picture of them.
class LanesView : public QWidget {
    Q_OBJECT

public:
    explicit LanesView(QWidget* parent = nullptr);

    /// Draws what is visible, or throws.
    using Draw = std::function<QPixmap(const LaneSpan& span, const LaneView& view)>;

    void SetDrawing(Draw draw, int lanes, std::int64_t lengthSamples);

    void SetClip(std::shared_ptr<const lineup::Clip> clip, std::int64_t lengthSamples);

    /// `follow`: scrolls on when it leaves what is visible.
    void SetPlayhead(std::int64_t sample, bool follow);

    void ZoomIn();  ///< about the playhead, or the middle when that is out of sight
    void ZoomOut();
    void ShowAll();
    void ScrollPages(int pages);

    [[nodiscard]] const LaneSpan& Span() const noexcept { return mSpan; }

    /// The widget's x of a sample that is visible.
    [[nodiscard]] double X(std::int64_t sample) const { return Gutter() + mSpan.X(sample); }

    /// How often the plug-in has been asked for peaks.
    [[nodiscard]] std::int64_t Requests() const noexcept { return mRequests; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void SeekWanted(std::int64_t sample);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] int Gutter() const;
    [[nodiscard]] QRect PlayheadRect() const;
    [[nodiscard]] double ZoomCentre() const;
    void ZoomAbout(double factor, double x);
    void SpanChanged();
    [[nodiscard]] int HeightFor(int laneHeight) const;
    [[nodiscard]] int LanesHeight() const;
    void DrawAnew();

    Draw mDraw;  // empty: nothing to show
    int mNumLanes = 2;
    LaneSpan mSpan;
    QScrollBar* mScroll;
    std::int64_t mPlayhead = 0;
    QPixmap mLanes;  // null: to be drawn
    QString mProblem;
    std::int64_t mRequests = 0;
};

}  // namespace studio
