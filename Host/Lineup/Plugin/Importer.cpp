#include <lineup/Error.h>
#include <lineup/Importer.h>
#include "Host/Interface/Core/Explained.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"
#include "Host/Lineup/Values/RethrowAsError.h"

#include <fmt/format.h>

#include <exception>
#include <new>

namespace lineup {

namespace {

// No plug-in offers anywhere near as many formats; a list that goes on is a broken plug-in.
constexpr std::intptr_t kLongestList = 256;

ImportEntryFunction* FindEntry(const DynamicLibrary& library, const zelcore::Bundle& bundle) {
    void* const symbol = library.Find(kImportEntryName);
    if (symbol == nullptr) {
        throw Error(
            fmt::format("{} is no importer: it has no entry point {}", bundle.Executable().string(), kImportEntryName));
    }
    return reinterpret_cast<ImportEntryFunction*>(symbol);
}

void* AsParameter(std::intptr_t index) {
    return reinterpret_cast<void*>(index);
}

// The plug-in reads the record only; the request's field is not const because other plug-ins may not.
void* AsSettings(const void* settings) {
    return const_cast<void*>(settings);  // NOLINT(cppcoreguidelines-pro-type-const-cast): see above
}

// What is said of an exception of the plug-in's: the host's explanation where there is one.
std::string TextOf(const std::exception& error) {
    const auto* const explained = dynamic_cast<const zelcore::config::Explained*>(&error);
    return explained == nullptr || explained->Explanation().empty() ? error.what() : explained->Explanation();
}

}  // namespace

struct Importer::Module {
    explicit Module(const std::filesystem::path& bundleFolder)
        : bundle(bundleFolder), library(bundle.Executable()), entry(FindEntry(library, bundle)) {}

    zelcore::Bundle bundle;
    DynamicLibrary library;
    ImportEntryFunction* entry;
};

Importer::Importer(const std::filesystem::path& bundleFolder) {
    try {
        mModule = std::make_unique<const Module>(bundleFolder);
    } catch (const zelcore::BundleError& error) {
        throw Error(error.what());
    } catch (...) {
        RethrowAsError("cannot use " + bundleFolder.string());
    }
    imImportInfoRec record{};
    const std::int32_t answer = Call(kImportInit, &record, nullptr);
    if (answer != kImportInitAnswer) {
        throw Error(fmt::format("cannot use {}: it answers the Init request with {} instead of {}",
                                bundleFolder.string(), answer, static_cast<int>(kImportInitAnswer)));
    }
}

Importer::~Importer() = default;

const zelcore::Bundle& Importer::Bundle() const noexcept {
    return mModule->bundle;
}

// The code of an exception that is the plug-in's own goes with the plug-in, which may be before anybody reads it: even
// an Error is made anew.
std::int32_t Importer::Call(std::int32_t selector, void* param1, void* param2) const {
    try {
        return mModule->entry(selector, nullptr, param1, param2);
    } catch (const std::bad_alloc&) {
        RethrowAsError("cannot use " + Bundle().Folder().string());
    } catch (const std::exception& error) {
        throw Error(TextOf(error));
    } catch (...) {
        throw Error(
            fmt::format("cannot use {}: it threw something other than a std::exception", Bundle().Folder().string()));
    }
}

void Importer::Require(std::int32_t selector, void* record, const char* act) const {
    const std::int32_t result = Call(selector, nullptr, record);
    if (result != kImportNoError) {
        throw Error(fmt::format("{} cannot {}: it answers with {}", Bundle().Folder().string(), act, result));
    }
}

std::vector<std::uint32_t> Importer::FileTypes() const {
    std::vector<std::uint32_t> types;
    imIndFormatRec record{};
    for (std::intptr_t index = 0; index < kLongestList; ++index) {
        if (Call(kImportGetIndFormat, AsParameter(index), &record) != kImportNoError) {
            break;
        }
        types.push_back(record.fileType);
    }
    return types;
}

std::vector<std::uint32_t> Importer::PixelFormats() const {
    std::vector<std::uint32_t> formats;
    imIndPixelFormatRec record{};
    for (std::intptr_t index = 0; index < kLongestList; ++index) {
        if (Call(kImportGetIndPixelFormat, AsParameter(index), &record) != kImportNoError) {
            break;
        }
        formats.push_back(record.pixelFormat);
    }
    return formats;
}

ClipDescription Importer::Describe(const BarsAndToneInfo* prefs, float hostSampleRate) const {
    imFileInfoRec8 record{};
    record.sampleRate = hostSampleRate;
    record.prefs = AsSettings(prefs);
    Require(kImportGetInfo, &record, "describe the clip");

    ClipDescription description;
    description.hasVideo = record.hasVideo != 0;
    description.hasAudio = record.hasAudio != 0;
    description.numChannels = record.numChannels;
    description.sampleRate = record.sampleRate;
    description.durationSamples = record.durationSamples;
    description.privateData = PrivateData(record.privateData, [this](void* privateData) { Release(privateData); });
    return description;
}

// Nobody is left to be told: this runs as clips go.
void Importer::Release(void* privateData) const noexcept {
    try {
        Call(kImportReleasePrivateData, nullptr, privateData);
    } catch (...) {
    }
}

std::uint32_t Importer::SettingsSize() const {
    imGetPrefsRec record{};
    Require(kImportGetPrefs, &record, "say how large its settings are");
    return record.prefsLength;
}

void Importer::RequireSettingsSize() const {
    const std::uint32_t size = SettingsSize();
    if (size != sizeof(BarsAndToneInfo)) {
        throw Error(fmt::format("cannot use {}: its settings are {} bytes, not {}", Bundle().Folder().string(), size,
                                sizeof(BarsAndToneInfo)));
    }
}

BarsAndToneInfo Importer::DefaultSettings(float hostSampleRate) const {
    RequireSettingsSize();
    BarsAndToneInfo settings;
    imGetPrefsRec record{};
    record.prefs = &settings;
    record.useDefaults = 1;
    record.hostSampleRate = hostSampleRate;
    Require(kImportGetPrefs, &record, "make default settings");
    return settings;
}

void Importer::EditSettings(BarsAndToneInfo& settings) const {
    RequireSettingsSize();
    BarsAndToneInfo edited = settings;
    imGetPrefsRec record{};
    record.prefs = &edited;
    record.hostSampleRate = settings.sampleRate;
    Require(kImportGetPrefs, &record, "edit settings");
    settings = edited;
}

void Importer::DrawFrame(zelcore::FrameBuffer& frame) const {
    imImportImageRecEx record{};
    record.width = static_cast<std::int16_t>(frame.Width());
    record.height = static_cast<std::int16_t>(frame.Height());
    record.pixelFormat = frame.PixelFormat();
    record.frame = frame.Handle();
    Require(kImportImage, &record, "draw the frame");
}

void Importer::ReadAudio(const RequestSettings& settings, std::int64_t position, std::uint32_t count,
                         float** buffers) const {
    imImportAudioRec7 record{};
    record.position = position;
    record.count = count;
    record.buffers = buffers;
    record.privateData = AsSettings(settings.privateData);
    record.prefs = AsSettings(settings.prefs);
    Require(kImportAudio, &record, "make audio");
}

void Importer::ReadPeaks(const RequestSettings& settings, std::int64_t position, float peakRate, std::int32_t count,
                         float** maxima, float** minima) const {
    imPeakAudioRec record{};
    record.privateData = AsSettings(settings.privateData);
    record.prefs = AsSettings(settings.prefs);
    record.position = position;
    record.peakRate = peakRate;
    record.count = count;
    record.maxima = maxima;
    record.minima = minima;
    Require(kImportPeakAudio, &record, "make peaks");
}

}  // namespace lineup
