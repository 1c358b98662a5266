#pragma once

#include "Host/Desktop/HotTextNumber.h"
#include "Host/Desktop/QtControl.h"

namespace zelui::qt {

/// A hot-text number.
class QtHotTextNumber : public QtControl<controls::UI_HotTextNumber, HotTextNumber> {
public:
    QtHotTextNumber(HotTextNumber& number, std::weak_ptr<NodeTable> nodes);

    void SetValue(double value) override;
    /// 0 once the widget is gone.
    [[nodiscard]] double GetValue() const override;
    void SetMaxValue(double maximum) override;
};

}  // namespace zelui::qt
