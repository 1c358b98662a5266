#pragma once

#include "Apps/studio/Export/ExportChoice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace studio {

/// Asks what an export should be. What cannot be exported is said while it is being chosen.
class ExportDialog : public QDialog {
    Q_OBJECT

public:
    /// `file` is what is offered.
    ExportDialog(const StudioDocument& document, const QString& file, QWidget* parent);

    [[nodiscard]] ExportChoice Choice() const;

private:
    void Browse();
    void FileChanged();
    void Check();
    void Accept();

    const StudioDocument& mDocument;
    QLineEdit* mFile;
    QLabel* mFormat;
    QComboBox* mVideo;
    QComboBox* mAudio;
    QLineEdit* mTimecode;
    QCheckBox* mMonoTracks;
    QLabel* mProblem;
    QPushButton* mExport;
    const lineup::FileFormat* mShownFormat = nullptr;
};

}  // namespace studio
