#pragma once

#include <lineup/Importer.h>

#include <QString>
#include <exception>

/// What is wrong, as sentences for a window.
namespace studio {

/// The error's text as a sentence; that of a UsageError with the name that the window has for its option.
[[nodiscard]] QString ProblemWords(const std::exception& error);

/// Why a sample rate is refused; empty when it is valid.
[[nodiscard]] QString SampleRateProblem(const lineup::Importer& plugin, double rateHz);

/// Why the settings' steady tone is refused at a valid sample rate; empty when it fits, and for an ident.
[[nodiscard]] QString ToneProblem(const lineup::BarsAndToneInfo& settings, double rateHz);

}  // namespace studio
