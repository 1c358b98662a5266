#pragma once

#include <cstdint>

#include "../Brio/String.h"
#include "../Core/Export.h"
#include "Message.h"
#include "UI_Node.h"

/// The controls that a dialog is made of. Setting a value from code never reports a change: a control
/// reports what a person did.
namespace zelui::controls {

// NOLINTBEGIN(cppcoreguidelines-special-member-functions): copied like classes without a destructor

/// What a control sends when a person changed or pressed it.
class ZEL_API UI_ControlChangedMessage : public ui::Message {
public:
    ~UI_ControlChangedMessage() override;
};

/// What all controls share.
class ZEL_API UI_ControlView : public ui::UI_Node {
public:
    ~UI_ControlView() override;

    /// Calls `function` with a UI_ControlChangedMessage each time a person changes the control, until
    /// the control is gone. Several functions are called in the order they were registered.
    virtual void NotifyWhenChanged(const ui::MessageFunctionPtr& function) = 0;

    /// A disabled control is shown greyed and cannot be changed by a person.
    virtual void SetDisabled(bool disabled) = 0;
};

/// A push button. Its change is being pressed.
class ZEL_API UI_Button : public UI_ControlView {
public:
    ~UI_Button() override;
};

/// One of a group of which one is on.
class ZEL_API UI_RadioButton : public UI_ControlView {
public:
    ~UI_RadioButton() override;

    static constexpr std::int32_t kOff = 0;
    static constexpr std::int32_t kOn = 1;

    virtual void SetValue(std::int32_t value) = 0;
    [[nodiscard]] virtual std::int32_t GetValue() const = 0;
};

/// A number shown as text that can be dragged, typed into and stepped.
class ZEL_API UI_HotTextNumber : public UI_ControlView {
public:
    ~UI_HotTextNumber() override;

    /// Shows `value`, which may lie outside what a person can choose; it is kept, every bit of it, until
    /// a person edits the control.
    virtual void SetValue(double value) = 0;
    [[nodiscard]] virtual double GetValue() const = 0;

    /// The largest number that a person can choose.
    virtual void SetMaxValue(double maximum) = 0;
};

/// A list of which one item is chosen.
class ZEL_API UI_Popup : public UI_ControlView {
public:
    ~UI_Popup() override;

    /// Adds an item at the end and returns its index, counted from 0.
    virtual std::int64_t AddItem(const Brio::String& label) = 0;

    /// Chooses the item at `index`; an index without an item chooses none.
    virtual void SetValue(std::int64_t index) = 0;

    /// The index of the item that is chosen, -1 for none.
    [[nodiscard]] virtual std::int64_t GetValue() const = 0;
};

// NOLINTEND(cppcoreguidelines-special-member-functions)

}  // namespace zelui::controls
