#pragma once

#include <QLabel>
#include <QPointer>

namespace zelui::qt {

class HotTextNumber;

/// Says in which range a number may be chosen, and goes on saying it when the range changes; in red while what has been
/// typed is no such number. A screen reader hears it with the number. In the form
/// the number is the label's buddy, and the text has %1 and %2 where the ends of the range belong.
class RangeLabel : public QLabel {
    Q_OBJECT

public:
    explicit RangeLabel(QWidget* parent = nullptr);

    /// Begins: to be called once text and buddy are in place.
    void Follow();

protected:
    void changeEvent(QEvent* event) override;

private:
    void Mute();
    void ShowRange();
    void ShowRightness();

    QString mPattern;
    QPointer<HotTextNumber> mNumber;
};

}  // namespace zelui::qt
