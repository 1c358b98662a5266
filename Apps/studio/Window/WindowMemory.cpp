// What the window remembers from one time to the next.
#include "Apps/studio/Window/StudioWindow.h"

#include <QScreen>
#include <QSettings>
#include <algorithm>
#include <array>

namespace studio {

namespace {

constexpr QSize kFirstSize{1180, 760};
constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kUpperKey = "window/upper";
constexpr const char* kWholeKey = "window/whole";
constexpr const char* kScopesKey = "window/scopes";
constexpr const char* kOwnNumbersKey = "view/ownNumbers";
constexpr const char* kAppearanceKey = "view/appearance";
constexpr const char* kLoopKey = "transport/loop";
constexpr const char* kVolumeKey = "sound/volumeDb";
constexpr const char* kMuteKey = "sound/muted";
constexpr const char* kDeviceKey = "sound/device";

// The switches of the scopes, and where they are remembered.
struct ScopeSwitch {
    Act act;
    const char* key;
};
constexpr std::array<ScopeSwitch, 3> kScopeSwitches = {
    {{Act::Scope, "view/waveformMonitor"}, {Act::Vectorscope, "view/vectorscope"}, {Act::Parade, "view/parade"}}};

Act ThemeAct(Appearance appearance) {
    return appearance == Appearance::Dark    ? Act::ThemeDark
           : appearance == Appearance::Light ? Act::ThemeLight
                                             : Act::ThemeSystem;
}

}  // namespace

void StudioWindow::Dress(Appearance appearance) {
    mActions[ThemeAct(appearance)].setChecked(true);
    QSettings().setValue(kAppearanceKey, static_cast<int>(appearance));
    Theme::Apply(appearance);
}

void StudioWindow::Restore() {
    const QSettings settings;
    Dress(static_cast<Appearance>(std::clamp(settings.value(kAppearanceKey).toInt(), 0, 2)));
    mActions[Act::Loop].setChecked(settings.value(kLoopKey, true).toBool());
    for (const auto& [act, key] : kScopeSwitches) {
        mActions[act].setChecked(settings.value(key, false).toBool());
    }
    mActions[Act::Mute].setChecked(settings.value(kMuteKey, false).toBool());
    mTransport->SetVolumeDb(settings.value(kVolumeKey, 0).toInt());
    mPlayer.UseDevice(settings.value(kDeviceKey).toByteArray());
    mActions[Act::OwnNumbers].setChecked(settings.value(kOwnNumbersKey, false).toBool());
    ShowScopes();
    mScopes->restoreState(settings.value(kScopesKey).toByteArray());
    if (!restoreGeometry(settings.value(kGeometryKey).toByteArray())) {
        resize(kFirstSize.boundedTo(screen()->availableSize()));
    }
    if (!mUpper->restoreState(settings.value(kUpperKey).toByteArray())) {
        mUpper->setSizes({580, 440, mMeters->sizeHint().width()});
    }
    if (!mWhole->restoreState(settings.value(kWholeKey).toByteArray())) {
        mWhole->setSizes({440, 230});
    }
}

void StudioWindow::Remember() const {
    QSettings settings;
    settings.setValue(kGeometryKey, saveGeometry());
    settings.setValue(kUpperKey, mUpper->saveState());
    settings.setValue(kWholeKey, mWhole->saveState());
    settings.setValue(kLoopKey, mActions[Act::Loop].isChecked());
    settings.setValue(kMuteKey, mActions[Act::Mute].isChecked());
    settings.setValue(kVolumeKey, mTransport->VolumeDb());
    settings.setValue(kDeviceKey, mPlayer.WantedDevice());
    settings.setValue(kOwnNumbersKey, mActions[Act::OwnNumbers].isChecked());
    settings.setValue(kScopesKey, mScopes->saveState());
    for (const auto& [act, key] : kScopeSwitches) {
        settings.setValue(key, mActions[act].isChecked());
    }
}

}  // namespace studio
