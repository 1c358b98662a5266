#pragma once

#include "Apps/studio/Export/ExportChoice.h"
#include "Apps/studio/Window/ProblemLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace studio {

/// Asks what an export should be. What cannot be exported is said while it is being chosen.
class ExportDialog : public QDialog {
    Q_OBJECT

public:
    /// Begins with `choice`. A name without a folder goes to `folder`.
    ExportDialog(const StudioDocument& document, const ExportChoice& choice, QString folder, QWidget* parent);

    [[nodiscard]] ExportChoice Choice() const;

private:
    void FillIn();
    [[nodiscard]] QFormLayout* Arrange();
    void Browse();
    [[nodiscard]] QString Target() const;
    void PresetChosen();
    void FormatChosen();
    void FileChanged();
    void Check();
    void ShowPreset();
    void Accept();

    const StudioDocument& mDocument;
    QString mFolder;
    const lineup::FileFormat* mShownFormat = nullptr;
    QComboBox* mPreset;
    QComboBox* mFormat;
    QLineEdit* mFile;
    QPushButton* mBrowse;
    QLabel* mWhere;
    QComboBox* mVideo;
    QComboBox* mScan;
    QComboBox* mAudio;
    QLineEdit* mTimecode;
    QCheckBox* mMonoTracks;
    ProblemLabel* mProblem;
    QPushButton* mExport = nullptr;
};

}  // namespace studio
