#include "Apps/lineup/Reports/CheckScopes.h"

#include "Apps/lineup/Reports/Markup.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {

namespace scopes {

namespace {

using lineup::PatchReport;
using lineup::PictureReport;

constexpr int kTop = 6;
constexpr int kHeight = 256;  // a pixel a code
constexpr int kCardWidth = 400;
constexpr int kScopeLeft = 420;
constexpr int kWaveLeft = 700;
constexpr int kWaveWidth = 290;
constexpr double kBox = 4;  // half of a box's side
constexpr const char* kGround = "#181818";
constexpr const char* kDue = "#e0e0e0";
constexpr const char* kOff = "#ff4040";

// As a screen shows codes of BT.709, limited range: near enough for a drawing of any matrix.
std::string ScreenColour(const std::vector<double>& codes) {
    const double y = (codes[0] - 16) / 219;
    const double cb = (codes[1] - 128) / 224;
    const double cr = (codes[2] - 128) / 224;
    const auto code = [](double value) { return static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255)); };
    return fmt::format("#{:02x}{:02x}{:02x}", code(y + 1.5748 * cr), code(y - 0.1873 * cb - 0.4681 * cr),
                       code(y + 1.8556 * cb));
}

bool HasCodes(const PatchReport& patch) {
    return patch.expected.size() == 3 && patch.measured.size() == 3;
}

std::string CardDrawing(const PictureReport& picture) {
    const double height = picture.width > 0 ? static_cast<double>(kCardWidth) * picture.height / picture.width : 0;
    const double shown = std::min(height, static_cast<double>(kHeight));
    std::string text;
    std::string outlines;
    for (const PatchReport& patch : picture.patches) {
        if (!HasCodes(patch)) {
            continue;
        }
        const std::string box = fmt::format(
            R"(x="{:.1f}" y="{:.1f}" width="{:.1f}" height="{:.1f}")", patch.left * kCardWidth,
            kTop + patch.top * shown, (patch.right - patch.left) * kCardWidth, (patch.bottom - patch.top) * shown);
        text += fmt::format("<rect {} fill=\"{}\"><title>{}</title></rect>\n", box, ScreenColour(patch.measured),
                            Escaped(patch.name));
        if (patch.isOff) {
            outlines +=
                fmt::format("<rect class=\"off\" {} fill=\"none\" stroke=\"{}\" stroke-width=\"2\"/>\n", box, kOff);
        }
    }
    return text + outlines;
}

std::string Ground(int left, int width) {
    return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"{}\"/>\n", left, kTop, width, kHeight,
                       kGround);
}

// A box for what is due, a point for what was measured, and a line from one to the other where they are apart.
std::string Pair(const PatchReport& patch, std::array<double, 2> due, std::array<double, 2> found) {
    std::string text = fmt::format(
        "<rect class=\"due\" x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.0f}\" height=\"{:.0f}\" fill=\"none\" "
        "stroke=\"{}\"/>\n",
        due[0] - kBox, due[1] - kBox, 2 * kBox, 2 * kBox, kDue);
    if (patch.isOff) {
        text += fmt::format("<path d=\"M{:.1f} {:.1f} L{:.1f} {:.1f}\" stroke=\"{}\"/>\n", due[0], due[1], found[0],
                            found[1], kOff);
    }
    return text + fmt::format(
                      "<circle class=\"found\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\" fill=\"{}\" stroke=\"{}\">"
                      "<title>{}</title></circle>\n",
                      found[0], found[1], ScreenColour(patch.measured), patch.isOff ? kOff : kDue, Escaped(patch.name));
}

std::string Vectorscope(const PictureReport& picture) {
    constexpr double kMiddle = 128;
    std::string text = Ground(kScopeLeft, kHeight);
    text += fmt::format(
        "<path d=\"M{0} {1} H{2} M{3} {4} V{5}\" stroke=\"#505050\"/>"
        "<circle cx=\"{3}\" cy=\"{1}\" r=\"112\" fill=\"none\" stroke=\"#505050\"/>\n",
        kScopeLeft, kTop + kMiddle, kScopeLeft + kHeight, kScopeLeft + kMiddle, kTop, kTop + kHeight);
    for (const PatchReport& patch : picture.patches) {
        if (HasCodes(patch)) {
            const auto at = [](const std::vector<double>& codes) {
                return std::array{kScopeLeft + codes[1], kTop + kHeight - codes[2]};
            };
            text += Pair(patch, at(patch.expected), at(patch.measured));
        }
    }
    return text;
}

std::string Waveform(const PictureReport& picture) {
    std::string text = Ground(kWaveLeft, kWaveWidth);
    for (const int code : {16, 235}) {
        text += fmt::format("<path d=\"M{} {} H{}\" stroke=\"#505050\"/>\n", kWaveLeft, kTop + kHeight - code,
                            kWaveLeft + kWaveWidth);
    }
    for (const PatchReport& patch : picture.patches) {
        if (HasCodes(patch)) {
            const double x = kWaveLeft + (patch.left + patch.right) / 2 * kWaveWidth;
            text += Pair(patch, {x, kTop + kHeight - patch.expected[0]}, {x, kTop + kHeight - patch.measured[0]});
        }
    }
    return text;
}

}  // namespace

}  // namespace scopes

int CheckScopesHeight(const lineup::CheckReport& report) {
    return report.picture && !report.picture->patches.empty() ? scopes::kTop + scopes::kHeight + scopes::kTop : 0;
}

std::string CheckScopes(const lineup::CheckReport& report) {
    if (CheckScopesHeight(report) == 0) {
        return "";
    }
    return scopes::CardDrawing(*report.picture) + scopes::Vectorscope(*report.picture) +
           scopes::Waveform(*report.picture);
}

}  // namespace cli
