#include "Apps/studio/Window/Actions.h"

#include <QActionGroup>
#include <QMenu>

namespace studio {

namespace {

constexpr const char* kFile = QT_TRANSLATE_NOOP("Actions", "&File");
constexpr const char* kEdit = QT_TRANSLATE_NOOP("Actions", "&Edit");
constexpr const char* kTransport = QT_TRANSLATE_NOOP("Actions", "&Transport");
constexpr const char* kView = QT_TRANSLATE_NOOP("Actions", "&View");
constexpr const char* kHelp = QT_TRANSLATE_NOOP("Actions", "&Help");

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
    {Act::New, kFile, "new", QT_TRANSLATE_NOOP("Actions", "&New Clip\u2026"), "Ctrl+N"},
    {Act::Open, kFile, "open", QT_TRANSLATE_NOOP("Actions", "&Open\u2026"), "Ctrl+O"},
    {Act::Save, kFile, "save", QT_TRANSLATE_NOOP("Actions", "&Save"), "Ctrl+S", false, true},
    {Act::SaveAs, kFile, "saveAs", QT_TRANSLATE_NOOP("Actions", "Save &As\u2026"), "Ctrl+Shift+S"},
    {Act::Export, kFile, "export", QT_TRANSLATE_NOOP("Actions", "&Export\u2026"), "Ctrl+E", false, true},
    {Act::Check, kFile, "check", QT_TRANSLATE_NOOP("Actions", "&Check Recording\u2026"), "Ctrl+K"},
    {Act::Quit, kFile, "quit", QT_TRANSLATE_NOOP("Actions", "&Quit"), "Ctrl+Q", false, true},
    {Act::ClipSettings, kEdit, "clipSettings", QT_TRANSLATE_NOOP("Actions", "&Clip Settings\u2026"), "Ctrl+I", false,
     true},
    {Act::EditTone, kEdit, "editTone", QT_TRANSLATE_NOOP("Actions", "Edit &Tone\u2026"), "Ctrl+T"},
    {Act::Play, kTransport, "play", QT_TRANSLATE_NOOP("Actions", "&Play"), "Space"},
    {Act::Loop, kTransport, "loop", QT_TRANSLATE_NOOP("Actions", "&Loop"), "L", true},
    {Act::Mute, kTransport, "mute", QT_TRANSLATE_NOOP("Actions", "&Mute"), "M", true},
    {Act::ToStart, kTransport, "toStart", QT_TRANSLATE_NOOP("Actions", "Go to &Start"), "Home", false, true},
    {Act::ToEnd, kTransport, "toEnd", QT_TRANSLATE_NOOP("Actions", "Go to &End"), "End"},
    {Act::FrameBack, kTransport, "frameBack", QT_TRANSLATE_NOOP("Actions", "Frame &Back"), "Left"},
    {Act::FrameForward, kTransport, "frameForward", QT_TRANSLATE_NOOP("Actions", "Frame &Forward"), "Right"},
    {Act::SecondBack, kTransport, "secondBack", QT_TRANSLATE_NOOP("Actions", "Second Back"), "Shift+Left"},
    {Act::SecondForward, kTransport, "secondForward", QT_TRANSLATE_NOOP("Actions", "Second Forward"), "Shift+Right"},
    {Act::Scope, kView, "scope", QT_TRANSLATE_NOOP("Actions", "&Waveform Monitor"), "W", true},
    {Act::Vectorscope, kView, "vectorscope", QT_TRANSLATE_NOOP("Actions", "&Vectorscope"), "V", true},
    {Act::Parade, kView, "parade", QT_TRANSLATE_NOOP("Actions", "&RGB Parade"), "R", true},
    {Act::OwnNumbers, kView, "ownNumbers", QT_TRANSLATE_NOOP("Actions", "Plug-in\u2019s Own &Numbers (BT.601)"), "",
     true},
    {Act::ClearProbes, kView, "clearProbes", QT_TRANSLATE_NOOP("Actions", "Remove All &Pins"), "Ctrl+Backspace"},
    {Act::FullScreen, kView, "fullScreenPicture", QT_TRANSLATE_NOOP("Actions", "Picture on the &Full Screen"), "F11",
     true},
    {Act::ZoomIn, kView, "zoomIn", QT_TRANSLATE_NOOP("Actions", "Zoom &In"), "Ctrl++", false, true},
    {Act::ZoomOut, kView, "zoomOut", QT_TRANSLATE_NOOP("Actions", "Zoom &Out"), "Ctrl+-"},
    {Act::ZoomAll, kView, "zoomAll", QT_TRANSLATE_NOOP("Actions", "Show the Whole &Clip"), "Ctrl+0"},
    {Act::PageBack, kView, "pageBack", QT_TRANSLATE_NOOP("Actions", "Scroll Back"), "PgUp"},
    {Act::PageForward, kView, "pageForward", QT_TRANSLATE_NOOP("Actions", "Scroll Forward"), "PgDown"},
    {Act::ThemeSystem, kView, "themeSystem", QT_TRANSLATE_NOOP("Actions", "Colours of the &Desktop"), "", true, true},
    {Act::ThemeLight, kView, "themeLight", QT_TRANSLATE_NOOP("Actions", "&Light"), "", true},
    {Act::ThemeDark, kView, "themeDark", QT_TRANSLATE_NOOP("Actions", "&Dark"), "Ctrl+D", true},
    {Act::Shortcuts, kHelp, "shortcuts", QT_TRANSLATE_NOOP("Actions", "&Keyboard Shortcuts"), "F1"},
    {Act::About, kHelp, "about", QT_TRANSLATE_NOOP("Actions", "&About Lineup Studio"), ""},
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
