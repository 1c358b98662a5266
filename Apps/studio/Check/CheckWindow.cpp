#include "Apps/studio/Check/CheckWindow.h"

#include "Apps/studio/Check/CheckWords.h"
#include "Apps/studio/Check/RecordingFeed.h"
#include "Apps/studio/Check/RecordingLanes.h"
#include "Apps/studio/Sound/PeakBank.h"
#include "Apps/studio/Window/DroppedFile.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QSettings>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace studio {

namespace {

constexpr int kProgressMs = 100;
constexpr QSize kCheckSize{1240, 900};
constexpr const char* kGeometryKey = "check/geometry";
constexpr const char* kFolderKey = "check/folder";

std::size_t PlayedChannel(const lineup::CheckReport& report, std::size_t input) {
    return RecordingFeed::ChannelOf(input, static_cast<int>(report.sound->lanes.found.size()));
}

}  // namespace

CheckWindow::CheckWindow(std::shared_ptr<const lineup::Importer> importer, QWidget* window)
    : QWidget(window, Qt::Window),
      mImporter(std::move(importer)),
      mAsk(Command("checkAnother", tr("&Check Recording\u2026"), "Ctrl+K", false)),
      mPlay(Command("checkPlay", tr("&Play"), "Space", false)),
      mWaveform(Command("checkWaveform", tr("&Waveform Monitor"), "W", true)),
      mVectorscope(Command("checkVectorscope", tr("&Vectorscope"), "V", true)),
      mParade(Command("checkParade", tr("&RGB Parade"), "R", true)),
      mHeader(new CheckHeader({mPlay, mWaveform, mVectorscope, mParade, mAsk}, this)),
      mPictures(new CheckPictures(mImporter, this)),
      mMeters(new MeterView(this)),
      mLanes(new LanesView(this)),
      mFaults(new FaultList(this)),
      mPatches(new PatchTable(this)),
      mUpper(new QSplitter(Qt::Horizontal, this)),
      mLower(new QSplitter(Qt::Horizontal, this)),
      mWhole(new QSplitter(Qt::Vertical, this)),
      mFoot(new CheckFoot(this)) {
    setObjectName("checkWindow");
    setWindowTitle(tr("Check Recording"));
    setAcceptDrops(true);
    Arrange();
    const QSettings settings;
    if (!restoreGeometry(settings.value(kGeometryKey).toByteArray())) {
        resize(kCheckSize);
    }
    mWaveform->setChecked(true);
    mVectorscope->setChecked(true);
    ShowScopes();
    connect(mAsk, &QAction::triggered, this, &CheckWindow::Ask);
    ConnectTransport();
    const auto onKey = [this](const char* keys, auto act) {
        auto* const action = new QAction(this);
        action->setShortcut(QKeySequence(keys));
        addAction(action);
        connect(action, &QAction::triggered, this, act);
    };
    onKey("Ctrl++", [this] { mLanes->ZoomIn(); });
    onKey("Ctrl+=", [this] { mLanes->ZoomIn(); });
    onKey("Ctrl+-", [this] { mLanes->ZoomOut(); });
    onKey("Ctrl+0", [this] { mLanes->ShowAll(); });
    onKey("Ctrl+W", [this] { close(); });
    for (const QAction* const scope : {mWaveform, mVectorscope, mParade}) {
        connect(scope, &QAction::toggled, this, &CheckWindow::ShowScopes);
    }
    connect(mLanes, &LanesView::SeekWanted, this,
            [this](std::int64_t sample) { GoTo(static_cast<double>(sample) / SoundRate(*mReport)); });
    connect(mFaults, &FaultList::Chosen, this, &CheckWindow::ShowFault);
    connect(mPictures, &CheckPictures::Failed, mFoot, &CheckFoot::ShowProblem);
    connect(mFoot, &CheckFoot::CancelWanted, this, [this] {
        if (mJob != nullptr) {
            mJob->Cancel();
        }
    });
    connect(&mTimer, &QTimer::timeout, this, [this] { mFoot->ShowShare(mJob->Share()); });
}

void CheckWindow::ConnectTransport() {
    mPlay->setEnabled(false);
    connect(mPlay, &QAction::triggered, this, &CheckWindow::Play);
    connect(&mTransport, &CheckTransport::StateChanged, this, [this](bool isPlaying) {
        mPlay->setText(isPlaying ? tr("&Pause") : tr("&Play"));
        if (!isPlaying) {
            GoTo(mPlace);  // the picture of that very place
        }
    });
    connect(&mTransport, &CheckTransport::Moved, this, [this](double seconds, PeakBank* peaks, double since) {
        ShowPlace(seconds);
        mMeters->Advance(peaks, since);
    });
    connect(&mTransport, &CheckTransport::Shown, mPictures, &CheckPictures::Show);
}

void CheckWindow::Play() {
    if (!mTransport.IsPlaying()) {
        Q_EMIT PlayWanted();
    }
    mTransport.Toggle();
}

CheckWindow::~CheckWindow() {
    mTimer.stop();
}

QAction* CheckWindow::Command(const char* name, const QString& text, const char* keys, bool isSwitch) {
    auto* const action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(QKeySequence(keys));
    action->setCheckable(isSwitch);
    action->setToolTip(QString(text).remove('&') + " (" + action->shortcut().toString(QKeySequence::NativeText) + ")");
    addAction(action);
    return action;
}

void CheckWindow::Arrange() {
    mLanes->setObjectName("checkLanes");
    mLanes->setAccessibleName(tr("Sound of the recording"));
    mLanes->setAccessibleDescription(
        tr("The level of each input over time, and the outline of what is expected. Click to go to a time."));
    mMeters->setObjectName("checkMeters");
    mMeters->setToolTip(tr("Peaks of the recording at the playhead, in dBFS"));
    mUpper->addWidget(mPictures);
    mUpper->addWidget(mMeters);
    mUpper->setStretchFactor(0, 1);
    mUpper->setStretchFactor(1, 0);
    mWhole->addWidget(mUpper);
    mWhole->addWidget(mLanes);
    mLower->addWidget(mFaults);
    mLower->addWidget(mPatches);
    mLower->setStretchFactor(0, 1);
    mLower->setStretchFactor(1, 0);
    mWhole->addWidget(mLower);
    for (const int part : {0, 1, 2}) {
        mWhole->setStretchFactor(part, part == 0 ? 1 : 0);
    }
    for (QSplitter* const splitter : {mUpper, mLower, mWhole}) {
        splitter->setChildrenCollapsible(false);
    }
    for (QWidget* const part : std::initializer_list<QWidget*>{mUpper, mPictures, mMeters, mLanes}) {
        part->hide();
    }
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mHeader);
    layout->addWidget(mWhole, 1);
    layout->addWidget(mFoot);
}

void CheckWindow::Ask() {
    QSettings settings;
    const QString usual = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const QString file = QFileDialog::getOpenFileName(isVisible() ? this : parentWidget(), tr("Check Recording"),
                                                      settings.value(kFolderKey, usual).toString());
    if (!file.isEmpty()) {
        settings.setValue(kFolderKey, QFileInfo(file).absolutePath());
        Check(file);
    }
}

void CheckWindow::Check(const QString& file) {
    show();
    raise();
    activateWindow();
    if (IsRunning()) {
        mNext = file;
        mJob->Cancel();
    } else {
        Start(file);
    }
}

void CheckWindow::Start(const QString& file) {
    const QString name = QFileInfo(file).fileName();
    mJob = std::make_unique<CheckJob>(file, mImporter);
    connect(mJob.get(), &CheckJob::Finished, this,
            [this, file](const std::shared_ptr<const lineup::CheckReport>& report) {
                TakeUp(file, report);
                End();
            });
    connect(mJob.get(), &CheckJob::Cancelled, this, [this, name] {
        mFoot->ShowEnded(tr("Cancelled: %1 was not checked").arg(name));
        End();
    });
    connect(mJob.get(), &CheckJob::Failed, this, [this](const QString& problem) {
        mFoot->ShowProblem(problem);
        End();
    });
    mFoot->ShowRunning(tr("Checking %1").arg(name));
    mTimer.start(kProgressMs);
    mJob->Start();
}

// The job is the one that is telling of its end: it goes once it has been heard.
void CheckWindow::End() {
    mTimer.stop();
    CheckJob* const job = mJob.release();
    job->setParent(this);
    job->deleteLater();
    if (!mNext.isEmpty()) {
        Start(std::exchange(mNext, {}));
    }
}

void CheckWindow::TakeUp(const QString& file, std::shared_ptr<const lineup::CheckReport> report) {
    if (const QString problem = UnreadableWords(*report); !problem.isEmpty()) {
        mFoot->ShowProblem(QFileInfo(file).fileName() + ": " + problem);
        return;
    }
    const bool isFirst = mReport == nullptr;
    mReport = std::move(report);
    mFoot->ShowEnded({});
    setWindowTitle(tr("%1 \u2014 Check Recording").arg(QFileInfo(file).fileName()));
    mHeader->Show(file, *mReport);
    mFaults->Show(*mReport);
    mPatches->Show(*mReport);
    std::vector<ShownChannel> inputs;
    for (std::size_t input = 0; mReport->sound && input < mReport->sound->lanes.found.size(); ++input) {
        inputs.push_back({PlayedChannel(*mReport, input), ChannelName(*mReport, input)});
    }
    mPictures->SetRecording(file, *mReport);
    mTransport.SetRecording(file, *mReport);
    mPlay->setEnabled(mTransport.CanPlay());
    mMeters->SetChannels(inputs);
    const bool hasLanes = SoundSamples(*mReport) > 0;
    mMeters->setVisible(hasLanes);
    mLanes->setVisible(hasLanes);
    mUpper->setVisible(hasLanes || mReport->picture);
    const int patches = std::min(mPatches->sizeHint().width(), width() / 2);
    mLower->setSizes({width() - patches, patches});
    if (isFirst) {
        mWhole->setSizes({height() * 6 / 10, height() * 2 / 10, height() * 2 / 10});
    }
    ShowLanes({});
    GoTo(mReport->sound ? mReport->sound->startsAt.value_or(0) : 0);
}

void CheckWindow::ShowLanes(const std::vector<int>& inputs) {
    if (SoundSamples(*mReport) > 0) {
        const auto draw = [report = mReport, inputs](const LaneSpan& span, const LaneView& view) {
            return DrawRecording(*report, inputs, span, view);
        };
        mLanes->SetDrawing(draw, static_cast<int>(mReport->sound->lanes.found.size()), SoundSamples(*mReport));
    }
}

// A fault of the whole recording has no place: what is shown stays.
void CheckWindow::ShowFault(std::size_t fault) {
    const lineup::CheckFault& chosen = mReport->faults[fault];
    ShowLanes(chosen.inputs);
    if (chosen.at) {
        GoTo(*chosen.at);
    }
}

void CheckWindow::GoTo(double seconds) {
    ShowPlace(seconds);
    mTransport.GoTo(seconds);
    if (mTransport.IsPlaying()) {
        return;  // what is heard and seen there comes by itself
    }
    mPictures->GoTo(seconds);
    const std::vector<float> levels = LevelsAt(*mReport, seconds);
    PeakBank peaks(levels.size());
    for (std::size_t input = 0; input < levels.size(); ++input) {
        peaks.Add(PlayedChannel(*mReport, input), std::array{levels[input]});
    }
    mMeters->Show(peaks);
}

void CheckWindow::ShowPlace(double seconds) {
    mPlace = seconds;
    mLanes->SetPlayhead(std::llround(seconds * SoundRate(*mReport)), true);
}

void CheckWindow::ShowScopes() {
    mPictures->ShowScopes(mWaveform->isChecked(), mParade->isChecked(), mVectorscope->isChecked());
}

// Nobody waits for what it would find.
void CheckWindow::closeEvent(QCloseEvent* event) {
    mNext.clear();
    mTransport.Pause();
    if (mJob != nullptr) {
        mJob->Cancel();
    }
    QSettings().setValue(kGeometryKey, saveGeometry());
    QWidget::closeEvent(event);
}

// Space plays, so Enter presses the button that has the focus.
void CheckWindow::keyPressEvent(QKeyEvent* event) {
    auto* const button = qobject_cast<QAbstractButton*>(focusWidget());
    if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void CheckWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DroppedFile(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void CheckWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    Check(DroppedFile(*event->mimeData()));
}

}  // namespace studio
