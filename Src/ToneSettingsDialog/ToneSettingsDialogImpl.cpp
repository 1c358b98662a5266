#include "Src/ToneSettingsDialog/ToneSettingsDialogImpl.h"

#include "Host/Interface/Core/Casts.h"
#include "Host/Interface/Core/Localizer.h"
#include "Host/Interface/UI/Message.h"
#include "Src/ToneSettingsDialog/ContractViolation.h"
#include "Src/ToneSettingsDialog/IdentifierFormatItems.h"
#include "Src/ToneSettingsDialog/LayoutNames.h"
#include "Src/ToneSettingsDialog/LevelConversion.h"

using zelui::controls::UI_Button;
using zelui::controls::UI_HotTextNumber;
using zelui::controls::UI_Popup;
using zelui::controls::UI_RadioButton;
using zelui::ui::NodeRef;

namespace {

constexpr const char* kInitializeFunction = "virtual void ToneSettingsDialogImpl::Initialize()";

std::int32_t RadioValue(bool on) {
    return on ? UI_RadioButton::kOn : UI_RadioButton::kOff;
}

}  // namespace

ToneSettingsDialogImpl::ToneSettingsDialogImpl(const Brio::String& layoutName,
                                               const zelui::drawbot::SupplierInterface* drawSupplier,
                                               zelui::ui::UI_Node* parent,
                                               Brio::InterfaceRef<IToneSettingsDialogDataExchange> dataExchange)
    : UI_Tarn(layoutName, drawSupplier, parent), mLayoutName(layoutName), mDataExchange(std::move(dataExchange)) {
    mDataExchange->GetPrefs(mInfo);
}

// The members after these two go in their order: the controls from the popup to the root view.
ToneSettingsDialogImpl::~ToneSettingsDialogImpl() {
    mDataExchange = {};
    mPopupIndexToFormat.clear();
}

void ToneSettingsDialogImpl::Initialize() {
    mDialogPtr = GetView();
    if (!mDialogPtr) {
        RaiseContractViolation("mDialogPtr != NULL", kInitializeFunction, __LINE__);
    }
    InitFrequency();
    InitAmplitude();
    if (HasIdentifiers()) {
        InitIdentifiers();
    }
    InitButtons();
    InitDialogValues();
}

// The control called `name`, or an empty reference when the layout has none.
template <class Control>
NodeRef<Control> ToneSettingsDialogImpl::FindControl(std::string_view name) {
    zelui::ui::UI_Node* const node = mDialogPtr->GetUINodePtr(name, true);
    if (node == nullptr) {
        return {};
    }
    return NodeRef<Control>(zelcore::utility::NonOptionalDynamicCast<Control>(node));
}

template <class Control>
void ToneSettingsDialogImpl::NotifyWhenChanged(const NodeRef<Control>& control, ChangeHandler handler) {
    control->NotifyWhenChanged(zelui::ui::BindMessageFunction(handler, this));
}

void ToneSettingsDialogImpl::InitFrequency() {
    mFrequencyHotText = FindControl<UI_HotTextNumber>(kFrequencyHotTextNumberID);
    if (mFrequencyHotText) {
        NotifyWhenChanged(mFrequencyHotText, &ToneSettingsDialogImpl::OnFrequencyHottextNumberChanged);
        // A tone of more than half the sample rate would be heard as another.
        mFrequencyHotText->SetMaxValue(static_cast<double>(mInfo.sampleRate) * 0.5);
    }
}

void ToneSettingsDialogImpl::InitAmplitude() {
    mAmplitudeHotText = FindControl<UI_HotTextNumber>(kAmplitudeHotTextNumberID);
    if (mAmplitudeHotText) {
        NotifyWhenChanged(mAmplitudeHotText, &ToneSettingsDialogImpl::OnAmplitudeHottextNumberChanged);
    }
}

void ToneSettingsDialogImpl::InitIdentifiers() {
    mSteadyTonesButton = FindControl<UI_RadioButton>(kSteadyTonesBtnID);
    if (mSteadyTonesButton) {
        NotifyWhenChanged(mSteadyTonesButton, &ToneSettingsDialogImpl::OnRadioButtonGroupChanged);
    }
    mIdentifyChannelsButton = FindControl<UI_RadioButton>(kIdentifyChannelsBtnID);
    if (mIdentifyChannelsButton) {
        NotifyWhenChanged(mIdentifyChannelsButton, &ToneSettingsDialogImpl::OnRadioButtonGroupChanged);
    }
    mIdentifierFormatPopup = FindControl<UI_Popup>(kIdentifierFormatPopupID);
    if (mIdentifierFormatPopup) {
        NotifyWhenChanged(mIdentifierFormatPopup, &ToneSettingsDialogImpl::OnIdentifierPopupChanged);
    }
}

// Every layout must have both: without them the dialog could not be left.
void ToneSettingsDialogImpl::InitButtons() {
    NotifyWhenChanged(FindControl<UI_Button>(kCancelButtonID), &ToneSettingsDialogImpl::OnCancelButtonChanged);
    NotifyWhenChanged(FindControl<UI_Button>(kOkButtonID), &ToneSettingsDialogImpl::OKButtonChanged);
}

bool ToneSettingsDialogImpl::HasIdentifiers() const {
    return mLayoutName == kToneSettingsWithIdentifiersDialogID;
}

void ToneSettingsDialogImpl::InitDialogValues() {
    mFrequencyHotText->SetValue(static_cast<double>(mInfo.frequency));
    mAmplitudeHotText->SetValue(static_cast<double>(LevelDbFromGain(mInfo.amplitude)));
    if (HasIdentifiers()) {
        mSteadyTonesButton->SetValue(RadioValue(mInfo.identifyChannels == 0));
        mIdentifyChannelsButton->SetValue(RadioValue(mInfo.identifyChannels == 1));
        InitIdentifierFormatPopup();
        EnableAndDisableControls();
    }
    mValuesInitialized = true;
}

void ToneSettingsDialogImpl::InitIdentifierFormatPopup() {
    if (!mIdentifierFormatPopup) {
        return;
    }
    mPopupIndexToFormat.clear();
    for (const IdentifierFormatItem& item : IdentifierFormatItemsFor(mInfo.channelType)) {
        const Brio::String label = zelcore::config::Localizer::Get().GetLocalizedString(item.labelKey);
        mPopupIndexToFormat[mIdentifierFormatPopup->AddItem(label)] = item.format;
    }
    mIdentifierFormatPopup->SetValue(0);
    for (const auto& [index, format] : mPopupIndexToFormat) {
        if (format == mInfo.identifierFormat) {
            mIdentifierFormatPopup->SetValue(index);
        }
    }
    // A sequence that the clip's channels cannot play gives way to the one that is shown.
    TakeFormatFromPopup();
}

void ToneSettingsDialogImpl::TakeFormatFromPopup() {
    const auto chosen = mPopupIndexToFormat.find(mIdentifierFormatPopup->GetValue());
    if (chosen != mPopupIndexToFormat.end()) {
        mInfo.identifierFormat = chosen->second;
    }
}

void ToneSettingsDialogImpl::EnableAndDisableControls() {
    if (!mFrequencyHotText || !mAmplitudeHotText || !mIdentifierFormatPopup) {
        return;
    }
    const bool identify = mInfo.identifyChannels == 1;
    mFrequencyHotText->SetDisabled(identify);
    mAmplitudeHotText->SetDisabled(identify);
    mIdentifierFormatPopup->SetDisabled(!identify);
}

void ToneSettingsDialogImpl::OnFrequencyHottextNumberChanged(ChangedMessage* /*message*/) {
    mInfo.frequency = static_cast<float>(mFrequencyHotText->GetValue());
}

void ToneSettingsDialogImpl::OnAmplitudeHottextNumberChanged(ChangedMessage* /*message*/) {
    mInfo.amplitude = GainFromLevelDb(static_cast<float>(mAmplitudeHotText->GetValue()));
}

// The two buttons are one group: the state of one tells all.
void ToneSettingsDialogImpl::OnRadioButtonGroupChanged(ChangedMessage* /*message*/) {
    mInfo.identifyChannels = mSteadyTonesButton->GetValue() == UI_RadioButton::kOn ? 0 : 1;
    EnableAndDisableControls();
}

void ToneSettingsDialogImpl::OnIdentifierPopupChanged(ChangedMessage* /*message*/) {
    TakeFormatFromPopup();
}

void ToneSettingsDialogImpl::OKButtonChanged(ChangedMessage* /*message*/) {
    mDataExchange->SetPrefs(mInfo);
    GetView()->Close();
}

void ToneSettingsDialogImpl::OnCancelButtonChanged(ChangedMessage* /*message*/) {
    mDataExchange->UserCancelled();
    GetView()->Close();
}
