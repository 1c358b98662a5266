#include "Apps/studio/Window/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace studio {

namespace {

const Theme& Light() {
    static const Theme kLight = {
        .isDark = false,
        .window = 0xECEEF1,
        .panel = 0xFFFFFF,
        .button = 0xF7F8FA,
        .text = 0x15191F,
        .dim = 0x5A6472,
        .line = 0xC6CCD4,
        .accent = 0x2158DB,
        .onAccent = 0xFFFFFF,
        .warning = 0x9A5B00,
        .error = 0xB3261E,
        .surround = 0x2A2B2C,
        .lane = 0xFFFFFF,
        .laneGrid = 0xDFE3E8,
        .playhead = 0xD92D20,
        .meterOff = 0xCCD2D9,
        .meterLow = 0x0B5E30,
        .meterMid = 0x724800,
        .meterHigh = 0xA61818,
        .scopeBackground = 0x0C0F0E,
        .scopeGrid = 0x2A332F,
        .scopeStrong = 0x8A8360,
        .scopeNumber = 0x8A958F,
        .scopeText = 0xE3EAE6,
        .scopeFault = 0xFF7A6B,
    };
    return kLight;
}

const Theme& Dark() {
    static const Theme kDark = {
        .isDark = true,
        .window = 0x1A1D22,
        .panel = 0x121418,
        .button = 0x2A2F37,
        .text = 0xE8EBEF,
        .dim = 0x98A2AF,
        .line = 0x383F49,
        .accent = 0x3B82F6,
        .onAccent = 0x10141A,
        .warning = 0xF5B84B,
        .error = 0xFF8A80,
        .surround = 0x0E0F10,
        .lane = 0x121418,
        .laneGrid = 0x2A3038,
        .playhead = 0xFF5A4D,
        .meterOff = 0x31373F,
        .meterLow = 0x2FBF71,
        .meterMid = 0xF2C037,
        .meterHigh = 0xFF7A6B,
        .scopeBackground = 0x0A0D0C,
        .scopeGrid = 0x26302B,
        .scopeStrong = 0x8A8360,
        .scopeNumber = 0x8A958F,
        .scopeText = 0xE3EAE6,
        .scopeFault = 0xFF7A6B,
    };
    return kDark;
}

QPalette PaletteOf(const Theme& theme) {
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const QColor& colour) { palette.setColor(role, colour); };
    set(QPalette::Window, theme.window);
    set(QPalette::WindowText, theme.text);
    set(QPalette::Base, theme.panel);
    set(QPalette::AlternateBase, theme.window);
    set(QPalette::Text, theme.text);
    set(QPalette::PlaceholderText, theme.dim);
    set(QPalette::Button, theme.button);
    set(QPalette::ButtonText, theme.text);
    set(QPalette::BrightText, Qt::white);
    set(QPalette::Light, theme.isDark ? theme.button.lighter(120) : QColor(Qt::white));
    set(QPalette::Midlight, theme.button);
    set(QPalette::Mid, theme.line);
    set(QPalette::Dark, theme.line.darker(115));
    set(QPalette::Shadow, theme.isDark ? QColor(Qt::black) : theme.dim);
    set(QPalette::ToolTipBase, theme.button);
    set(QPalette::ToolTipText, theme.text);
    set(QPalette::Highlight, theme.accent);
    set(QPalette::HighlightedText, theme.onAccent);
    set(QPalette::Link, theme.isDark ? theme.accent.lighter(125) : theme.accent);
    set(QPalette::LinkVisited, theme.dim);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Link}) {
        palette.setColor(QPalette::Disabled, role, theme.isDark ? QColor(0x616A76) : QColor(0xA0A8B2));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, theme.line);
    return palette;
}

const Theme*& Chosen() {
    static const Theme* chosen = &Light();
    return chosen;
}

bool SystemIsDark() {
    static const bool kIsDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;  // at first
    return kIsDark;
}

}  // namespace

lanes::LaneColours Theme::Lanes() const {
    const auto rgb = [](const QColor& colour) { return colour.rgb() & 0xFFFFFFU; };
    return {.background = rgb(window),
            .lane = rgb(lane),
            .grid = rgb(laneGrid),
            .noData = rgb(line),
            .title = rgb(text),
            .text = rgb(dim),
            .waveforms = (isDark ? lanes::LaneColours::Dark() : lanes::LaneColours::Light()).waveforms};
}

const Theme& Theme::Current() {
    return *Chosen();
}

void Theme::Apply(Appearance appearance) {
    const bool systemIsDark = SystemIsDark();
    const bool dark = appearance == Appearance::Dark || (appearance == Appearance::System && systemIsDark);
    Chosen() = dark ? &Dark() : &Light();
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(PaletteOf(Current()));
}

}  // namespace studio
