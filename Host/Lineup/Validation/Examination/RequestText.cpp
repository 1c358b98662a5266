#include "Host/Lineup/Validation/Examination/RequestText.h"

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <span>

namespace lineup::validation {

namespace {

constexpr std::size_t kMostBytes = 64;

// Records lie at any address.
template <class Record>
Record Read(const void* address) {
    Record record{};
    std::memcpy(&record, address, sizeof record);
    return record;
}

std::string Bytes(const void* settings, std::size_t size) {
    std::string text;
    const std::span bytes(static_cast<const std::uint8_t*>(settings), std::min(size, kMostBytes));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text += fmt::format("{}{:02x}", i % 4 == 0 ? " " : "", bytes[i]);
    }
    return size > kMostBytes ? text + " ..." : text;
}

std::string SettingsText(const void* prefs, const void* privateData, std::size_t size) {
    if (prefs != nullptr) {
        return fmt::format("settings{}", Bytes(prefs, size));
    }
    return privateData != nullptr ? "a private copy of its settings" : "without settings";
}

std::string ImageText(const imImportImageRecEx& record) {
    return Text(FrameShape{.width = record.width, .height = record.height, .pixelFormat = record.pixelFormat});
}

std::string AudioText(const imImportAudioRec7& record, std::size_t settingsBytes) {
    return fmt::format("audio of {} samples from {} on, {}", std::uint32_t{record.count}, std::int64_t{record.position},
                       SettingsText(record.prefs, record.privateData, settingsBytes));
}

std::string PeaksText(const imPeakAudioRec& record, std::size_t settingsBytes) {
    return fmt::format("{} peaks at {} Hz from sample {} on, {}", std::int32_t{record.count}, float{record.peakRate},
                       std::int64_t{record.position}, SettingsText(record.prefs, record.privateData, settingsBytes));
}

std::string DescriptionText(const imFileInfoRec8& record, std::size_t settingsBytes) {
    return fmt::format("the description of a clip at {} Hz, {}", float{record.sampleRate},
                       SettingsText(record.prefs, nullptr, settingsBytes));
}

std::string PrefsText(const imGetPrefsRec& record) {
    if (record.prefs == nullptr) {
        return "the size of the settings";
    }
    return fmt::format("{} at {} Hz", record.useDefaults != 0 ? "silent defaults" : "the settings dialog",
                       float{record.hostSampleRate});
}

// What is asked for; empty for a selector that has no more to it.
std::string What(std::int32_t selector, const void* param1, const void* param2, std::size_t settingsBytes) {
    const auto index = reinterpret_cast<std::intptr_t>(param1);
    switch (selector) {
        case kImportInit:
            return "Init";
        case kImportImage:
            return ImageText(Read<imImportImageRecEx>(param2));
        case kImportReleasePrivateData:
            return param2 != nullptr ? "the release of a private copy" : "the release of a null pointer";
        case kImportGetIndFormat:
            return fmt::format("file format {}", index);
        case kImportAudio:
            return AudioText(Read<imImportAudioRec7>(param2), settingsBytes);
        case kImportGetIndPixelFormat:
            return fmt::format("pixel format {}", index);
        case kImportGetInfo:
            return DescriptionText(Read<imFileInfoRec8>(param2), settingsBytes);
        case kImportGetPrefs:
            return PrefsText(Read<imGetPrefsRec>(param2));
        case kImportPeakAudio:
            return PeaksText(Read<imPeakAudioRec>(param2), settingsBytes);
        default:
            return {};
    }
}

}  // namespace

std::string RequestText(std::int32_t selector, const void* param1, const void* param2, std::size_t settingsBytes) {
    const std::string what = What(selector, param1, param2, settingsBytes);
    return fmt::format("selector {}{}{}", selector, what.empty() ? "" : ", ", what);
}

}  // namespace lineup::validation
