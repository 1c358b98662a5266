#pragma once

#include <lineup/Api.h>

#include <chrono>
#include <filesystem>
#include <optional>

namespace lineup {

inline namespace parts {

/// The program that decodes recordings, and how long it may keep others waiting.
struct LINEUP_API DecoderSettings {
    /// The file name of the program; it belongs to liblineup (see DynamicLibrary::Beside).
    static constexpr const char* kProgramName = "lineup-decode";

    DecoderSettings();

    std::filesystem::path program;  ///< ours
    bool wantsSound = true;
    bool wantsPicture = false;
    std::optional<double> from;  ///< s: sound counts from there, and pictures begin with the one that is shown there
    std::chrono::milliseconds stall{15000};  ///< how long a URL may send nothing
    std::chrono::milliseconds silence{
        30000};  ///< how long the program may say nothing while there is something to read
};

}  // namespace parts

}  // namespace lineup
