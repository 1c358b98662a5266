#include <lineup/ClipDocument.h>
#include <lineup/Error.h>
#include <lineup/Limits.h>
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Values/RethrowAsError.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

namespace lineup {

namespace {

constexpr const char* kKind = "lineup";
constexpr std::int64_t kVersion = 1;
constexpr std::size_t kLargestFile = 65536;  // bytes; a document is some hundred
constexpr std::size_t kRecordDigits = 2 * sizeof(BarsAndToneInfo);

/// What is wrong with a value of a document.
class Damage : public Error {
public:
    using Error::Error;
};

std::string ReadBytes(const fs::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(kLargestFile + 1, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.is_open() || stream.bad()) {
        throw Error(std::generic_category().message(errno));
    }
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    if (bytes.size() > kLargestFile) {
        throw Error("it is no Lineup document: it is too large");
    }
    return bytes;
}

const Json& Member(const Json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end()) {
        throw Damage(fmt::format("\"{}\" is missing", name));
    }
    return *found;
}

// Whole numbers only, none of them cut to fit.
std::int64_t Whole(const Json& value, const char* name, std::int64_t least, std::int64_t most) {
    const bool isTooLarge = value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t{INT64_MAX};
    const bool isWhole = value.is_number_integer() && !isTooLarge;
    if (!isWhole || value.get<std::int64_t>() < least || value.get<std::int64_t>() > most) {
        throw Damage(fmt::format("\"{}\" must be a whole number from {} to {}", name, least, most));
    }
    return value.get<std::int64_t>();
}

int EvenSize(const Json& picture, const char* name) {
    const auto size =
        static_cast<int>(Whole(Member(picture, name), name, PictureFormat::kLeastSize, PictureFormat::kMostSize));
    if (size % 2 != 0) {
        throw Damage(fmt::format("\"{}\" must be even", name));
    }
    return size;
}

constexpr const char* kBadCard = R"("card" must be "auto", "hd" or "sd")";

Card CardFrom(const Json& value) {
    const auto* const found =
        std::ranges::find_if(kCardNames, [&](const CardName& card) { return value == Json(card.name); });
    if (found == kCardNames.end()) {
        throw Damage(kBadCard);
    }
    return found->card;
}

Rational FrameRateFrom(const Json& value) {
    constexpr const char* kName = "frameRate";
    if (!value.is_array() || value.size() != 2) {
        throw Damage(fmt::format("\"{}\" must be two whole numbers", kName));
    }
    const std::int64_t den = Whole(value[1], kName, 1, kLargestRateTerm);
    const std::int64_t num = Whole(value[0], kName, kLowestFrameRate * den,
                                   std::min<std::int64_t>(kLargestRateTerm, kHighestFrameRate * den));
    return {static_cast<int>(num), static_cast<int>(den)};
}

int Digit(char digit) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    return static_cast<int>(kDigits.find(digit));  // npos becomes -1
}

BarsAndToneInfo RecordFrom(const Json& value) {
    const std::string text = value.is_string() ? value.get<std::string>() : "";
    std::array<std::uint8_t, sizeof(BarsAndToneInfo)> bytes{};
    bool valid = text.size() == kRecordDigits;
    for (std::size_t i = 0; valid && i < bytes.size(); ++i) {
        const int high = Digit(text[2 * i]);
        const int low = Digit(text[2 * i + 1]);
        valid = high >= 0 && low >= 0;
        bytes[i] = static_cast<std::uint8_t>(valid ? 16 * high + low : 0);
    }
    if (!valid) {
        throw Damage(fmt::format("\"settings\" must be {} hexadecimal digits", kRecordDigits));
    }
    BarsAndToneInfo settings;
    std::memcpy(&settings, bytes.data(), sizeof settings);
    return settings;
}

std::string Digits(const BarsAndToneInfo& settings) {
    std::array<std::uint8_t, sizeof settings> bytes{};
    std::memcpy(bytes.data(), &settings, sizeof settings);
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += fmt::format("{:02x}", byte);
    }
    return text;
}

std::string Text(const ClipDocument& document) {
    const PictureFormat& picture = document.picture;
    const auto* const card = std::ranges::find(kCardNames, picture.card, &CardName::card);
    if (card == kCardNames.end()) {
        throw Damage(kBadCard);
    }
    const Json json = {{"kind", kKind},
                       {"version", kVersion},
                       {"settings", Digits(document.settings)},
                       {"picture",
                        {{"width", picture.width},
                         {"height", picture.height},
                         {"card", card->name},
                         {"frameRate", {picture.frameRate.num, picture.frameRate.den}}}},
                       {"lengthFrames", document.lengthFrames}};
    return json.dump(2) + "\n";
}

ClipDocument Parse(const std::string& bytes) {
    const Json json = Json::parse(bytes, nullptr, false);
    if (!json.is_object() || json.value("kind", Json()) != Json(kKind)) {
        throw Error("it is no Lineup document");
    }
    const std::int64_t version = Whole(Member(json, "version"), "version", 1, INT32_MAX);
    if (version > kVersion) {
        throw Error(
            fmt::format("it is a Lineup document of version {}, and this program reads version {}", version, kVersion));
    }
    ClipDocument document;
    document.settings = RecordFrom(Member(json, "settings"));
    const Json& picture = Member(json, "picture");
    if (!picture.is_object()) {
        throw Damage("\"picture\" must be an object");
    }
    document.picture.width = EvenSize(picture, "width");
    document.picture.height = EvenSize(picture, "height");
    document.picture.card = CardFrom(Member(picture, "card"));
    document.picture.frameRate = FrameRateFrom(Member(picture, "frameRate"));
    document.lengthFrames = Whole(Member(json, "lengthFrames"), "lengthFrames", 1, ClipDocument::kMostFrames);
    return document;
}

}  // namespace

bool ClipDocument::operator==(const ClipDocument& other) const noexcept {
    // The settings are their bytes: what no field names is kept and compared too.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-exp42-c)
    return std::memcmp(&settings, &other.settings, sizeof settings) == 0 && picture == other.picture &&
           lengthFrames == other.lengthFrames;
}

bool LooksLikeDocument(std::string_view bytes) noexcept {
    return bytes.size() > sizeof(BarsAndToneInfo) && bytes.starts_with('{');
}

ClipDocument ReadDocument(const fs::path& file) {
    try {
        return Parse(ReadBytes(file));
    } catch (const Damage& damage) {
        throw Error(fmt::format("cannot open {}: it is damaged: {}", file.string(), damage.what()));
    } catch (const Error& error) {
        throw Error(fmt::format("cannot open {}: {}", file.string(), error.what()));
    } catch (...) {
        RethrowAsError("cannot open " + file.string());
    }
}

void WriteDocument(const fs::path& target, const ClipDocument& document, bool overwrite) {
    try {
        const std::string text = Text(document);
        static_cast<void>(Parse(text));  // nobody is given a document that cannot be opened again
        WriteWhole(target, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, overwrite);
    } catch (const Damage& damage) {
        throw Error(fmt::format("cannot write {}: {}", target.string(), damage.what()));
    } catch (...) {
        RethrowAsError("cannot write " + target.string());
    }
}

}  // namespace lineup
