#pragma once

#include <lineup/Api.h>
#include <lineup/PictureFormat.h>
#include <lineup/Rational.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

/// What a person chooses from: the kinds of file, what each can hold, and what each codec can have. CheckExport says
/// whether choices go together.
namespace lineup {

/// A video codec that files can be written in.
struct VideoCodec {
    std::string_view name;  ///< on the command line: "prores-hq"
    std::string_view description;
    std::span<const Rational> frameRates{};  ///< those it can have; empty: any that IsFrameRate
    int sizeStep = 2;                        ///< width and height are multiples of it
    int minWidth = PictureFormat::kLeastSize;
    int minHeight = PictureFormat::kLeastSize;
    int maxWidth = PictureFormat::kMostSize;
    int maxHeight = PictureFormat::kMostSize;
    std::int64_t maxPixelsPerSecond = 0;               ///< 0: any number
    bool interlaced = false;                           ///< Scan may be other than progressive
    int interlacedHeightStep = 2;                      ///< the height of an interlaced picture is a multiple of it
    std::span<const Rational> interlacedFrameRates{};  ///< those of frames with fields; empty: any that it can have
};

/// An audio codec that files can be written in.
struct AudioCodec {
    std::string_view name;  ///< on the command line: "pcm-s24"
    std::string_view description;
    bool lossless = true;                  ///< decodes to the very samples that went in
    std::span<const int> sampleRatesHz{};  ///< those it can have; empty: any
};

/// A kind of file, known by its extension.
struct FileFormat {
    std::string_view extension;  ///< lower case, without a dot: "mov"
    std::string_view description;
    std::span<const std::string_view> videoCodecs{};  ///< names; the first is the default; empty: no picture
    std::span<const std::string_view> audioCodecs{};  ///< names; the first is the default; empty: a still picture
    std::span<const int> sampleRatesHz{};             ///< those it can hold; empty: any
    bool holdsTimecode = false;
    bool offersMonoTracks = false;  ///< ExportSettings::monoTracks may be set
    bool onlyMonoTracks = false;    ///< and is, whether it is set or not
    bool streams = false;           ///< can be written from front to back, and so into a pipe
};

/// Every kind of file and every codec, in the order a help text lists them. Static data; any thread.
LINEUP_API std::span<const FileFormat> FileFormats();
LINEUP_API std::span<const VideoCodec> VideoCodecs();
LINEUP_API std::span<const AudioCodec> AudioCodecs();

/// The extensions of the formats that can be written into a pipe.
LINEUP_API std::vector<std::string_view> StreamedFormats();

/// The entry that `name` names, or null. A file's format goes by its extension in either case.
LINEUP_API const FileFormat* FindFileFormat(const std::filesystem::path& target);
LINEUP_API const VideoCodec* FindVideoCodec(std::string_view name);
LINEUP_API const AudioCodec* FindAudioCodec(std::string_view name);

}  // namespace lineup
