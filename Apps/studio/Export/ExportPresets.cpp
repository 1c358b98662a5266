#include "Apps/studio/Export/ExportPresets.h"

#include <QCoreApplication>
#include <array>

namespace studio {

std::span<const ExportPreset> ExportPresets() {
    static constexpr std::array<ExportPreset, 8> kPresets = {{
        {QT_TRANSLATE_NOOP("ExportPreset", "Editing: ProRes 422 HQ, QuickTime"), "mov", "prores-hq", "pcm-s24"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Editing: DNxHR HQX, QuickTime"), "mov", "dnxhr-hqx", "pcm-s24"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Broadcast: MPEG-2 4:2:2, MXF"), "mxf", "mpeg2-422", "pcm-s24"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Uncompressed, 10 bits, QuickTime"), "mov", "v210", "pcm-s24"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Archive: FFV1 and FLAC, Matroska"), "mkv", "ffv1", "flac"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Viewing: H.264 and AAC, MPEG-4"), "mp4", "h264", "aac"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Sound alone: Broadcast Wave, 24 bits"), "wav", "", "pcm-s24"},
        {QT_TRANSLATE_NOOP("ExportPreset", "Still picture: PNG"), "png", "png", ""},
    }};
    return kPresets;
}

}  // namespace studio
