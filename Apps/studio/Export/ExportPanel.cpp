#include "Apps/studio/Export/ExportPanel.h"

#include "Apps/studio/Export/TimeLeft.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLocale>
#include <QUrl>

namespace studio {

namespace {

constexpr int kRefreshMs = 100;
constexpr int kBarSteps = 1000;

QString FileOf(const lineup::ExportSettings& settings) {
    return QFile::decodeName(settings.target.c_str());
}

}  // namespace

ExportPanel::ExportPanel(QWidget* parent)
    : QWidget(parent),
      mText(new QLabel(this)),
      mProblem(new ProblemLabel("exportFailure", this)),
      mBar(new QProgressBar(this)),
      mLeft(new QLabel(this)),
      mCancel(new QPushButton(tr("&Cancel Export"), this)),
      mReveal(new QPushButton(tr("&Show in Folder"), this)),
      mAgain(new QPushButton(tr("&Try Again\u2026"), this)),
      mClose(new QPushButton(tr("&Dismiss"), this)) {
    setObjectName("exportPanel");
    setAccessibleName(tr("Export"));
    mText->setObjectName("exportText");
    mText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mBar->setObjectName("exportBar");
    mBar->setAccessibleName(tr("Export progress"));
    mBar->setRange(0, kBarSteps);
    mCancel->setObjectName("exportCancel");
    mReveal->setObjectName("exportReveal");
    mAgain->setObjectName("exportAgain");
    mClose->setObjectName("exportDismiss");
    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(mText, 1);
    layout->addWidget(mProblem, 1);
    layout->addWidget(mBar, 1);
    layout->addWidget(mLeft);
    layout->addWidget(mCancel);
    layout->addWidget(mReveal);
    layout->addWidget(mAgain);
    layout->addWidget(mClose);
    connect(&mTimer, &QTimer::timeout, this, &ExportPanel::ShowProgress);
    connect(mCancel, &QPushButton::clicked, this, [this] {
        mCancel->setEnabled(false);
        mJob->Cancel();
    });
    connect(mReveal, &QPushButton::clicked, this, &ExportPanel::Reveal);
    connect(mAgain, &QPushButton::clicked, this, &ExportPanel::AgainWanted);
    connect(mClose, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

ExportPanel::~ExportPanel() = default;

void ExportPanel::Start(std::shared_ptr<const lineup::Clip> clip, const lineup::ExportSettings& settings) {
    mJob = std::make_unique<ExportJob>(std::move(clip), settings);
    const QString name = QFileInfo(FileOf(settings)).fileName();
    connect(mJob.get(), &ExportJob::Finished, this, [this, name](quint64 bytes) {
        End(tr("Wrote %1, %2").arg(name, QLocale().formattedDataSize(static_cast<qint64>(bytes))), true, {});
    });
    connect(mJob.get(), &ExportJob::Cancelled, this,
            [this, name] { End(tr("Cancelled: %1 was not written").arg(name), false, {}); });
    connect(mJob.get(), &ExportJob::Failed, this, [this](const QString& problem) { End(problem, false, problem); });
    mText->setText(tr("Exporting %1").arg(name));
    mBar->setValue(0);
    mLeft->clear();
    mCancel->setEnabled(true);
    for (QWidget* const widget : std::initializer_list<QWidget*>{mBar, mLeft, mCancel}) {
        widget->show();
    }
    for (QWidget* const widget : std::initializer_list<QWidget*>{mProblem, mReveal, mAgain, mClose}) {
        widget->hide();
    }
    mText->show();
    show();
    mIsRunning = true;
    mElapsed.start();
    mTimer.start(kRefreshMs);
    mJob->Start();
}

void ExportPanel::Abandon() {
    mTimer.stop();
    mIsRunning = false;
    mJob.reset();
}

void ExportPanel::ShowProgress() {
    const double share = mJob->Share();
    mBar->setValue(static_cast<int>(share * kBarSteps));
    mLeft->setText(TimeLeftWords(share, static_cast<double>(mElapsed.elapsed()) / 1000));
}

void ExportPanel::End(const QString& text, bool hasFile, const QString& problem) {
    mTimer.stop();
    mIsRunning = false;
    mText->setText(text);
    mText->setVisible(problem.isEmpty());
    mProblem->Show(problem);
    mProblem->setVisible(!problem.isEmpty());
    mAgain->setVisible(!problem.isEmpty());
    for (QWidget* const widget : std::initializer_list<QWidget*>{mBar, mLeft, mCancel}) {
        widget->hide();
    }
    mReveal->setVisible(hasFile);
    mClose->show();
    Q_EMIT Ended(problem);
}

// Every desktop opens a folder; not every one selects a file in it.
void ExportPanel::Reveal() const {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(FileOf(mJob->Settings())).absolutePath()));
}

}  // namespace studio
