#include "Host/Lineup/Export/Formats/SoundNames.h"

namespace lineup {
inline namespace parts {

std::string_view SampleFormatName(SampleFormat format) {
    switch (format) {
        case SampleFormat::S16:
            return "s16";
        case SampleFormat::S24:
            return "s24";
        case SampleFormat::S32:
            return "s32";
        case SampleFormat::F32:
            break;
    }
    return "f32";
}

std::string LayoutOfAll(const AudioCodec& codec, std::size_t channels) {
    if (channels > 2) {
        return std::string(codec.surroundLayout);
    }
    return channels == 2 ? "stereo" : "mono";
}

}  // namespace parts
}  // namespace lineup
