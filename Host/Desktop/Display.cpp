#include "Host/Desktop/Display.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QString>
#include <span>
#include <string_view>
#include <xcb/xcb.h>

namespace zelui::qt {

namespace {

// What Qt is told to open its windows on: the last -platform, else the environment; "" leaves it to Qt.
QByteArray ChosenPlatform(std::span<const char* const> arguments) {
    QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        const std::string_view option = arguments[i];
        if (option == "-platform" || option == "--platform") {
            platform = arguments[i + 1];
        }
    }
    return platform;
}

bool NeedsADisplay(const QByteArray& platform) {
    return platform.isEmpty() || platform.startsWith("xcb") || platform.startsWith("wayland");
}

bool XServerAnswers() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

bool WaylandIsThere() {
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    const QString display = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QDir runtime(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    return !display.isEmpty() && !plugins.entryList({"libqwayland*"}).isEmpty() &&
           QFileInfo::exists(runtime.filePath(display));
}

}  // namespace

std::string DisplayProblem(int argc, const char* const* argv) {
    const QByteArray platform = ChosenPlatform({argv, static_cast<std::size_t>(argc)});
    if (!NeedsADisplay(platform) || (!platform.startsWith("xcb") && WaylandIsThere())) {
        return "";
    }
    const QByteArray display = qgetenv("DISPLAY");
    if (display.isEmpty()) {
        return "no display: DISPLAY and WAYLAND_DISPLAY name none that can be used";
    }
    if (!XServerAnswers()) {
        return "no display: the X server at " + display.toStdString() + " does not answer";
    }
    return "";
}

}  // namespace zelui::qt
