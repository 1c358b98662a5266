#pragma once

#include <QAction>
#include <QMenuBar>
#include <QObject>
#include <array>
#include <cstddef>

namespace studio {

/// Everything that a person can tell the window to do.
enum class Act : std::size_t {
    New,
    Open,
    Save,
    SaveAs,
    Export,
    Check,
    Quit,
    ClipSettings,
    EditTone,
    Play,
    Loop,
    Mute,
    ToStart,
    ToEnd,
    FrameBack,
    FrameForward,
    SecondBack,
    SecondForward,
    Scope,
    Vectorscope,
    Parade,
    OwnNumbers,
    ClearProbes,
    FullScreen,
    ZoomIn,
    ZoomOut,
    ZoomAll,
    PageBack,
    PageForward,
    ThemeSystem,
    ThemeLight,
    ThemeDark,
    Shortcuts,
    About,
    Count
};

/// The window's actions with their names, shortcuts and places in the menus, out of one table. Tool tips carry
/// the shortcuts.
class Actions : public QObject {
    Q_OBJECT

public:
    explicit Actions(QObject* parent = nullptr);

    [[nodiscard]] QAction& operator[](Act act) const { return *mActions[static_cast<std::size_t>(act)]; }

    /// Adds the menus to `bar`. `undo`, `redo`, `recent` and `devices` belong to others and get their places.
    void FillMenus(QMenuBar& bar, QAction& undo, QAction& redo, QMenu& recent, QMenu& devices) const;

    /// All of them and their shortcuts as a table in HTML.
    [[nodiscard]] QString ShortcutTable() const;

private:
    std::array<QAction*, static_cast<std::size_t>(Act::Count)> mActions{};
};

}  // namespace studio
