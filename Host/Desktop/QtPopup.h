#pragma once

#include "Host/Desktop/QtControl.h"

#include <QComboBox>

namespace zelui::qt {

/// A list that pops up.
class QtPopup : public QtControl<controls::UI_Popup, QComboBox> {
public:
    QtPopup(QComboBox& list, std::weak_ptr<NodeTable> nodes);

    /// Leaves what is chosen as it was; -1 when the list is gone.
    std::int64_t AddItem(const Brio::String& label) override;
    void SetValue(std::int64_t index) override;
    [[nodiscard]] std::int64_t GetValue() const override;
};

}  // namespace zelui::qt
