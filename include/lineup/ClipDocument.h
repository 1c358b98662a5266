#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>
#include <lineup/PictureFormat.h>

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace lineup {

/// Everything that makes up a line-up clip, as a document keeps it.
///
/// A document file is JSON. It is known by its members "kind" ("lineup") and "version" (1); "settings" holds
/// the 32 bytes of the settings record as 64 hexadecimal digits, "picture" the "width", "height", "card"
/// ("auto", "hd", "sd") and "frameRate" (two whole numbers, a fraction), and "lengthFrames" how long the clip
/// is. Members that are not known are passed over.
struct ClipDocument {
    static constexpr std::int64_t kMostFrames = 100'000'000;  // two weeks and more at any frame rate

    BarsAndToneInfo settings;
    PictureFormat picture;
    std::int64_t lengthFrames = 125;  ///< 1 to kMostFrames

    /// Compares the settings byte for byte.
    LINEUP_API bool operator==(const ClipDocument& other) const noexcept;
};

/// The extension of document files.
inline constexpr std::string_view kDocumentExtension = ".lineup";

/// Whether a file that begins with `bytes` is meant to be a document; a settings record never is.
[[nodiscard]] LINEUP_API bool LooksLikeDocument(std::string_view bytes) noexcept;

/// Reads a document. Throws Error, saying what is wrong with it, when the file cannot be read, is not a document or is
/// damaged.
[[nodiscard]] LINEUP_API ClipDocument ReadDocument(const std::filesystem::path& file);

/// Writes `document` as the file `target`, which appears whole or not at all. Throws UsageError when it exists and
/// `overwrite` is false; Error when a value of the document is out of range, or the file cannot be written. A file of
/// that name is then as it was.
LINEUP_API void WriteDocument(const std::filesystem::path& target, const ClipDocument& document, bool overwrite);

}  // namespace lineup
