#pragma once

#include "Host/Interface/Brio/InterfaceRef.h"
#include "Host/Interface/Brio/String.h"
#include "Host/Interface/Core/SmallBlockAllocator.h"
#include "Host/Interface/Tarn/UI_Tarn.h"
#include "Host/Interface/UI/Controls.h"
#include "Src/ToneSettingsDialog/IToneSettingsDialogDataExchange.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

/// The tone settings dialog: shows the settings that a data exchange holds, edits a copy of them, and gives
/// the copy back when the person presses OK. UI thread.
class ToneSettingsDialogImpl : public zeltarn::UI_Tarn {
public:
    /// Takes a reference to `dataExchange` and starts from its settings. Throws
    /// Brio::NullInterfaceException when it is empty. `drawSupplier` and `parent` go to UI_Tarn.
    ToneSettingsDialogImpl(const Brio::String& layoutName, const zelui::drawbot::SupplierInterface* drawSupplier,
                           zelui::ui::UI_Node* parent,
                           Brio::InterfaceRef<IToneSettingsDialogDataExchange> dataExchange);
    ~ToneSettingsDialogImpl() override;
    ToneSettingsDialogImpl(const ToneSettingsDialogImpl&) = delete;
    ToneSettingsDialogImpl& operator=(const ToneSettingsDialogImpl&) = delete;

    /// Finds the layout's controls, listens to them and shows the settings. Throws the host's errors for a
    /// violated contract without a root view and for an invalid type conversion when a control is
    /// of another type than its name says, and Brio::NullInterfaceException when a button, the frequency or
    /// the level is missing.
    void Initialize() override;

private:
    using ChangedMessage = zelui::controls::UI_ControlChangedMessage;
    using ChangeHandler = void (ToneSettingsDialogImpl::*)(ChangedMessage*);
    template <class Key, class Value>
    using SmallMap = std::map<Key, Value, std::less<Key>,
                              zelcore::utility::SmallBlockAllocator::Allocator<std::pair<const Key, Value>>>;

    template <class Control>
    zelui::ui::NodeRef<Control> FindControl(std::string_view name);
    template <class Control>
    void NotifyWhenChanged(const zelui::ui::NodeRef<Control>& control, ChangeHandler handler);

    void InitFrequency();
    void InitAmplitude();
    void InitIdentifiers();
    void InitButtons();
    [[nodiscard]] bool HasIdentifiers() const;

    void InitDialogValues();
    void InitIdentifierFormatPopup();
    void TakeFormatFromPopup();
    void EnableAndDisableControls();

    void OnFrequencyHottextNumberChanged(ChangedMessage* message);
    void OnAmplitudeHottextNumberChanged(ChangedMessage* message);
    void OnRadioButtonGroupChanged(ChangedMessage* message);
    void OnIdentifierPopupChanged(ChangedMessage* message);
    void OKButtonChanged(ChangedMessage* message);
    void OnCancelButtonChanged(ChangedMessage* message);

    zelui::ui::NodeRef<zelui::ui::UI_DialogView> mDialogPtr;
    zelui::ui::NodeRef<zelui::controls::UI_RadioButton> mSteadyTonesButton;
    zelui::ui::NodeRef<zelui::controls::UI_RadioButton> mIdentifyChannelsButton;
    zelui::ui::NodeRef<zelui::controls::UI_HotTextNumber> mFrequencyHotText;
    zelui::ui::NodeRef<zelui::controls::UI_HotTextNumber> mAmplitudeHotText;
    zelui::ui::NodeRef<zelui::controls::UI_Popup> mIdentifierFormatPopup;
    SmallMap<std::int64_t, IdentifierFormat> mPopupIndexToFormat;
    Brio::String mLayoutName;
    Brio::InterfaceRef<IToneSettingsDialogDataExchange> mDataExchange;
    BarsAndToneInfo mInfo;            ///< the copy that the controls edit
    bool mValuesInitialized = false;  ///< for the debugger: the controls show mInfo
};
