#pragma once

#include "Src/BarsAndToneImporter/SettingsRecord.h"

/// The settings record by its plain names, as the plug-in calls it. Programs that use the library include
/// <lineup/BarsAndToneInfo.h>, which is SettingsRecord.h: their own global names stay theirs.

using lineup::IdentifierFormat;

using lineup::BLITS5_1;
using lineup::EBUMultichannel;
using lineup::EBUStereo1000;
using lineup::EBUStereo400;

using lineup::kChannelType51;
using lineup::kChannelTypeMono;
using lineup::kChannelTypeStereo;

using lineup::ChannelTypeFor;

using lineup::BarsAndToneInfo;
