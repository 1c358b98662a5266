#pragma once

#include "Apps/studio/Window/Actions.h"

#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace studio {

/// Buttons to play with, the time, and where the sound goes.
class TransportBar : public QWidget {
    Q_OBJECT

public:
    explicit TransportBar(const Actions& actions, QWidget* parent = nullptr);

    void ShowPlaying(bool playing);
    void ShowTime(double seconds, double lengthSeconds);

    /// `isWarning`: it does not come out as the clip has it.
    void ShowSound(const QString& text, bool isWarning);

protected:
    void changeEvent(QEvent* event) override;

private:
    QToolButton* Button(QAction& action);
    void Dress();

    const Actions& mActions;
    QToolButton* mToStart;
    QToolButton* mPlay;
    QToolButton* mLoop;
    QLabel* mTime;
    QLabel* mLength;
    QLabel* mSound;
    bool mIsPlaying = false;
    bool mIsWarning = false;
};

}  // namespace studio
