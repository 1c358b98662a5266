// Prints how the compiler lays out what crosses the importer boundary, as JSON for the tables of the pages:
//   records: of each its bytes, and of each field its name, offset, bytes, type, and its value in a new record
//   enums: of each its enumerators and their values
// A record whose fields below leave a byte out, and an enumerator that is missing below, end it with an error.
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <nlohmann/json.hpp>

#include <concepts>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using Json = nlohmann::ordered_json;

// What the pages call a type.
template <class Type>
std::string TypeName() {
    if constexpr (std::is_array_v<Type>) {
        return TypeName<std::remove_extent_t<Type>>() + "[" + std::to_string(std::extent_v<Type>) + "]";
    } else if constexpr (std::is_enum_v<Type>) {
        return TypeName<std::underlying_type_t<Type>>();
    } else if constexpr (std::same_as<Type, char>) {
        return "char";
    } else if constexpr (std::same_as<Type, vexel>) {
        return "`vexel`";
    } else if constexpr (std::same_as<Type, float**>) {
        return "`float**`";
    } else if constexpr (std::is_pointer_v<Type>) {
        return "pointer";
    } else {
        static_assert(std::is_arithmetic_v<Type>);
        const char* const kind = std::is_floating_point_v<Type> ? "f" : std::is_signed_v<Type> ? "i" : "u";
        return kind + std::to_string(8 * sizeof(Type));
    }
}

template <class Type>
Json ValueOf(Type value) {
    if constexpr (std::is_arithmetic_v<Type>) {
        return value;
    } else if constexpr (std::is_enum_v<Type>) {
        return static_cast<std::underlying_type_t<Type>>(value);
    } else {
        return nullptr;
    }
}

class Layouts {
public:
    // The fields of a record, in order; they must be all of its bytes.
    void Add(const std::string& record, std::size_t bytes, const Json& fields) {
        std::size_t end = 0;
        for (const Json& field : fields) {
            if (field["offset"] != end) {
                throw std::runtime_error(record + ": a field is missing before " + field["name"].get<std::string>());
            }
            end += field["bytes"].get<std::size_t>();
        }
        if (end != bytes) {
            throw std::runtime_error(record + ": the last field is missing");
        }
        mJson["records"][record] = {{"bytes", bytes}, {"fields", fields}};
    }
    void AddValue(const char* enumeration, const char* name, std::int64_t value) {
        mJson["enums"][enumeration].push_back({{"name", name}, {"value", value}});
    }
    void Print() const { std::puts(mJson.dump(1).c_str()); }

private:
    Json mJson;
};

#define FIELD(name)                                     \
    Json({{"name", #name},                              \
          {"offset", offsetof(Record, name)},           \
          {"bytes", sizeof(Record::name)},              \
          {"type", TypeName<decltype(Record::name)>()}, \
          {"value", ValueOf(Record{}.name)}})
#define RECORD(record, ...)                                               \
    {                                                                     \
        using Record = record;                                            \
        layouts.Add(#record, sizeof(Record), Json::array({__VA_ARGS__})); \
    }

void AddRecords(Layouts& layouts) {
    RECORD(BarsAndToneInfo, FIELD(version), FIELD(sampleRate), FIELD(channelType), FIELD(numChannels),
           FIELD(identifyChannels), FIELD(frequency), FIELD(amplitude), FIELD(identifierFormat))
    RECORD(imImportInfoRec, FIELD(reserved0), FIELD(capability28), FIELD(capability32), FIELD(capability36),
           FIELD(reserved40), FIELD(capability44))
    RECORD(imIndFormatRec, FIELD(fileType), FIELD(reserved4), FIELD(formatName), FIELD(formatShortName),
           FIELD(platformExtensions))
    RECORD(imIndPixelFormatRec, FIELD(reserved0), FIELD(pixelFormat))
    RECORD(imGetPrefsRec, FIELD(prefs), FIELD(prefsLength), FIELD(useDefaults), FIELD(reserved13),
           FIELD(hostSampleRate), FIELD(reserved65))
    RECORD(imFileInfoRec8, FIELD(hasVideo), FIELD(hasAudio), FIELD(reserved2), FIELD(video12), FIELD(reserved14),
           FIELD(video22), FIELD(reserved23), FIELD(video31), FIELD(video32), FIELD(reserved33), FIELD(numChannels),
           FIELD(sampleRate), FIELD(audioSampleFormat), FIELD(durationSamples), FIELD(reserved194), FIELD(privateData),
           FIELD(prefs), FIELD(reserved214))
    RECORD(imImportImageRecEx, FIELD(reserved0), FIELD(width), FIELD(reserved6), FIELD(height), FIELD(reserved10),
           FIELD(pixelFormat), FIELD(reserved64), FIELD(frame))
    RECORD(imImportAudioRec7, FIELD(position), FIELD(count), FIELD(buffers), FIELD(privateData), FIELD(prefs))
    RECORD(imPeakAudioRec, FIELD(privateData), FIELD(prefs), FIELD(position), FIELD(peakRate), FIELD(count),
           FIELD(maxima), FIELD(minima))
}

// The compiler sees to it that a switch names every enumerator.
#define CASE(name) case name:
#define VALUE(name) layouts.AddValue(enumeration, #name, name);
#define ENUM(type, LIST)                       \
    {                                          \
        const char* const enumeration = #type; \
        switch (type{}) { LIST(CASE) break; }  \
        LIST(VALUE)                            \
    }

#define SELECTORS(EACH)             \
    EACH(kImportInit)               \
    EACH(kImportImage)              \
    EACH(kImportReleasePrivateData) \
    EACH(kImportGetIndFormat)       \
    EACH(kImportAudio)              \
    EACH(kImportGetIndPixelFormat)  \
    EACH(kImportReserved28) EACH(kImportGetInfo) EACH(kImportGetPrefs) EACH(kImportPeakAudio)
#define RESULTS(EACH)        \
    EACH(kImportNoError)     \
    EACH(kImportUnsupported) \
    EACH(kImportNoSettings) EACH(kImportReserved28Answer) EACH(kImportEndOfList) EACH(kImportInitAnswer)
#define IDENTS(EACH) EACH(EBUStereo1000) EACH(EBUStereo400) EACH(EBUMultichannel) EACH(BLITS5_1)

void AddEnumerations(Layouts& layouts) {
    ENUM(ImportSelector, SELECTORS)
    ENUM(ImportResult, RESULTS)
    ENUM(IdentifierFormat, IDENTS)
}

}  // namespace

int main() {
    try {
        Layouts layouts;
        AddRecords(layouts);
        AddEnumerations(layouts);
        layouts.Print();
        return 0;
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "record_layouts: %s\n", error.what());
        return 1;
    }
}
