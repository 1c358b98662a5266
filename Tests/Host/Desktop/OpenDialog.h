#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Host/Desktop/DialogHands.h"

#include <functional>
#include <string>

namespace test {

/// Runs `open`, which shows a modal dialog, and lets `act` use the dialog as soon as it can be used. `act`
/// has to close it: a dialog that is still open afterwards is closed and fails the test, as does one that
/// stays open for half a minute. What `act` throws fails the test too.
void WithDialog(const std::function<void()>& open, const std::function<void(DialogHands&)>& act);

/// Opens the plug-in's settings dialog on `settings` and returns them as they are after `act`.
[[nodiscard]] BarsAndToneInfo EditWith(BarsAndToneInfo settings, const std::function<void(DialogHands&)>& act);

/// The 32 bytes as text, so that two records compare bit for bit.
[[nodiscard]] std::string Bytes(const BarsAndToneInfo& settings);

/// The default settings of a clip with 1, 2 or 6 channels.
[[nodiscard]] BarsAndToneInfo ClipWith(std::uint32_t numChannels);

}  // namespace test
