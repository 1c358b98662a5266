// What is concluded of a picture's numbers: whatever was measured of a card's patches, place, edges and ramp, the
// faults are known ones, said in sentences, and their numbers are numbers.
#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/Require.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

namespace {

using fuzz::Require;
using lineup::picture::CardModel;
using lineup::picture::Triple;

constexpr std::array<const char*, 9> kMatrices = {"",    "smpte170m", "bt470bg",  "bt709", "bt2020nc",
                                                  "gbr", "fcc",       "reserved", "ycgco"};
constexpr std::array<const char*, 4> kRanges = {"", "tv", "pc", "unknown"};
constexpr std::array<const char*, 4> kTransfers = {"", "bt709", "smpte2084", "linear"};
constexpr std::array<const char*, 4> kCards = {"auto", "hd", "sd", "none"};

const CardModel& Model(bool isHd) {
    static const auto kImporter = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    static const lineup::Clip kClip(kImporter, lineup::MakeSettings(*kImporter, {}));
    static const CardModel kHd = lineup::picture::ReadCardModel(kClip, lineup::Card::HD, 1920, 1080);
    static const CardModel kSd = lineup::picture::ReadCardModel(kClip, lineup::Card::SD, 720, 576);
    return isHd ? kHd : kSd;
}

// -least .. least, in so many steps that an input can find an exact one.
double Number(fuzz::Bytes& bytes, double most) {
    return most * static_cast<double>(bytes.Take<std::int16_t>()) / 32768;
}

std::optional<double> Perhaps(fuzz::Bytes& bytes, double most) {
    return bytes.Flag() ? std::optional(Number(bytes, most)) : std::nullopt;
}

template <std::size_t kSize>
void Put(const char* text, std::array<char, kSize>& field) {
    std::string(text).copy(field.data(), kSize - 1);
}

// What a path may do to all numbers, whether anybody does it or not.
struct Path {
    std::array<double, 2> luma{};  // shares of red and blue
    bool isRgb = false;
    std::array<double, 3> gain{};
    std::array<double, 3> lift{};
    double gamma = 1;
    std::size_t order = 0;
    double noise = 0;

    explicit Path(fuzz::Bytes& bytes) {
        luma = bytes.Flag() ? std::array{0.299, 0.114} : std::array{0.2126, 0.0722};
        isRgb = bytes.Below(4) == 0;
        const double swing = bytes.Flag() ? 1 : 0;
        for (std::size_t part = 0; part < 3; ++part) {
            gain[part] = 1 + swing * Number(bytes, 2);
            lift[part] = swing * Number(bytes, 64);
        }
        gamma = bytes.Flag() ? std::exp2(Number(bytes, 2)) : 1;
        order = bytes.Below(3);
        noise = bytes.Flag() ? Number(bytes, 32) : 0;
    }

    [[nodiscard]] Triple Codes(Triple rgb, fuzz::Bytes& bytes) const {
        for (double& part : rgb) {
            part = std::copysign(std::pow(std::abs(part), gamma), part);
        }
        if (order == 1) {
            std::swap(rgb[0], rgb[2]);
        }
        const double y = luma[0] * rgb[0] + (1 - luma[0] - luma[1]) * rgb[1] + luma[1] * rgb[2];
        Triple codes = {16 + 219 * y, 128 + 112 * (rgb[2] - y) / (1 - luma[1]),
                        128 + 112 * (rgb[0] - y) / (1 - luma[0])};
        if (isRgb) {
            codes = {255 * rgb[0], 255 * rgb[1], 255 * rgb[2]};
        }
        if (order == 2) {
            std::swap(codes[1], codes[2]);
        }
        for (std::size_t part = 0; part < 3; ++part) {
            codes[part] =
                std::clamp(gain[part] * codes[part] + lift[part] + (noise != 0 ? Number(bytes, noise) : 0), 0.0, 255.0);
        }
        return codes;
    }
};

lineup::picture::Examination Measured(const CardModel& model, fuzz::Bytes& bytes) {
    lineup::picture::Examination seen;
    seen.model = &model;
    seen.head.width = static_cast<std::uint32_t>(64 + bytes.Take<std::uint16_t>() % 4096);
    seen.head.height = static_cast<std::uint32_t>(64 + bytes.Take<std::uint16_t>() % 4096);
    seen.head.bits = static_cast<std::uint32_t>(1 + bytes.Below(16));
    seen.head.planes = bytes.Below(4) == 0 ? 1 : 3;
    seen.head.subsampleWidth = static_cast<std::uint32_t>(bytes.Below(3));
    seen.head.subsampleHeight = static_cast<std::uint32_t>(bytes.Below(3));
    seen.head.flags = static_cast<std::uint32_t>(bytes.Below(16));
    Put(bytes.Pick(kMatrices), seen.head.matrix);
    Put(bytes.Pick(kMatrices), seen.head.primaries);
    Put(bytes.Pick(kTransfers), seen.head.transfer);
    Put(bytes.Pick(kRanges), seen.head.range);
    seen.geometry.place = {
        Number(bytes, 4096), Number(bytes, 4096), 1 + std::abs(Number(bytes, 8192)), 1 + std::abs(Number(bytes, 8192)),
        bytes.Flag(),        bytes.Flag()};
    if (bytes.Flag()) {
        seen.geometry.place = {0, 0, static_cast<double>(seen.head.width), static_cast<double>(seen.head.height)};
    }
    seen.geometry.edgesAcross = static_cast<int>(bytes.Below(64));
    seen.geometry.edgesDown = static_cast<int>(bytes.Below(64));
    seen.geometry.error = std::abs(Number(bytes, 4));
    seen.geometry.isExact = bytes.Flag();
    seen.softAcross = Perhaps(bytes, 32);
    seen.softDown = Perhaps(bytes, 32);
    seen.noise = std::abs(Number(bytes, 32));
    seen.chroma = {Perhaps(bytes, 8), Perhaps(bytes, 8), Perhaps(bytes, 32), Perhaps(bytes, 32)};
    if (bytes.Flag()) {
        seen.ramp = {.bits = static_cast<int>(seen.head.bits),
                     .used = static_cast<int>(bytes.Below(17)),
                     .distinct = static_cast<int>(bytes.Take<std::uint16_t>())};
    }
    const Path path(bytes);
    const std::size_t missing = bytes.Below(model.patches.size() + 1);
    for (std::size_t n = 0; n + (bytes.Flag() ? missing : 0) < model.patches.size(); ++n) {
        const lineup::picture::CardPatch& patch = model.patches[n];
        seen.patches.push_back(
            {&patch, path.Codes(patch.rgb, bytes), seen.noise, bytes.Flag() ? std::abs(Number(bytes, 16)) : 0});
    }
    seen.ringing = Perhaps(bytes, 100);
    seen.blocking = Perhaps(bytes, 100);
    return seen;
}

void RequireNumber(const std::optional<double>& number) {
    Require(!number || std::isfinite(*number), "a number is one, or left out");
}

void RequireOrder(const lineup::picture::PictureFindings& findings) {
    for (const lineup::CheckFault& fault : findings.faults) {
        Require(lineup::FindCheckFaultKind(fault.id, lineup::CheckPart::Picture) != nullptr, "a fault's id is known");
        Require(!fault.text.empty() && fault.text.find("nan") == std::string::npos &&
                    fault.text.find("inf ") == std::string::npos,
                "a fault is said in a sentence");
        RequireNumber(fault.measured);
        RequireNumber(fault.expected);
        RequireNumber(fault.at);
    }
    for (const lineup::CheckNote& note : findings.notes) {
        Require(!note.text.empty() && note.text.find("nan") == std::string::npos, "a note is a sentence");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    lineup::CheckSettings settings;
    settings.card = bytes.Pick(kCards);
    const lineup::picture::Examination seen = Measured(Model(bytes.Flag()), bytes);
    const lineup::picture::FrameSeries series;
    const lineup::decoding::Picture facts{.frameRate = 25, .flags = 0, .isStill = bytes.Flag() ? 1U : 0U, .codec = {}};
    lineup::picture::PictureFindings findings;
    findings.isCardFound = true;
    findings.picture.emplace();
    findings.picture->width = static_cast<int>(seen.head.width);
    findings.picture->height = static_cast<int>(seen.head.height);
    findings.picture->bits = static_cast<int>(seen.head.bits);
    Decide({&seen, &series, &facts, &settings}, findings);
    RequireOrder(findings);
    return 0;
}
