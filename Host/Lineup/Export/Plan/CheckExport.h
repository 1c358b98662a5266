#pragma once

#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/ExportSettings.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

/// What settings are held to, one promise a function. Each throws UsageError, with the setting's name, its value and
/// what would be right.
namespace lineup {
inline namespace parts {

/// The container that the target's extension names.
const Container& CheckContainer(const ExportSettings& settings);

/// The codec that was named, or else the container's own; null when it holds none of the kind.
const VideoEncoding* CheckVideoCodec(const ExportSettings& settings, const FileFormat& format);
const AudioEncoding* CheckAudioCodec(const ExportSettings& settings, const FileFormat& format);

void CheckMonoTracks(const ExportSettings& settings, const FileFormat& format);
void CheckDither(Dither dither, const AudioEncoding& encoding);
void CheckBlack(const ExportSettings& settings, const Container& container);
void CheckTimecode(const ExportSettings& settings, const FileFormat& format);
void CheckPictureSize(const VideoCodec& codec, int width, int height);
void CheckFrameRate(const VideoCodec& codec, Rational rate, Scan scan = Scan::Progressive);
void CheckScan(const VideoCodec& codec, const ExportSettings& settings);

/// Whether a level of the codec allows the size at the frame rate, and there are no more fields than in television.
void CheckPixelRate(const VideoCodec& codec, const ExportSettings& settings);

/// The rate as files count it.
int CheckSampleRate(const FileFormat& format, const AudioCodec& codec, float rateHz);

/// The layout that the clip's channels have in files.
const ChannelLayout& CheckChannels(const Clip& clip);

/// Whether somebody says of more than two channels which is which.
void CheckLayout(const Container& container, const AudioEncoding& encoding, const ChannelLayout& layout,
                 bool monoTracks);

/// `plan` is complete by now.
void CheckTimes(const ExportPlan& plan, float rateHz);

}  // namespace parts
}  // namespace lineup
