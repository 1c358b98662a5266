#include "Apps/studio/Window/StudioWindow.h"

#include <lineup/Idents.h>
#include <lineup/interface/Media/TickTime.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Export/ExportDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
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
#include <cmath>
#include <exception>

namespace studio {

namespace {

constexpr int kFrameMs = 16;
constexpr QSize kFirstSize{1180, 760};
constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kUpperKey = "window/upper";
constexpr const char* kWholeKey = "window/whole";
constexpr const char* kScopeKey = "view/waveformMonitor";
constexpr const char* kOwnNumbersKey = "view/ownNumbers";
constexpr const char* kAppearanceKey = "view/appearance";
constexpr const char* kLoopKey = "transport/loop";
constexpr const char* kExportKey = "export/folder";

QString DroppedFile(const QMimeData& data) {
    return data.urls().size() == 1 && data.urls().constFirst().isLocalFile() ? data.urls().constFirst().toLocalFile()
                                                                             : QString();
}

Act ThemeAct(Appearance appearance) {
    return appearance == Appearance::Dark    ? Act::ThemeDark
           : appearance == Appearance::Light ? Act::ThemeLight
                                             : Act::ThemeSystem;
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
      mScope(new ScopeView(this)),
      mMeters(new MeterView(this)),
      mTransport(new TransportBar(mActions, this)),
      mLanes(new LanesView(this)),
      mExportPanel(new ExportPanel(this)) {
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
    mUpper->addWidget(mScope);
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
    mActions.FillMenus(*menuBar(), *undo, *redo, mFlow.Recent().Menu());
}

void StudioWindow::ConnectActions() {
    const auto on = [this](Act act, auto&& what) { connect(&mActions[act], &QAction::triggered, this, what); };
    on(Act::New, [this] { mFlow.New(); });
    on(Act::Open, [this] { mFlow.Open(); });
    on(Act::Save, [this] { mFlow.Save(); });
    on(Act::SaveAs, [this] { mFlow.SaveAs(); });
    on(Act::Export, [this] { Export(); });
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
    connect(&mActions[Act::Scope], &QAction::toggled, mScope, &QWidget::setVisible);
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
    connect(&mDocument, &StudioDocument::StateChanged, this, &StudioWindow::ShowTitle);
    connect(mLanes, &LanesView::SeekWanted, this, &StudioWindow::SeekTo);
    connect(mTransport, &TransportBar::FrameWanted, this,
            [this](std::int64_t frame) { mPlayer.Seek(mDocument.SampleOfFrame(frame)); });
    connect(&mLoader, &PictureLoader::Loaded, this, [this](const std::shared_ptr<const CardPicture>& picture) {
        mPicture = picture;
        mScope->SetPicture(picture);
        mPictureView->SetPicture(picture);
    });
    connect(&mLoader, &PictureLoader::Failed, this, [this](const QString& problem) {
        mPicture.reset();
        mScope->SetPicture(nullptr);
        mPictureView->SetPicture(nullptr);
        mFlow.Complain(problem);
    });
    connect(mPictureView, &PictureView::PixelPointedAt, this, [this](std::optional<QPoint> pixel) {
        if (pixel && mPicture != nullptr) {
            mReadout->Show(*pixel, mPicture->At(pixel->x(), pixel->y()), mPicture->ShownMatrix());
        } else {
            mReadout->Clear();
        }
    });
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
    const QString folder =
        settings.value(kExportKey, QStandardPaths::writableLocation(QStandardPaths::MoviesLocation)).toString();
    ExportDialog dialog(mDocument, folder + "/" + mDocument.Name() + ".mov", this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const ExportChoice choice = dialog.Choice();
    settings.setValue(kExportKey, QFileInfo(choice.file).absolutePath());
    lineup::ExportSettings exported = MakeExportSettings(mDocument, choice);
    exported.overwrite = true;  // the dialog has asked
    mExportPanel->Start(mDocument.Clip(), exported);
}

void StudioWindow::Dress(Appearance appearance) {
    mActions[ThemeAct(appearance)].setChecked(true);
    QSettings().setValue(kAppearanceKey, static_cast<int>(appearance));
    Theme::Apply(appearance);
}

void StudioWindow::Restore() {
    const QSettings settings;
    Dress(static_cast<Appearance>(std::clamp(settings.value(kAppearanceKey).toInt(), 0, 2)));
    mActions[Act::Loop].setChecked(settings.value(kLoopKey, true).toBool());
    mActions[Act::Scope].setChecked(settings.value(kScopeKey, false).toBool());
    mActions[Act::OwnNumbers].setChecked(settings.value(kOwnNumbersKey, false).toBool());
    mScope->setVisible(mActions[Act::Scope].isChecked());
    if (!restoreGeometry(settings.value(kGeometryKey).toByteArray())) {
        resize(kFirstSize.boundedTo(screen()->availableSize()));
    }
    if (!mUpper->restoreState(settings.value(kUpperKey).toByteArray())) {
        mUpper->setSizes({580, 440, mMeters->sizeHint().width()});
    }
    if (!mWhole->restoreState(settings.value(kWholeKey).toByteArray())) {
        mWhole->setSizes({440, 230});
    }
}

void StudioWindow::Remember() const {
    QSettings settings;
    settings.setValue(kGeometryKey, saveGeometry());
    settings.setValue(kUpperKey, mUpper->saveState());
    settings.setValue(kWholeKey, mWhole->saveState());
    settings.setValue(kLoopKey, mActions[Act::Loop].isChecked());
    settings.setValue(kOwnNumbersKey, mActions[Act::OwnNumbers].isChecked());
    settings.setValue(kScopeKey, mActions[Act::Scope].isChecked());
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

// What was dropped is opened once the drop is over: a question in between would hold up the program it came from.
void StudioWindow::dropEvent(QDropEvent* event) {
    const QString file = DroppedFile(*event->mimeData());
    event->acceptProposedAction();
    QMetaObject::invokeMethod(
        this,
        [this, file] {
            if (mFlow.MayLeave()) {
                mFlow.OpenFile(file);
            }
        },
        Qt::QueuedConnection);
}

}  // namespace studio
