#include <lineup/ClipDocument.h>
#include <lineup/Error.h>
#include <lineup/SettingsFile.h>
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Values/RethrowAsError.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace lineup {

BarsAndToneInfo ReadSettings(const fs::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::array<char, sizeof(BarsAndToneInfo) + 1> bytes{};  // one more than fits, to notice a longer file
    stream.read(bytes.data(), bytes.size());
    if (!stream.is_open() || stream.bad()) {
        throw Error(
            fmt::format("cannot read settings from {}: {}", file.string(), std::generic_category().message(errno)));
    }
    if (LooksLikeDocument({bytes.data(), static_cast<std::size_t>(stream.gcount())})) {
        return ReadDocument(file).settings;
    }
    if (stream.gcount() != sizeof(BarsAndToneInfo)) {
        const bool longer = stream.gcount() > static_cast<std::streamsize>(sizeof(BarsAndToneInfo));
        throw Error(fmt::format("cannot read settings from {}: settings are {} bytes, and it holds {}", file.string(),
                                sizeof(BarsAndToneInfo), longer ? "more" : std::to_string(stream.gcount())));
    }
    BarsAndToneInfo settings;
    std::memcpy(&settings, bytes.data(), sizeof settings);
    return settings;
}

void WriteSettings(const fs::path& target, const BarsAndToneInfo& settings, bool overwrite) {
    std::array<std::uint8_t, sizeof settings> bytes{};
    std::memcpy(bytes.data(), &settings, sizeof settings);
    try {
        WriteWhole(target, bytes, overwrite);
    } catch (...) {
        RethrowAsError("cannot write " + target.string());
    }
}

}  // namespace lineup
