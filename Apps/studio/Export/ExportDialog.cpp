#include "Apps/studio/Export/ExportDialog.h"

#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Document/ScanWords.h"
#include "Apps/studio/Export/ExportPresets.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

namespace studio {

namespace {

constexpr int kWidth = 520;

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// What the table of formats says of an entry, in the language in use.
QString Described(std::string_view description) {
    QString words = QCoreApplication::translate("Format", std::string(description).c_str());
    words[0] = words[0].toUpper();
    return words;
}

QString FileFilter() {
    QStringList all;
    QStringList single;
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        const QString pattern = "*." + Text(format.extension);
        all += pattern;
        single += Described(format.description) + " (" + pattern + ")";
    }
    return QCoreApplication::translate("ExportDialog", "Media files") + " (" + all.join(' ') + ");;" +
           single.join(";;");
}

// Offers `names`, described; the first is what the format prefers. Keeps the choice where it can.
template <class Find>
void Offer(QComboBox& box, std::span<const std::string_view> names, Find find, const QString& none) {
    const QString before = box.currentData().toString();
    box.clear();
    for (const std::string_view name : names) {
        box.addItem(Described(find(name)->description), Text(name));
    }
    box.setEnabled(!names.empty());
    if (names.empty()) {
        box.addItem(none, QString());
    }
    box.setCurrentIndex(std::max(0, box.findData(before)));
}

}  // namespace

ExportDialog::ExportDialog(const StudioDocument& document, const ExportChoice& choice, QString folder, QWidget* parent)
    : QDialog(parent),
      mDocument(document),
      mFolder(std::move(folder)),
      mPreset(new QComboBox(this)),
      mFormat(new QComboBox(this)),
      mFile(new QLineEdit(choice.file, this)),
      mBrowse(new QPushButton(tr("&Browse\u2026"), this)),
      mWhere(new QLabel(this)),
      mVideo(new QComboBox(this)),
      mScan(new QComboBox(this)),
      mAudio(new QComboBox(this)),
      mTimecode(new QLineEdit(choice.timecode, this)),
      mMonoTracks(new QCheckBox(tr("One &mono track a channel"), this)),
      mProblem(new ProblemLabel("exportProblem", this)) {
    setObjectName("exportDialog");
    setWindowTitle(tr("Export"));
    setMinimumWidth(kWidth);
    FillIn();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    mExport = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    mExport->setObjectName("exportButton");
    mExport->setDefault(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(Arrange());
    layout->addWidget(mProblem);
    layout->addStretch();
    layout->addWidget(buttons);

    FileChanged();
    mVideo->setCurrentIndex(std::max(0, mVideo->findData(choice.videoCodec)));
    mScan->setCurrentIndex(std::max(0, mScan->findData(static_cast<int>(choice.scan))));
    mAudio->setCurrentIndex(std::max(0, mAudio->findData(choice.audioCodec)));
    mMonoTracks->setChecked(choice.monoTracks);
    connect(mBrowse, &QPushButton::clicked, this, &ExportDialog::Browse);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportDialog::Accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mPreset, &QComboBox::activated, this, &ExportDialog::PresetChosen);
    connect(mFormat, &QComboBox::currentIndexChanged, this, &ExportDialog::FormatChosen);
    connect(mFile, &QLineEdit::textChanged, this, &ExportDialog::FileChanged);
    connect(mTimecode, &QLineEdit::textChanged, this, &ExportDialog::Check);
    connect(mVideo, &QComboBox::currentIndexChanged, this, &ExportDialog::Check);
    connect(mScan, &QComboBox::currentIndexChanged, this, &ExportDialog::Check);
    connect(mAudio, &QComboBox::currentIndexChanged, this, &ExportDialog::Check);
    connect(mMonoTracks, &QCheckBox::toggled, this, &ExportDialog::Check);
    Check();
    mFile->setFocus();
    mFile->selectAll();
}

void ExportDialog::FillIn() {
    mPreset->setObjectName("exportPreset");
    mFormat->setObjectName("exportFormat");
    mFile->setObjectName("exportFile");
    mWhere->setObjectName("exportWhere");
    mVideo->setObjectName("exportVideo");
    mScan->setObjectName("exportScan");
    mAudio->setObjectName("exportAudio");
    mTimecode->setObjectName("exportTimecode");
    mMonoTracks->setObjectName("exportMonoTracks");
    mTimecode->setPlaceholderText(tr("HH:MM:SS:FF, or none"));
    mWhere->setWordWrap(true);
    mWhere->setForegroundRole(QPalette::PlaceholderText);
    for (const auto& [scan, text] : kScanWords) {
        mScan->addItem(QCoreApplication::translate("Scan", text), static_cast<int>(scan));
    }
    for (const ExportPreset& preset : ExportPresets()) {
        mPreset->addItem(QCoreApplication::translate("ExportPreset", preset.name));
    }
    mPreset->addItem(tr("Own choice"));
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        mFormat->addItem(tr("%1 (.%2)").arg(Described(format.description), Text(format.extension)),
                         Text(format.extension));
    }
}

QFormLayout* ExportDialog::Arrange() {
    auto* const fileRow = new QHBoxLayout;
    fileRow->addWidget(mFile, 1);
    fileRow->addWidget(mBrowse);
    auto* const fileLabel = new QLabel(tr("&File:"), this);
    fileLabel->setBuddy(mFile);
    auto* const clip =
        new QLabel(PictureWords(mDocument.Values().picture) + "\n" + SoundWords(*mDocument.Clip()) + " \u00B7 " +
                       TimeWords(static_cast<double>(mDocument.LengthSamples()) /
                                 static_cast<double>(mDocument.Clip()->SampleRate())),
                   this);
    auto* const form = new QFormLayout;
    form->addRow(tr("P&reset:"), mPreset);
    form->addRow(tr("F&ormat:"), mFormat);
    form->addRow(fileLabel, fileRow);
    form->addRow(QString(), mWhere);
    form->addRow(tr("&Picture:"), mVideo);
    form->addRow(tr("S&can:"), mScan);
    form->addRow(tr("&Sound:"), mAudio);
    form->addRow(tr("&Time code:"), mTimecode);
    form->addRow(QString(), mMonoTracks);
    form->addRow(tr("Clip:"), clip);
    return form;
}

QString ExportDialog::Target() const {
    return mFile->text().isEmpty() ? QString() : QDir(mFolder).absoluteFilePath(mFile->text());
}

ExportChoice ExportDialog::Choice() const {
    return {.file = Target(),
            .videoCodec = mVideo->currentData().toString(),
            .audioCodec = mAudio->currentData().toString(),
            .scan = mScan->isEnabled() ? static_cast<lineup::Scan>(mScan->currentData().toInt())
                                       : lineup::Scan::Progressive,
            .timecode = mTimecode->isEnabled() ? mTimecode->text() : QString(),
            .monoTracks = mMonoTracks->isEnabled() && mMonoTracks->isChecked()};
}

void ExportDialog::Browse() {
    const QString file = QFileDialog::getSaveFileName(this, tr("Export to"), Target(), FileFilter(), nullptr,
                                                      QFileDialog::DontConfirmOverwrite);
    if (!file.isEmpty()) {
        mFile->setText(file);
    }
}

void ExportDialog::PresetChosen() {
    const auto index = static_cast<std::size_t>(mPreset->currentIndex());
    if (index >= ExportPresets().size()) {
        return;
    }
    const ExportPreset& preset = ExportPresets()[index];
    mFormat->setCurrentIndex(mFormat->findData(preset.extension));
    mVideo->setCurrentIndex(std::max(0, mVideo->findData(preset.videoCodec)));
    mAudio->setCurrentIndex(std::max(0, mAudio->findData(preset.audioCodec)));
}

// The format is the file name's ending, and follows it.
void ExportDialog::FormatChosen() {
    const QString extension = mFormat->currentData().toString();
    QString file = mFile->text();
    if (FormatOf(file) != nullptr) {
        file.truncate(file.lastIndexOf('.'));
    }
    if (!extension.isEmpty()) {
        mFile->setText(file + "." + extension);
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
        mShownFormat = format;
    }
    const QSignalBlocker quietFormat(mFormat);
    mFormat->setCurrentIndex(format == nullptr ? -1 : mFormat->findData(Text(format->extension)));
    Check();
}

void ExportDialog::ShowPreset() {
    const auto presets = ExportPresets();
    const auto chosen = std::ranges::find_if(presets, [this](const ExportPreset& preset) {
        return mFormat->currentData().toString() == preset.extension &&
               mVideo->currentData().toString() == preset.videoCodec &&
               mAudio->currentData().toString() == preset.audioCodec;
    });
    mPreset->setCurrentIndex(static_cast<int>(chosen - presets.begin()));  // the last one is "Own choice"
}

void ExportDialog::Check() {
    ShowPreset();
    const lineup::VideoCodec* const codec = lineup::FindVideoCodec(mVideo->currentData().toString().toStdString());
    mScan->setEnabled(codec != nullptr && codec->interlaced);
    const bool hasFolder = mFile->text().isEmpty() || QDir::isAbsolutePath(mFile->text());
    mWhere->setText(hasFolder ? QString() : tr("Goes to %1").arg(QDir::toNativeSeparators(Target())));
    const QString problem = mFile->text().isEmpty() ? tr("The file needs a name.") : ExportProblem(mDocument, Choice());
    mProblem->Show(problem);
    mExport->setEnabled(problem.isEmpty());
}

void ExportDialog::Accept() {
    if (!mExport->isEnabled()) {
        return;
    }
    const QFileInfo file(Target());
    if (file.exists()) {
        QMessageBox box(QMessageBox::Question, tr("Export"),
                        tr("%1 is there already. Replace it?").arg(file.fileName()), QMessageBox::Cancel, this);
        const QPushButton* const replace = box.addButton(tr("&Replace"), QMessageBox::AcceptRole);
        box.setDefaultButton(QMessageBox::Cancel);
        box.exec();
        if (box.clickedButton() != replace) {
            return;
        }
    }
    accept();
}

}  // namespace studio
