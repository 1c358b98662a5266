#pragma once

#include "Apps/studio/Document/StudioDocument.h"
#include "Apps/studio/Window/RecentFiles.h"

#include <QObject>
#include <QWidget>

namespace studio {

/// New, open and save as a person goes through them: what is asked, and what is said when it fails.
class DocumentFlow : public QObject {
    Q_OBJECT

public:
    DocumentFlow(StudioDocument& document, QWidget& window);

    void New();
    void Open();
    void OpenFile(const QString& file);

    /// False when nothing was saved.
    bool Save();
    bool SaveAs();

    void EditClip();

    /// Asks what is to become of unsaved changes. False: stay where you are.
    [[nodiscard]] bool MayLeave();

    /// Says that something has gone wrong.
    void Complain(const QString& problem);

    [[nodiscard]] RecentFiles& Recent() noexcept { return mRecent; }

private:
    bool SaveTo(const QString& file);
    [[nodiscard]] QString Folder() const;

    StudioDocument& mDocument;
    QWidget& mWindow;
    RecentFiles mRecent;
};

}  // namespace studio
