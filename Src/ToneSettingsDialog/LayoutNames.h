#pragma once

#include "Host/Interface/Brio/String.h"

#include <string_view>

/// The layouts of the tone settings dialog: resources of type "tarn" in the plug-in's bundle.
extern const Brio::String kToneSettingsDialogID;                 ///< frequency, level, OK, Cancel
extern const Brio::String kToneSettingsWithIdentifiersDialogID;  ///< the same and the choice of an ident

/// The controls that both layouts have.
inline constexpr std::string_view kFrequencyHotTextNumberID = "frequencyHotTextNumber";  ///< Hz
inline constexpr std::string_view kAmplitudeHotTextNumberID = "amplitudeHotTextNumber";  ///< dB
inline constexpr std::string_view kCancelButtonID = "cancelButton";
inline constexpr std::string_view kOkButtonID = "okButton";

/// The controls that only the layout with idents has.
inline constexpr std::string_view kSteadyTonesBtnID = "steadyTonesBtn";
inline constexpr std::string_view kIdentifyChannelsBtnID = "identifyChannelsBtn";
inline constexpr std::string_view kIdentifierFormatPopupID = "identifierFormatPopup";
