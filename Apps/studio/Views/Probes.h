#pragma once

#include <QObject>
#include <QPoint>
#include <QSize>
#include <vector>

namespace studio {

/// The pixels that a person has pinned, in the order of pinning.
class Probes : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kMost = 6;

    using QObject::QObject;

    [[nodiscard]] const std::vector<QPoint>& Pixels() const noexcept { return mPixels; }

    /// Takes away the probe that lies within `reach` pixels of `pixel`, or pins one there; the oldest makes room.
    void Toggle(QPoint pixel, int reach);
    void Clear();

    /// Takes away those outside of a picture of this size.
    void KeepWithin(QSize picture);

Q_SIGNALS:
    void Changed();

private:
    std::vector<QPoint> mPixels;
};

}  // namespace studio
