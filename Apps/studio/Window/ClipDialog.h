#pragma once

#include <lineup/ClipDocument.h>
#include <lineup/Importer.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace studio {

/// Asks for a clip's layout: channels, sample rate, picture, length. The tone itself has a dialog of its own,
/// the plug-in's.
class ClipDialog : public QDialog {
    Q_OBJECT

public:
    /// Begins with `values`.
    ClipDialog(const lineup::Importer& plugin, const lineup::ClipDocument& values, const QString& title,
               QWidget* parent);

    /// The values as they were chosen. What the dialog does not ask for stays as it was, and so does a tone
    /// that goes with channels and rate chosen; an ident that does not is taken out, and a steady tone of half the
    /// sample rate or more is set to the plug-in's usual frequency if a person said so.
    [[nodiscard]] lineup::ClipDocument Values() const;

private:
    void FillIn();
    void Check();
    [[nodiscard]] float UsualFrequency() const;
    [[nodiscard]] bool MovesTone() const;
    [[nodiscard]] lineup::Rational FrameRate() const;

    const lineup::Importer& mPlugin;
    lineup::ClipDocument mBefore;
    QComboBox* mChannels;
    QComboBox* mRate;
    QComboBox* mSize;
    QSpinBox* mWidth;
    QSpinBox* mHeight;
    QComboBox* mCard;
    QComboBox* mFrameRate;
    QDoubleSpinBox* mLength;
    QLabel* mProblem;
    QCheckBox* mMoveTone;  // shown when the tone is too high for the rate
    QPushButton* mOk;
};

}  // namespace studio
