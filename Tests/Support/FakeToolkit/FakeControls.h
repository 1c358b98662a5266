#pragma once

#include "Host/Interface/UI/Controls.h"
#include "Tests/Support/FakeToolkit/FakeNode.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace test {

/// What all fake controls do: record what code asks of them and tell listeners what a person did.
template <class Interface>
class FakeControl : public FakeNode<Interface> {
public:
    using FakeNode<Interface>::FakeNode;

    void NotifyWhenChanged(const zelui::ui::MessageFunctionPtr& function) override {
        this->Log().Add(this->Name(), "NotifyWhenChanged");
        static_cast<void>(this->AnswerTo("NotifyWhenChanged"));
        mListeners.push_back(function);
    }

    void SetDisabled(bool disabled) override {
        this->Log().Add(this->Name(), "SetDisabled", disabled);
        static_cast<void>(this->AnswerTo("SetDisabled"));
        mDisabled = disabled;
    }

    [[nodiscard]] bool IsDisabled() const { return mDisabled; }

    /// Calls the listeners as a change by a person does.
    void ReportChange() {
        zelui::controls::UI_ControlChangedMessage message;
        Report(&message);
    }

    /// Calls the listeners with any message.
    void Report(zelui::ui::Message* message) {
        const auto listeners = mListeners;
        for (const auto& listener : listeners) {
            (*listener)(message);
        }
    }

protected:
    /// Nobody changes a control that is greyed.
    void RequireEnabled() const {
        if (mDisabled) {
            throw std::logic_error("a person cannot change " + this->Name() + ": it is disabled");
        }
    }

private:
    std::vector<zelui::ui::MessageFunctionPtr> mListeners;
    bool mDisabled = false;
};

class FakeButton : public FakeControl<zelui::controls::UI_Button> {
public:
    using FakeControl::FakeControl;

    /// Presses the button as a person does.
    void Press() {
        RequireEnabled();
        ReportChange();
    }
};

class FakeRadioButton : public FakeControl<zelui::controls::UI_RadioButton> {
public:
    using FakeControl::FakeControl;

    void NotifyWhenChanged(const zelui::ui::MessageFunctionPtr& function) override {
        FakeControl::NotifyWhenChanged(function);
        if (Log().radioButtonsReportAtOnce) {
            ReportChange();
        }
    }

    void SetValue(std::int32_t value) override {
        Log().Add(Name(), "SetValue", value);
        static_cast<void>(AnswerTo("SetValue"));
        mValue = value;
    }
    [[nodiscard]] std::int32_t GetValue() const override {
        return AnswerTo("GetValue") == Answer::Right ? mValue : kNonsense;
    }

    /// Switches the button silently, as its group does.
    void Switch(bool on) {
        RequireEnabled();
        mValue = on ? kOn : kOff;
    }

private:
    static constexpr std::int32_t kNonsense = 77;

    std::int32_t mValue = kOff;
};

class FakeHotTextNumber : public FakeControl<zelui::controls::UI_HotTextNumber> {
public:
    using FakeControl::FakeControl;

    void SetValue(double value) override {
        Log().Add(Name(), "SetValue", value);
        static_cast<void>(AnswerTo("SetValue"));
        mValue = value;
    }
    [[nodiscard]] double GetValue() const override {
        return AnswerTo("GetValue") == Answer::Right ? mValue : std::numeric_limits<double>::quiet_NaN();
    }
    void SetMaxValue(double maximum) override {
        Log().Add(Name(), "SetMaxValue", maximum);
        static_cast<void>(AnswerTo("SetMaxValue"));
        mMaximum = maximum;
    }

    /// Types a number as a person does; one above the maximum becomes the maximum.
    void Type(double value) {
        RequireEnabled();
        mValue = value > mMaximum ? mMaximum : value;
        ReportChange();
    }

private:
    double mValue = 0.0;
    double mMaximum = std::numeric_limits<double>::infinity();
};

class FakePopup : public FakeControl<zelui::controls::UI_Popup> {
public:
    using FakeControl::FakeControl;

    std::int64_t AddItem(const Brio::String& label) override;
    void SetValue(std::int64_t index) override;
    [[nodiscard]] std::int64_t GetValue() const override {
        return AnswerTo("GetValue") == Answer::Right ? mChosen : kNonsense;
    }

    /// Chooses an item as a person does.
    void Choose(std::int64_t index) {
        RequireEnabled();
        mChosen = index;
        ReportChange();
    }

    [[nodiscard]] const std::vector<std::string>& Labels() const { return mLabels; }

private:
    static constexpr std::int64_t kNonsense = std::numeric_limits<std::int64_t>::max();

    std::vector<std::string> mLabels;
    std::int64_t mChosen = -1;
};

}  // namespace test
