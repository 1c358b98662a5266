#pragma once

#include <QMimeData>
#include <QString>
#include <QUrl>

namespace studio {

/// The file that was dropped; empty for a remote file, and for more than one.
[[nodiscard]] inline QString DroppedFile(const QMimeData& data) {
    return data.urls().size() == 1 && data.urls().constFirst().isLocalFile() ? data.urls().constFirst().toLocalFile()
                                                                             : QString();
}

}  // namespace studio
