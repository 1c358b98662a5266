#include "Apps/studio/Window/StudioWindow.h"

#include <lineup/Idents.h>
#include <lineup/interface/Media/TickTime.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Export/ExportDialog.h"
#include "Apps/studio/Window/DroppedFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <utility>

namespace studio {

namespace {

constexpr int kFrameMs = 16;
constexpr const char* kExportKey = "export/folder";

// Where exports went last or movies are kept, as far as there is such a folder.
QString ExportFolder() {
    for (const QString& folder :
         {QSettings().value(kExportKey).toString(), QStandardPaths::writableLocation(QStandardPaths::MoviesLocation)}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) {
            return folder;
        }
    }
    return QDir::homePath();
}

bool IsDocument(const QString& file) {
    return file.endsWith(QString::fromUtf8(lineup::kDocumentExtension.data(), lineup::kDocumentExtension.size()),
                         Qt::CaseInsensitive);
}

}  // namespace

StudioWindow::StudioWindow(std::shared_ptr<const lineup::Importer> importer)
    : mDocument(std::move(importer)),
      mFlow(mDocument, *this),
      mToneEditor(mDocument, *this),
      mHeader(new HeaderBar(mActions, this)),
      mUpper(new QSplitter(Qt::Horizontal, this)),
      mWhole(new QSplitter(Qt::Vertical, this)),
      mPictureView(new PictureView(this)),
      mReadout(new PixelReadout(this)),
      mScopes(new ScopePanel(this)),
      mMeters(new MeterView(this)),
      mTransport(new TransportBar(mActions, this)),
      mLanes(new LanesView(this)),
      mExportPanel(new ExportPanel(this)),
      mFullScreen(new FullScreenPicture(this)),
      mDevices(new DeviceMenu(mPlayer, this)) {
    setAcceptDrops(true);
    Arrange();
    ConnectActions();
    ConnectTransport();
    ConnectViews();
    Restore();
    ShowClip();
    ShowTitle();
}

// What runs in threads of its own ends before what it looks at.
StudioWindow::~StudioWindow() {
    mFrames.stop();
    mPlayer.Pause();
    mExportPanel->Abandon();
}

void StudioWindow::Arrange() {
    auto* const picture = new QWidget(this);
    auto* const pictureLayout = new QVBoxLayout(picture);
    pictureLayout->setContentsMargins(0, 0, 0, 0);
    pictureLayout->setSpacing(0);
    pictureLayout->addWidget(mPictureView, 1);
    pictureLayout->addWidget(mReadout);
    mUpper->addWidget(picture);
    mUpper->addWidget(mScopes);
    mUpper->addWidget(mMeters);
    mUpper->setStretchFactor(0, 3);
    mUpper->setStretchFactor(1, 2);
    mUpper->setStretchFactor(2, 0);

    auto* const lower = new QWidget(this);
    auto* const lowerLayout = new QVBoxLayout(lower);
    lowerLayout->setContentsMargins(0, 0, 0, 0);
    lowerLayout->setSpacing(0);
    lowerLayout->addWidget(mTransport);
    lowerLayout->addWidget(mLanes, 1);
    mWhole->addWidget(mUpper);
    mWhole->addWidget(lower);
    mWhole->setStretchFactor(0, 3);
    mWhole->setStretchFactor(1, 1);
    for (QSplitter* const splitter : {mUpper, mWhole}) {
        splitter->setChildrenCollapsible(false);
    }

    auto* const centre = new QWidget(this);
    auto* const layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mHeader);
    layout->addWidget(mWhole, 1);
    layout->addWidget(mExportPanel);
    setCentralWidget(centre);

    QAction* const undo = mDocument.Undo().createUndoAction(this, tr("&Undo"));
    QAction* const redo = mDocument.Undo().createRedoAction(this, tr("&Redo"));
    undo->setShortcut(QKeySequence("Ctrl+Z"));
    redo->setShortcuts({QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")});
    mActions.FillMenus(*menuBar(), *undo, *redo, mFlow.Recent().Menu(), mDevices->Menu());
}

void StudioWindow::ConnectActions() {
    const auto on = [this](Act act, auto&& what) { connect(&mActions[act], &QAction::triggered, this, what); };
    on(Act::New, [this] { mFlow.New(); });
    on(Act::Open, [this] { mFlow.Open(); });
    on(Act::Save, [this] { mFlow.Save(); });
    on(Act::SaveAs, [this] { mFlow.SaveAs(); });
    on(Act::Export, [this] { Export(); });
    on(Act::Check, [this] { Checks().Ask(); });
    on(Act::Quit, [this] { close(); });
    on(Act::ClipSettings, [this] { mFlow.EditClip(); });
    on(Act::EditTone, [this] { EditTone(); });
    on(Act::ZoomIn, [this] { mLanes->ZoomIn(); });
    on(Act::ZoomOut, [this] { mLanes->ZoomOut(); });
    on(Act::ZoomAll, [this] { mLanes->ShowAll(); });
    on(Act::PageBack, [this] { mLanes->ScrollPages(-1); });
    on(Act::PageForward, [this] { mLanes->ScrollPages(1); });
    on(Act::ThemeSystem, [this] { Dress(Appearance::System); });
    on(Act::ThemeLight, [this] { Dress(Appearance::Light); });
    on(Act::ThemeDark, [this] { Dress(Appearance::Dark); });
    on(Act::Shortcuts, [this] { QMessageBox::information(this, tr("Keyboard Shortcuts"), mActions.ShortcutTable()); });
    on(Act::About, [this] {
        QMessageBox::about(this, tr("About Lineup Studio"),
                           tr("<b>Lineup Studio %1</b><br>Colour bars, line-up tone and channel idents, exact to the "
                              "bit.")
                               .arg(QApplication::applicationVersion()));
    });
    for (const Act act : {Act::Scope, Act::Parade, Act::Vectorscope}) {
        connect(&mActions[act], &QAction::toggled, this, &StudioWindow::ShowScopes);
    }
    connect(&mActions[Act::FullScreen], &QAction::toggled, this, [this](bool wanted) {
        if (wanted) {
            mFullScreen->ShowBeside(*this);
        } else {
            mFullScreen->close();
        }
    });
    connect(mFullScreen, &FullScreenPicture::Closed, this, [this] { mActions[Act::FullScreen].setChecked(false); });
    on(Act::ClearProbes, [this] { mProbes.Clear(); });
    connect(&mActions[Act::OwnNumbers], &QAction::toggled, this, &StudioWindow::LoadPicture);
}

void StudioWindow::ConnectTransport() {
    const auto on = [this](Act act, auto&& what) { connect(&mActions[act], &QAction::triggered, this, what); };
    on(Act::Play, [this] {
        mPlayer.Toggle();
        if (!mPlayer.IsPlaying()) {
            SeekTo(mPlayer.Position());
        }
    });
    on(Act::ToStart, [this] { mPlayer.Seek(0); });
    on(Act::ToEnd, [this] { mPlayer.Seek(mPlayer.Length()); });
    on(Act::FrameBack, [this] {
        const std::int64_t frame = mDocument.FrameOf(mPlayer.Position());
        const bool isBetween = mPlayer.Position() > mDocument.SampleOfFrame(frame);
        mPlayer.Seek(mDocument.SampleOfFrame(isBetween ? frame : frame - 1));
    });
    on(Act::FrameForward, [this] { mPlayer.Seek(mDocument.SampleOfFrame(mDocument.FrameOf(mPlayer.Position()) + 1)); });
    on(Act::SecondBack, [this] { SeekBy(-1); });
    on(Act::SecondForward, [this] { SeekBy(1); });
    connect(&mActions[Act::Loop], &QAction::toggled, this, [this](bool loop) { mPlayer.SetLoop(loop); });
    connect(&mActions[Act::Mute], &QAction::toggled, &mPlayer, &Player::SetMuted);
    connect(mTransport, &TransportBar::VolumeWanted, &mPlayer, &Player::SetVolume);
    connect(&mPlayer, &Player::StateChanged, this, [this] {
        mTransport->ShowPlaying(mPlayer.IsPlaying());
        mSinceTick.start();
        mFrames.start(kFrameMs);
    });
    connect(&mPlayer, &Player::PositionJumped, this, &StudioWindow::ShowPosition);
    connect(&mPlayer, &Player::SoundChanged, this, &StudioWindow::ShowSound);
    mFrames.setTimerType(Qt::PreciseTimer);
    connect(&mFrames, &QTimer::timeout, this, &StudioWindow::Tick);
}

void StudioWindow::ConnectViews() {
    connect(&mDocument, &StudioDocument::ClipChanged, this, &StudioWindow::ShowClip);
    connect(mExportPanel, &ExportPanel::AgainWanted, this, &StudioWindow::Export);
    connect(&mDocument, &StudioDocument::StateChanged, this, &StudioWindow::ShowTitle);
    connect(mLanes, &LanesView::SeekWanted, this, &StudioWindow::SeekTo);
    connect(mTransport, &TransportBar::FrameWanted, this,
            [this](std::int64_t frame) { mPlayer.Seek(mDocument.SampleOfFrame(frame)); });
    connect(&mLoader, &PictureLoader::Loaded, this, &StudioWindow::ShowPicture);
    connect(&mLoader, &PictureLoader::Failed, this, [this](const QString& problem) {
        ShowPicture(nullptr);
        mFlow.Complain(problem);
    });
    connect(mPictureView, &PictureView::PixelPointedAt, mReadout, &PixelReadout::PointAt);
    connect(mPictureView, &PictureView::PinWanted, &mProbes, &Probes::Toggle);
    connect(&mProbes, &Probes::Changed, this, &StudioWindow::ShowProbes);
}

// Nobody holds on to a pixel that the new picture does not have.
void StudioWindow::ShowPicture(std::shared_ptr<const CardPicture> picture) {
    mProbes.KeepWithin(picture == nullptr ? QSize() : QSize(picture->Width(), picture->Height()));
    mPictureView->SetPicture(picture);
    mFullScreen->SetPicture(picture);
    mScopes->SetPicture(picture);
    mReadout->SetPicture(std::move(picture));
}

void StudioWindow::ShowProbes() {
    const auto& probes = mProbes.Pixels();
    mPictureView->SetProbes(probes);
    mReadout->SetProbes(probes);
    mScopes->SetProbes(probes);
}

void StudioWindow::ShowScopes() {
    mScopes->ShowScopes(mActions[Act::Scope].isChecked(), mActions[Act::Parade].isChecked(),
                        mActions[Act::Vectorscope].isChecked());
}

void StudioWindow::ShowClip() {
    const auto& clip = mDocument.Clip();
    mHeader->Show(SignalWords(*clip), SoundWords(*clip) + " \u00B7 " + PictureWords(mDocument.Values().picture));
    mMeters->SetChannels(ShownChannels(*clip));
    mLanes->SetClip(clip, mDocument.LengthSamples());
    const auto seconds = static_cast<double>(mDocument.LengthSamples()) / static_cast<double>(clip->SampleRate());
    const lineup::Ident* const ident = lineup::FindIdent(mDocument.Values().settings);
    const double cycles = ident == nullptr ? 0
                                           : seconds * static_cast<double>(zelmediatypes::kTicksPerSecond) /
                                                 static_cast<double>(ident->cycleTicks);
    mTransport->SetLength(seconds, mDocument.Values().lengthFrames, mDocument.Values().picture.frameRate, cycles);
    mPlayer.SetClip(clip, mDocument.LengthSamples());
    if (!mPlayer.IsPlaying()) {
        SeekTo(mPlayer.Position());
    }
    LoadPicture();
}

void StudioWindow::LoadPicture() {
    const lineup::PictureFormat& picture = mDocument.Values().picture;
    const bool own = mActions[Act::OwnNumbers].isChecked();
    mLoader.Load(mDocument.Clip(), picture, own ? Matrix::Bt601 : MatrixOfExport(picture.height));
}

void StudioWindow::ShowTitle() {
    setWindowTitle(tr("%1[*] \u2014 Lineup Studio").arg(mDocument.Name()));
    if (windowFilePath() != mDocument.File()) {
        mLastExport.reset();
    }
    setWindowFilePath(mDocument.File());
    setWindowModified(mDocument.IsChanged());
}

void StudioWindow::ShowPosition() {
    const auto rateHz = static_cast<double>(mDocument.Clip()->SampleRate());
    mLanes->SetPlayhead(mPlayer.Position(), mPlayer.IsPlaying());
    mTransport->ShowTime(static_cast<double>(mPlayer.Position()) / rateHz, mDocument.FrameOf(mPlayer.Position()));
}

void StudioWindow::ShowSound() {
    mTransport->ShowSound(mPlayer.SoundText(), mPlayer.SoundIsChanged());
}

// Goes on after the end until the meters have come to rest.
void StudioWindow::Tick() {
    mPlayer.Tick();
    ClipPlayback* const playback = mPlayer.Playback();
    mMeters->Advance(playback == nullptr ? nullptr : &playback->Peaks(),
                     static_cast<double>(mSinceTick.restart()) / 1000);
    ShowPosition();
    if (playback == nullptr && mMeters->IsAtRest()) {
        mFrames.stop();
    }
}

void StudioWindow::SeekBy(double seconds) {
    const auto rateHz = static_cast<double>(mDocument.Clip()->SampleRate());
    SeekTo(mPlayer.Position() + std::llround(seconds * rateHz));
}

// The playhead stops on frames.
void StudioWindow::SeekTo(std::int64_t sample) {
    mPlayer.Seek(mDocument.OnFrame(sample));
}

void StudioWindow::EditTone() {
    try {
        mToneEditor.Edit();
    } catch (const std::exception& error) {
        mFlow.Complain(ProblemWords(error));
    }
    if (mCloseAfterDialog) {
        mCloseAfterDialog = false;
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    }
}

void StudioWindow::Export() {
    if (mExportPanel->IsRunning()) {
        mFlow.Complain(tr("An export is going on. Wait for it to end, or cancel it first."));
        return;
    }
    QSettings settings;
    const QString folder = ExportFolder();
    // What was chosen last is offered again, to be put right when it failed.
    const ExportChoice offered = mLastExport.value_or(ExportChoice{.file = folder + "/" + mDocument.Name() + ".mov"});
    ExportDialog dialog(mDocument, offered, folder, this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const ExportChoice choice = dialog.Choice();
    mLastExport = choice;
    settings.setValue(kExportKey, QFileInfo(choice.file).absolutePath());
    lineup::ExportSettings exported = MakeExportSettings(mDocument, choice);
    exported.overwrite = true;  // the dialog has asked
    mExportPanel->Start(mDocument.Clip(), exported);
}

CheckWindow& StudioWindow::Checks() {
    if (mChecks == nullptr) {
        mChecks = new CheckWindow(mDocument.Importer(), this);
        connect(mChecks, &CheckWindow::PlayWanted, this, [this] {  // one at a time, and heard the same way
            mPlayer.Pause();
            Player& sound = mChecks->Transport().Sound();
            sound.UseDevice(mPlayer.WantedDevice());
            sound.SetVolume(mPlayer.Volume());
            sound.SetMuted(mPlayer.IsMuted());
        });
        connect(&mPlayer, &Player::StateChanged, mChecks, [this] {
            if (mPlayer.IsPlaying()) {
                mChecks->Transport().Pause();
            }
        });
    }
    return *mChecks;
}

bool StudioWindow::MayStopExport() {
    if (!mExportPanel->IsRunning()) {
        return true;
    }
    QMessageBox box(QMessageBox::Question, tr("Lineup Studio"), tr("An export is going on. Stop it and close?"),
                    QMessageBox::Cancel, this);
    box.setObjectName("stopExport");
    const QPushButton* const stop = box.addButton(tr("&Stop and Close"), QMessageBox::AcceptRole);
    box.exec();
    return box.clickedButton() == stop || !mExportPanel->IsRunning();
}

// The plug-in's dialog runs an event loop inside ours: it has to return before the window may go.
void StudioWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (mToneEditor.IsOpen()) {
        mCloseAfterDialog = true;
        mToneEditor.Close();
        return;
    }
    if (mFlow.MayLeave() && MayStopExport()) {
        Remember();
        mFullScreen->close();
        if (mChecks != nullptr) {
            mChecks->close();
        }
        mPlayer.Pause();
        mExportPanel->Abandon();
        event->accept();
    }
}

// Outside of dialogs buttons leave Enter alone.
void StudioWindow::keyPressEvent(QKeyEvent* event) {
    auto* const button = qobject_cast<QAbstractButton*>(focusWidget());
    if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

void StudioWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DroppedFile(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

// A document is opened and a recording is checked once the drop is over: a question in between would hold up the
// program it came from.
void StudioWindow::dropEvent(QDropEvent* event) {
    const QString file = DroppedFile(*event->mimeData());
    event->acceptProposedAction();
    QMetaObject::invokeMethod(
        this,
        [this, file] {
            if (!IsDocument(file)) {
                Checks().Check(file);
            } else if (mFlow.MayLeave()) {
                mFlow.OpenFile(file);
            }
        },
        Qt::QueuedConnection);
}

}  // namespace studio
