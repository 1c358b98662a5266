// Everybody can read what the window says: the contrast of the Web Content Accessibility Guidelines, computed from the
// colours themselves.
#include "Apps/studio/Window/Theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

using studio::Theme;

constexpr double kLeastContrast = 4.5;  // level AA, for text of any size

double Light(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Light(colour.redF()) + 0.7152 * Light(colour.greenF()) + 0.0722 * Light(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(Contrast, IsThatOfTheGuidelines) {
    EXPECT_NEAR(Contrast(Qt::white, Qt::black), 21, 1e-6);
    EXPECT_NEAR(Contrast(QColor(0x777777), Qt::white), 4.48, 0.005);  // the guidelines' own example of just too little
}

struct Pair {
    const char* name;
    QColor Theme::*front;
    QColor Theme::*back;
};

// What the window draws itself.
constexpr std::array kDrawn = {
    Pair{"text", &Theme::text, &Theme::window},
    Pair{"text of fields", &Theme::text, &Theme::panel},
    Pair{"text of buttons", &Theme::text, &Theme::button},
    Pair{"text that steps back", &Theme::dim, &Theme::window},
    Pair{"hints in fields", &Theme::dim, &Theme::panel},
    Pair{"icons that are off", &Theme::dim, &Theme::button},
    Pair{"lane text", &Theme::dim, &Theme::lane},
    Pair{"playhead", &Theme::playhead, &Theme::lane},
    Pair{"what is on", &Theme::onAccent, &Theme::accent},
    Pair{"line-up mark", &Theme::accent, &Theme::window},
    Pair{"warning", &Theme::warning, &Theme::window},
    Pair{"error", &Theme::error, &Theme::window},
    Pair{"error in a field", &Theme::error, &Theme::panel},
    Pair{"meter up to line-up", &Theme::meterLow, &Theme::meterOff},
    Pair{"meter up to the maximum", &Theme::meterMid, &Theme::meterOff},
    Pair{"meter above", &Theme::meterHigh, &Theme::meterOff},
    Pair{"what a meter held", &Theme::text, &Theme::meterOff},
    Pair{"scope numbers", &Theme::scopeNumber, &Theme::scopeBackground},
    Pair{"scope limits", &Theme::scopeStrong, &Theme::scopeBackground},
    Pair{"fault in a scope", &Theme::scopeFault, &Theme::scopeBackground},
    Pair{"scope readout", &Theme::scopeText, &Theme::scopeBackground},
};

struct Roles {
    const char* name;
    QPalette::ColorRole front;
    QPalette::ColorRole back;
};

// What the toolkit draws.
constexpr std::array kRoles = {
    Roles{"window", QPalette::WindowText, QPalette::Window},
    Roles{"field", QPalette::Text, QPalette::Base},
    Roles{"every other row", QPalette::Text, QPalette::AlternateBase},
    Roles{"hint", QPalette::PlaceholderText, QPalette::Base},
    Roles{"button", QPalette::ButtonText, QPalette::Button},
    Roles{"selection", QPalette::HighlightedText, QPalette::Highlight},
    Roles{"tool tip", QPalette::ToolTipText, QPalette::ToolTipBase},
    Roles{"link", QPalette::Link, QPalette::Window},
    Roles{"visited link", QPalette::LinkVisited, QPalette::Window},
};

TEST(Contrast, OfEveryTextAndMeterIsEnoughInBothThemes) {
    for (const auto appearance : {studio::Appearance::Light, studio::Appearance::Dark}) {
        Theme::Apply(appearance);
        const Theme& theme = Theme::Current();
        const char* const name = theme.isDark ? "dark: " : "light: ";
        for (const Pair& pair : kDrawn) {
            EXPECT_GE(Contrast(theme.*pair.front, theme.*pair.back), kLeastContrast) << name << pair.name;
        }
        const QPalette palette = QApplication::palette();
        for (const Roles& roles : kRoles) {
            EXPECT_GE(Contrast(palette.color(roles.front), palette.color(roles.back)), kLeastContrast)
                << name << roles.name;
        }
        const lanes::LaneColours lanes = theme.Lanes();
        for (const lanes::Rgb front : {lanes.title, lanes.text}) {
            EXPECT_GE(Contrast(QColor(front), QColor(lanes.background)), kLeastContrast) << name << "lanes";
        }
        for (std::size_t channel = 0; channel < lanes.waveforms.size(); ++channel) {  // names of channels, too
            EXPECT_GE(Contrast(QColor(lanes.Waveform(channel)), QColor(lanes.background)), kLeastContrast)
                << name << "channel " << channel;
        }
    }
}

}  // namespace
