#pragma once

#include "Host/Desktop/FormDialog.h"
#include "Host/Desktop/QtNode.h"
#include "Host/Interface/UI/Controls.h"

#include <QLabel>
#include <vector>

namespace zelui::qt {

/// What the controls share: `Interface` on a widget of class `WidgetType`.
template <class Interface, class WidgetType>
class QtControl : public QtNode<Interface> {
public:
    void NotifyWhenChanged(const ui::MessageFunctionPtr& function) override {
        if (function) {
            mFunctions.push_back(function);
        }
    }

    /// The labels that belong to the control are greyed with it.
    void SetDisabled(bool disabled) override {
        WidgetType* const control = Control();
        if (control == nullptr) {
            return;
        }
        control->setDisabled(disabled);
        const auto labels = control->window()->template findChildren<QLabel*>();
        for (QLabel* const label : labels) {
            if (label->buddy() == control) {
                label->setDisabled(disabled);
            }
        }
    }

protected:
    QtControl(WidgetType& widget, std::weak_ptr<NodeTable> nodes) : QtNode<Interface>(widget, std::move(nodes)) {}

    /// Null once the widget is gone.
    [[nodiscard]] WidgetType* Control() const { return static_cast<WidgetType*>(this->Widget()); }

    /// Reports each emission of `signal`, but those that code caused.
    template <class Signal>
    void ReportOn(Signal signal) {
        QObject::connect(Control(), signal, &mConnections, [this] { Report(); });
    }

private:
    void Report() {
        FormDialog* const dialog = FormDialog::Of(Control());
        if (dialog == nullptr || dialog->IsSetByCode()) {
            return;
        }
        dialog->CallHandlers([this] {
            controls::UI_ControlChangedMessage message;
            const auto functions = mFunctions;  // a function may register another
            for (const ui::MessageFunctionPtr& function : functions) {
                (*function)(&message);
            }
        });
    }

    std::vector<ui::MessageFunctionPtr> mFunctions;
    QObject mConnections;  // ends them with this object
};

}  // namespace zelui::qt
