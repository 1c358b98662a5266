#pragma once

#include "Apps/studio/Check/CheckWindow.h"
#include "Apps/studio/Document/StudioDocument.h"
#include "Apps/studio/Export/ExportChoice.h"
#include "Apps/studio/Export/ExportPanel.h"
#include "Apps/studio/Sound/Player.h"
#include "Apps/studio/Views/LanesView.h"
#include "Apps/studio/Views/MeterView.h"
#include "Apps/studio/Views/PictureLoader.h"
#include "Apps/studio/Views/PictureView.h"
#include "Apps/studio/Views/PixelReadout.h"
#include "Apps/studio/Views/Probes.h"
#include "Apps/studio/Views/ScopePanel.h"
#include "Apps/studio/Window/Actions.h"
#include "Apps/studio/Window/DeviceMenu.h"
#include "Apps/studio/Window/DocumentFlow.h"
#include "Apps/studio/Window/FullScreenPicture.h"
#include "Apps/studio/Window/HeaderBar.h"
#include "Apps/studio/Window/Theme.h"
#include "Apps/studio/Window/ToneEditor.h"
#include "Apps/studio/Window/TransportBar.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QSplitter>
#include <QTimer>
#include <memory>
#include <optional>

namespace studio {

/// The program's window: puts the parts together and passes on what each says to the others.
class StudioWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit StudioWindow(std::shared_ptr<const lineup::Importer> importer);
    ~StudioWindow() override;

    /// Opens a document, as if a person had chosen it.
    void Open(const QString& file) { mFlow.OpenFile(file); }

    [[nodiscard]] StudioDocument& Document() noexcept { return mDocument; }
    [[nodiscard]] Player& Sound() noexcept { return mPlayer; }
    [[nodiscard]] const Actions& Commands() const noexcept { return mActions; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void Arrange();
    void ConnectActions();
    void ConnectTransport();
    void ConnectViews();
    void ShowClip();
    void LoadPicture();
    void ShowPicture(std::shared_ptr<const CardPicture> picture);
    void ShowProbes();
    void ShowScopes();
    void ShowTitle();
    void ShowPosition();
    void ShowSound();
    void Tick();
    void SeekBy(double seconds);
    void SeekTo(std::int64_t sample);
    void EditTone();
    void Export();
    void Dress(Appearance appearance);
    void Restore();
    void Remember() const;
    [[nodiscard]] CheckWindow& Checks();
    [[nodiscard]] bool MayStopExport();

    StudioDocument mDocument;
    Player mPlayer;
    Actions mActions;
    DocumentFlow mFlow;
    ToneEditor mToneEditor;
    PictureLoader mLoader;
    Probes mProbes;
    QTimer mFrames;  // a tick a picture of the window, while something moves
    QElapsedTimer mSinceTick;
    std::optional<ExportChoice> mLastExport;  // of this document
    bool mCloseAfterDialog = false;

    HeaderBar* mHeader;
    QSplitter* mUpper;
    QSplitter* mWhole;
    PictureView* mPictureView;
    PixelReadout* mReadout;
    ScopePanel* mScopes;
    MeterView* mMeters;
    TransportBar* mTransport;
    LanesView* mLanes;
    ExportPanel* mExportPanel;
    FullScreenPicture* mFullScreen;
    DeviceMenu* mDevices;
    CheckWindow* mChecks = nullptr;  // until the first check
};

}  // namespace studio
