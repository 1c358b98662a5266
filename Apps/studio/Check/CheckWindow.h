#pragma once

#include <lineup/Importer.h>
#include "Apps/studio/Check/CheckFoot.h"
#include "Apps/studio/Check/CheckHeader.h"
#include "Apps/studio/Check/CheckJob.h"
#include "Apps/studio/Check/CheckPictures.h"
#include "Apps/studio/Check/CheckTransport.h"
#include "Apps/studio/Check/FaultList.h"
#include "Apps/studio/Check/PatchTable.h"
#include "Apps/studio/Views/LanesView.h"
#include "Apps/studio/Views/MeterView.h"

#include <QSplitter>
#include <QTimer>
#include <QWidget>
#include <memory>

namespace studio {

/// What a path did to the line-up in a recording: found beside expected, and the faults, of which one that is chosen is
/// shown at its place. What an earlier check found stays until there is something new to show.
class CheckWindow : public QWidget {
    Q_OBJECT

public:
    explicit CheckWindow(std::shared_ptr<const lineup::Importer> importer, QWidget* window);
    ~CheckWindow() override;

    /// Checks a recording, in place of the one that is being checked, and shows itself.
    void Check(const QString& file);

    /// Asks which recording.
    void Ask();

    [[nodiscard]] bool IsRunning() const noexcept { return mJob != nullptr; }

    /// What plays the recording.
    [[nodiscard]] CheckTransport& Transport() noexcept { return mTransport; }

    /// The place that is shown, s from the start of the recording.
    [[nodiscard]] double Place() const noexcept { return mPlace; }

Q_SIGNALS:
    /// It is about to play.
    void PlayWanted();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] QAction* Command(const char* name, const QString& text, const char* keys, bool isSwitch);
    void Arrange();
    void Start(const QString& file);
    void End();
    void TakeUp(const QString& file, std::shared_ptr<const lineup::CheckReport> report);
    void ShowFault(std::size_t fault);
    void ShowLanes(const std::vector<int>& inputs);
    void ShowScopes();
    void GoTo(double seconds);
    void ShowPlace(double seconds);
    void Play();
    void ConnectTransport();

    std::shared_ptr<const lineup::Importer> mImporter;
    std::shared_ptr<const lineup::CheckReport> mReport;  // null: nothing was found yet
    double mPlace = 0;
    QString mNext;  // to be checked when the present one has stopped
    QTimer mTimer;
    CheckTransport mTransport;
    QAction* mAsk;
    QAction* mPlay;
    QAction* mWaveform;
    QAction* mVectorscope;
    QAction* mParade;
    CheckHeader* mHeader;
    CheckPictures* mPictures;
    MeterView* mMeters;
    LanesView* mLanes;
    FaultList* mFaults;
    PatchTable* mPatches;
    QSplitter* mUpper;
    QSplitter* mLower;
    QSplitter* mWhole;
    CheckFoot* mFoot;
    std::unique_ptr<CheckJob> mJob;
};

}  // namespace studio
