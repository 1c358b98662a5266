#pragma once

#include <lineup/Rational.h>
#include "Apps/studio/Window/Actions.h"
#include "Apps/studio/Window/ElidedLabel.h"
#include "Apps/studio/Window/KeySlider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>
#include <QWidget>

namespace studio {

/// Buttons to play with, the time, and where the sound goes.
class TransportBar : public QWidget {
    Q_OBJECT

public:
    explicit TransportBar(const Actions& actions, QWidget* parent = nullptr);

    void ShowPlaying(bool playing);
    void ShowTime(double seconds, std::int64_t frame);

    /// `cycles`: how often the clip's sequence is heard in it; 0 for a steady tone.
    void SetLength(double seconds, std::int64_t frames, lineup::Rational frameRate, double cycles);

    /// In decibels, as a person sets it; the lowest is silence.
    void SetVolumeDb(int levelDb);
    [[nodiscard]] int VolumeDb() const { return mVolume->value(); }

    /// `isWarning`: it does not come out as the clip has it.
    void ShowSound(const QString& text, bool isWarning);

Q_SIGNALS:
    /// A person typed a frame number or a time code.
    void FrameWanted(std::int64_t frame);
    /// A person moved the volume; linear.
    void VolumeWanted(float gain);

protected:
    void changeEvent(QEvent* event) override;

private:
    QToolButton* Button(QAction& action);
    void Dress();
    void TimecodeTyped();
    void VolumeMoved();
    void ArrangeIn(QHBoxLayout& layout);

    const Actions& mActions;
    QToolButton* mToStart;
    QToolButton* mPlay;
    QToolButton* mLoop;
    QLabel* mTime;
    QLineEdit* mTimecode;
    QSpinBox* mFrame;
    ElidedLabel* mLength;
    QToolButton* mMute;
    KeySlider* mVolume;
    lineup::Rational mFrameRate{25, 1};
    ElidedLabel* mSound;
    bool mIsPlaying = false;
    bool mIsWarning = false;
};

}  // namespace studio
