#pragma once

#include <QLabel>

namespace studio {

/// A line of text that is cut with an ellipsis where there is little room; its tool tip then has all of it.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString Shown() const;
};

}  // namespace studio
