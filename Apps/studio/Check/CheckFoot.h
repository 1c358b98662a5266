#pragma once

#include "Apps/studio/Window/ProblemLabel.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

namespace studio {

/// The line at the foot of the window of checks: how far one is, and what kept one from its end.
class CheckFoot : public QWidget {
    Q_OBJECT

public:
    explicit CheckFoot(QWidget* parent = nullptr);

    void ShowRunning(const QString& text);
    /// From 0 to 1; below 0 while that is not known.
    void ShowShare(double share);
    /// Why there is nothing new to see; empty: all went well, and there is nothing to say.
    void ShowEnded(const QString& text);
    void ShowProblem(const QString& problem);

Q_SIGNALS:
    void CancelWanted();

private:
    void ShowOnly(std::initializer_list<QWidget*> widgets);

    QLabel* mText;
    ProblemLabel* mProblem;
    QProgressBar* mBar;
    QPushButton* mCancel;
    QPushButton* mDismiss;
};

}  // namespace studio
