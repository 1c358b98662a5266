#pragma once

#include "Apps/studio/Export/ExportJob.h"
#include "Apps/studio/Window/ProblemLabel.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <memory>

namespace studio {

/// The line at the foot of the window that shows an export as it goes on, and what came of it.
class ExportPanel : public QWidget {
    Q_OBJECT

public:
    explicit ExportPanel(QWidget* parent = nullptr);
    ~ExportPanel() override;

    /// Starts an export and shows itself. Not while another one is running.
    void Start(std::shared_ptr<const lineup::Clip> clip, const lineup::ExportSettings& settings);

    [[nodiscard]] bool IsRunning() const noexcept { return mIsRunning; }

    /// Stops what is running, and waits until nothing of it is left.
    void Abandon();

Q_SIGNALS:
    /// Nothing is running any more; `problem` is "" unless it failed.
    void Ended(const QString& problem);
    /// A person wants to try again what failed.
    void AgainWanted();

private:
    void ShowProgress();
    void End(const QString& text, bool hasFile, const QString& problem);
    void Reveal() const;

    QLabel* mText;
    ProblemLabel* mProblem;
    QProgressBar* mBar;
    QLabel* mLeft;
    QPushButton* mCancel;
    QPushButton* mReveal;
    QPushButton* mAgain;
    QPushButton* mClose;
    QTimer mTimer;
    QElapsedTimer mElapsed;
    std::unique_ptr<ExportJob> mJob;
    bool mIsRunning = false;
};

}  // namespace studio
