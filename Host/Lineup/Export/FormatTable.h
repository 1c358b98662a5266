#pragma once

#include "Host/Lineup/Api.h"
#include "Host/Lineup/Export/Rational.h"

#include <filesystem>
#include <span>
#include <string_view>

namespace lineup {

/// A private option of an encoder or a muxer.
struct CodecOption {
    std::string_view name;
    std::string_view value;
};

/// A video codec that files can be written in.
struct VideoCodec {
    std::string_view name;  ///< on the command line: "prores-hq"
    std::string_view description;
    std::string_view encoder;              ///< the FFmpeg encoder
    std::string_view pixelFormat;          ///< FFmpeg's name of the planar or RGB format it is given
    bool framesStandAlone = false;         ///< one encoded frame serves for every frame time
    std::span<const CodecOption> options;  ///< set on the encoder
    std::span<const Rational> frameRates;  ///< those it can have; empty: any
    int minWidth = 2;
    int minHeight = 2;
    int maxWidth = 8192;
    int maxHeight = 8192;
};

/// What samples are rounded to before they are encoded.
enum class SampleFormat { S16, S24, S32, F32 };

/// An audio codec that files can be written in.
struct AudioCodec {
    std::string_view name;  ///< on the command line: "pcm-s24"
    std::string_view description;
    std::string_view encoder;  ///< the FFmpeg encoder
    SampleFormat samples = SampleFormat::S24;
    bool lossless = true;                ///< decodes to the very samples that went in
    int bitRatePerChannel = 0;           ///< bits a second; 0 where the codec has no say
    std::span<const int> sampleRatesHz;  ///< those it can have; empty: any
};

/// A kind of file, known by its extension.
struct FileFormat {
    std::string_view extension;  ///< lower case, without a dot: "mov"
    std::string_view description;
    std::string_view muxer;                         ///< the FFmpeg muxer
    std::span<const std::string_view> videoCodecs;  ///< names; the first is the default; empty: no picture
    std::span<const std::string_view> audioCodecs;  ///< names; the first is the default; empty: no sound
    std::span<const CodecOption> options;           ///< set on the muxer
    std::span<const int> sampleRatesHz;             ///< those it can hold; empty: any
    bool holdsTimecode = false;
    bool offersMonoTracks = false;  ///< ExportSettings::monoTracks may be set
    bool onlyMonoTracks = false;    ///< and is, whether it is set or not
};

/// Every kind of file, codec and codec, in the order a help text lists them. Static data; any thread.
LINEUP_API std::span<const FileFormat> FileFormats();
LINEUP_API std::span<const VideoCodec> VideoCodecs();
LINEUP_API std::span<const AudioCodec> AudioCodecs();

/// The entry that `name` names, or null. A file's format goes by its extension in either case.
LINEUP_API const FileFormat* FindFileFormat(const std::filesystem::path& target);
LINEUP_API const VideoCodec* FindVideoCodec(std::string_view name);
LINEUP_API const AudioCodec* FindAudioCodec(std::string_view name);

}  // namespace lineup
