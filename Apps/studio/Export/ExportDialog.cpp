#include "Apps/studio/Export/ExportDialog.h"

#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QVBoxLayout>

namespace studio {

namespace {

constexpr int kWidth = 520;

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString FileFilter() {
    QStringList all;
    QStringList single;
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        const QString pattern = "*." + Text(format.extension);
        all += pattern;
        single += Text(format.description) + " (" + pattern + ")";
    }
    return "Media files (" + all.join(' ') + ");;" + single.join(";;");
}

// Offers `names`, described; the first is what the format prefers. Keeps the choice where it can.
template <class Find>
void Offer(QComboBox& box, std::span<const std::string_view> names, Find find, const QString& none) {
    const QString before = box.currentData().toString();
    box.clear();
    for (const std::string_view name : names) {
        box.addItem(Text(find(name)->description), Text(name));
    }
    box.setEnabled(!names.empty());
    if (names.empty()) {
        box.addItem(none, QString());
    }
    box.setCurrentIndex(std::max(0, box.findData(before)));
}

}  // namespace

ExportDialog::ExportDialog(const StudioDocument& document, const QString& file, QWidget* parent)
    : QDialog(parent),
      mDocument(document),
      mFile(new QLineEdit(file, this)),
      mFormat(new QLabel(this)),
      mVideo(new QComboBox(this)),
      mAudio(new QComboBox(this)),
      mTimecode(new QLineEdit(this)),
      mMonoTracks(new QCheckBox(tr("One &mono track a channel"), this)),
      mProblem(new QLabel(this)) {
    setObjectName("exportDialog");
    setWindowTitle(tr("Export"));
    setMinimumWidth(kWidth);
    mFile->setObjectName("exportFile");
    mVideo->setObjectName("exportVideo");
    mAudio->setObjectName("exportAudio");
    mTimecode->setObjectName("exportTimecode");
    mMonoTracks->setObjectName("exportMonoTracks");
    mProblem->setObjectName("exportProblem");
    mTimecode->setPlaceholderText(tr("HH:MM:SS:FF, or none"));
    mProblem->setWordWrap(true);
    mProblem->setMinimumHeight(2 * fontMetrics().lineSpacing());
    mFormat->setForegroundRole(QPalette::PlaceholderText);

    auto* const browse = new QPushButton(tr("&Browse\u2026"), this);
    auto* const fileRow = new QHBoxLayout;
    fileRow->addWidget(mFile, 1);
    fileRow->addWidget(browse);
    auto* const form = new QFormLayout;
    auto* const fileLabel = new QLabel(tr("&File:"), this);
    fileLabel->setBuddy(mFile);
    form->addRow(fileLabel, fileRow);
    form->addRow(QString(), mFormat);
    form->addRow(tr("&Picture:"), mVideo);
    form->addRow(tr("&Sound:"), mAudio);
    form->addRow(tr("&Time code:"), mTimecode);
    form->addRow(QString(), mMonoTracks);
    auto* const clip =
        new QLabel(PictureWords(mDocument.Values().picture) + "\n" + SoundWords(*mDocument.Clip()) + " \u00B7 " +
                       TimeWords(static_cast<double>(mDocument.LengthSamples()) /
                                 static_cast<double>(mDocument.Clip()->SampleRate())),
                   this);
    form->addRow(tr("Clip:"), clip);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    mExport = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    mExport->setObjectName("exportButton");
    mExport->setDefault(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(mProblem);
    layout->addStretch();
    layout->addWidget(buttons);

    connect(browse, &QPushButton::clicked, this, &ExportDialog::Browse);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::Accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mFile, &QLineEdit::textChanged, this, &ExportDialog::FileChanged);
    connect(mTimecode, &QLineEdit::textChanged, this, &ExportDialog::Check);
    connect(mVideo, &QComboBox::currentIndexChanged, this, &ExportDialog::Check);
    connect(mAudio, &QComboBox::currentIndexChanged, this, &ExportDialog::Check);
    connect(mMonoTracks, &QCheckBox::toggled, this, &ExportDialog::Check);
    FileChanged();
    mFile->setFocus();
    mFile->selectAll();
}

ExportChoice ExportDialog::Choice() const {
    return {.file = mFile->text(),
            .videoCodec = mVideo->currentData().toString(),
            .audioCodec = mAudio->currentData().toString(),
            .timecode = mTimecode->isEnabled() ? mTimecode->text() : QString(),
            .monoTracks = mMonoTracks->isEnabled() && mMonoTracks->isChecked()};
}

void ExportDialog::Browse() {
    const QString file = QFileDialog::getSaveFileName(this, tr("Export to"), mFile->text(), FileFilter(), nullptr,
                                                      QFileDialog::DontConfirmOverwrite);
    if (!file.isEmpty()) {
        mFile->setText(file);
    }
}

void ExportDialog::FileChanged() {
    const lineup::FileFormat* const format = FormatOf(mFile->text());
    if (format != nullptr && format != mShownFormat) {
        const QSignalBlocker quietVideo(mVideo);
        const QSignalBlocker quietAudio(mAudio);
        Offer(*mVideo, format->videoCodecs, lineup::FindVideoCodec, tr("None"));
        Offer(*mAudio, format->audioCodecs, lineup::FindAudioCodec, tr("None"));
        mTimecode->setEnabled(format->holdsTimecode);
        mMonoTracks->setEnabled(format->offersMonoTracks && !format->onlyMonoTracks);
        mFormat->setText(Text(format->description));
        mShownFormat = format;
    }
    Check();
}

void ExportDialog::Check() {
    const QString problem = ExportProblem(mDocument, Choice());
    mProblem->setText(problem);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, Theme::Current().warning);
    mProblem->setPalette(palette);
    mExport->setEnabled(problem.isEmpty());
}

void ExportDialog::Accept() {
    if (!mExport->isEnabled()) {
        return;
    }
    const QFileInfo file(mFile->text());
    if (file.exists()) {
        QMessageBox box(QMessageBox::Question, tr("Export"),
                        tr("%1 is there already. Replace it?").arg(file.fileName()), QMessageBox::Cancel, this);
        QPushButton* const replace = box.addButton(tr("&Replace"), QMessageBox::AcceptRole);
        box.exec();
        if (box.clickedButton() != replace) {
            return;
        }
    }
    accept();
}

}  // namespace studio
