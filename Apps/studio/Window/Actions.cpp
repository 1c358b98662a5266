#include "Apps/studio/Window/Actions.h"

#include <QActionGroup>
#include <QMenu>

namespace studio {

namespace {

constexpr const char* kFile = "&File";
constexpr const char* kEdit = "&Edit";
constexpr const char* kTransport = "&Transport";
constexpr const char* kView = "&View";
constexpr const char* kHelp = "&Help";

struct Row {
    Act act{};
    const char* menu = nullptr;
    const char* name = nullptr;  // for the object, too
    const char* text = nullptr;
    const char* shortcut = nullptr;
    bool isSwitch = false;
    bool beginsGroup = false;
};

// In the order of Act, which is that of the menus.
constexpr std::array<Row, static_cast<std::size_t>(Act::Count)> kRows = {{
    {Act::New, kFile, "new", "&New Clip\u2026", "Ctrl+N"},
    {Act::Open, kFile, "open", "&Open\u2026", "Ctrl+O"},
    {Act::Save, kFile, "save", "&Save", "Ctrl+S", false, true},
    {Act::SaveAs, kFile, "saveAs", "Save &As\u2026", "Ctrl+Shift+S"},
    {Act::Export, kFile, "export", "&Export\u2026", "Ctrl+E", false, true},
    {Act::Quit, kFile, "quit", "&Quit", "Ctrl+Q", false, true},
    {Act::ClipSettings, kEdit, "clipSettings", "&Clip Settings\u2026", "Ctrl+I", false, true},
    {Act::EditTone, kEdit, "editTone", "Edit &Tone\u2026", "Ctrl+T"},
    {Act::Play, kTransport, "play", "&Play", "Space"},
    {Act::Loop, kTransport, "loop", "&Loop", "L", true},
    {Act::Mute, kTransport, "mute", "&Mute", "M", true},
    {Act::ToStart, kTransport, "toStart", "Go to &Start", "Home", false, true},
    {Act::ToEnd, kTransport, "toEnd", "Go to &End", "End"},
    {Act::FrameBack, kTransport, "frameBack", "Frame &Back", "Left"},
    {Act::FrameForward, kTransport, "frameForward", "Frame &Forward", "Right"},
    {Act::SecondBack, kTransport, "secondBack", "Second Back", "Shift+Left"},
    {Act::SecondForward, kTransport, "secondForward", "Second Forward", "Shift+Right"},
    {Act::Scope, kView, "scope", "&Waveform Monitor", "W", true},
    {Act::Vectorscope, kView, "vectorscope", "&Vectorscope", "V", true},
    {Act::Parade, kView, "parade", "&RGB Parade", "R", true},
    {Act::OwnNumbers, kView, "ownNumbers", "Plug-in\u2019s Own &Numbers (BT.601)", "", true},
    {Act::ClearProbes, kView, "clearProbes", "Remove All &Pins", "Ctrl+Backspace"},
    {Act::FullScreen, kView, "fullScreenPicture", "Picture on the &Full Screen", "F11", true},
    {Act::ZoomIn, kView, "zoomIn", "Zoom &In", "Ctrl++", false, true},
    {Act::ZoomOut, kView, "zoomOut", "Zoom &Out", "Ctrl+-"},
    {Act::ZoomAll, kView, "zoomAll", "Show the Whole &Clip", "Ctrl+0"},
    {Act::PageBack, kView, "pageBack", "Scroll Back", "PgUp"},
    {Act::PageForward, kView, "pageForward", "Scroll Forward", "PgDown"},
    {Act::ThemeSystem, kView, "themeSystem", "Colours of the &Desktop", "", true, true},
    {Act::ThemeLight, kView, "themeLight", "&Light", "", true},
    {Act::ThemeDark, kView, "themeDark", "&Dark", "Ctrl+D", true},
    {Act::Shortcuts, kHelp, "shortcuts", "&Keyboard Shortcuts", "F1"},
    {Act::About, kHelp, "about", "&About Lineup Studio", ""},
}};

constexpr bool InOrder() {
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        if (kRows[i].act != static_cast<Act>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(InOrder());

QString Plain(const QAction& action) {
    return action.text().remove('&');
}

}  // namespace

Actions::Actions(QObject* parent) : QObject(parent) {
    auto* const themes = new QActionGroup(this);
    for (const Row& row : kRows) {
        auto* const action = new QAction(tr(row.text), this);
        action->setObjectName(row.name);
        action->setShortcut(QKeySequence(row.shortcut));
        action->setCheckable(row.isSwitch);
        const QString keys = action->shortcut().toString(QKeySequence::NativeText);
        action->setToolTip(keys.isEmpty() ? Plain(*action) : Plain(*action) + " (" + keys + ")");
        mActions[static_cast<std::size_t>(row.act)] = action;
    }
    for (const Act act : {Act::ThemeSystem, Act::ThemeLight, Act::ThemeDark}) {
        themes->addAction(&(*this)[act]);
    }
    (*this)[Act::ZoomIn].setShortcuts({QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")});
    (*this)[Act::Quit].setMenuRole(QAction::QuitRole);
    (*this)[Act::About].setMenuRole(QAction::AboutRole);
}

void Actions::FillMenus(QMenuBar& bar, QAction& undo, QAction& redo, QMenu& recent, QMenu& devices) const {
    QMenu* menu = nullptr;
    const char* title = nullptr;
    for (const Row& row : kRows) {
        if (title == nullptr || QLatin1String(title) != QLatin1String(row.menu)) {
            title = row.menu;
            menu = bar.addMenu(tr(title));
            if (title == kEdit) {
                menu->addAction(&undo);
                menu->addAction(&redo);
            }
        }
        if (row.beginsGroup) {
            menu->addSeparator();
        }
        menu->addAction(&(*this)[row.act]);
        if (row.act == Act::Open) {
            menu->addMenu(&recent);
        }
        if (row.act == Act::Mute) {
            menu->addMenu(&devices);
        }
    }
}

QString Actions::ShortcutTable() const {
    QString table = "<table cellspacing='6'>";
    for (const Row& row : kRows) {
        const QAction& action = (*this)[row.act];
        if (!action.shortcut().isEmpty()) {
            table += QString("<tr><td><b>%1</b></td><td>%2</td></tr>")
                         .arg(action.shortcut().toString(QKeySequence::NativeText), Plain(action).remove(u'\u2026'));
        }
    }
    return table + tr("<tr><td><b>Ctrl+Z, Ctrl+Shift+Z</b></td><td>Undo, redo</td></tr>"
                      "<tr><td><b>Arrow keys</b></td><td>With the picture or a scope in focus (Tab): point at "
                      "a place</td></tr>"
                      "<tr><td><b>Enter</b></td><td>In the picture: pin the pixel</td></tr>"
                      "<tr><td><b>Wheel</b></td><td>Over the waveform: zoom; with Shift, scroll</td></tr></table>");
}

}  // namespace studio
