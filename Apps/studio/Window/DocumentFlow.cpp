#include "Apps/studio/Window/DocumentFlow.h"

#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Window/ClipDialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>
#include <exception>

namespace studio {

namespace {

QString Extension() {
    return QString::fromUtf8(lineup::kDocumentExtension.data(), lineup::kDocumentExtension.size());
}

QString Filter() {
    return DocumentFlow::tr("Lineup documents (*%1)").arg(Extension());
}

}  // namespace

DocumentFlow::DocumentFlow(StudioDocument& document, QWidget& window)
    : mDocument(document), mWindow(window), mRecent(&window) {
    connect(&mRecent, &RecentFiles::Chosen, this, [this](const QString& file) {
        if (MayLeave()) {
            OpenFile(file);
        }
    });
}

void DocumentFlow::Complain(const QString& problem) {
    QMessageBox box(QMessageBox::Warning, tr("Lineup Studio"), problem, QMessageBox::Ok, &mWindow);
    box.setObjectName("complaint");
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

QString DocumentFlow::Folder() const {
    const QStringList recent = RecentFiles::Files();
    const QString file = !mDocument.File().isEmpty() ? mDocument.File() : recent.value(0);
    return file.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                          : QFileInfo(file).absolutePath();
}

void DocumentFlow::New() {
    if (!MayLeave()) {
        return;
    }
    try {
        lineup::ClipDocument values;
        values.settings = mDocument.Plugin().DefaultSettings(lineup::Clip::kHostSampleRate);
        ClipDialog dialog(mDocument.Plugin(), values, tr("New Clip"), &mWindow);
        if (dialog.exec() == QDialog::Accepted) {
            mDocument.New(dialog.Values());
        }
    } catch (const std::exception& error) {
        Complain(ProblemWords(error));
    }
}

void DocumentFlow::EditClip() {
    ClipDialog dialog(mDocument.Plugin(), mDocument.Values(), tr("Clip Settings"), &mWindow);
    if (dialog.exec() == QDialog::Accepted) {
        try {
            mDocument.Edit(dialog.Values(), tr("Clip Settings"));
        } catch (const std::exception& error) {
            Complain(ProblemWords(error));
        }
    }
}

void DocumentFlow::Open() {
    if (!MayLeave()) {
        return;
    }
    const QString file = QFileDialog::getOpenFileName(&mWindow, tr("Open"), Folder(), Filter());
    if (!file.isEmpty()) {
        OpenFile(file);
    }
}

void DocumentFlow::OpenFile(const QString& file) {
    try {
        mDocument.Open(QFileInfo(file).absoluteFilePath());
        mRecent.Add(file);
    } catch (const std::exception& error) {
        mRecent.Remove(file);
        Complain(ProblemWords(error));
    }
}

bool DocumentFlow::SaveTo(const QString& file) {
    try {
        mDocument.SaveAs(file);
        mRecent.Add(file);
        return true;
    } catch (const std::exception& error) {
        Complain(ProblemWords(error));
        return false;
    }
}

bool DocumentFlow::Save() {
    return mDocument.File().isEmpty() ? SaveAs() : SaveTo(mDocument.File());
}

bool DocumentFlow::SaveAs() {
    QFileDialog dialog(&mWindow, tr("Save As"), Folder(), Filter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(Extension().mid(1));
    dialog.selectFile(mDocument.Name() + Extension());
    return dialog.exec() == QDialog::Accepted && SaveTo(dialog.selectedFiles().constFirst());
}

bool DocumentFlow::MayLeave() {
    if (!mDocument.IsChanged()) {
        return true;
    }
    QMessageBox box(QMessageBox::Question, tr("Lineup Studio"),
                    tr("Save the changes to \u201C%1\u201D?").arg(mDocument.Name()),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &mWindow);
    box.setObjectName("unsaved");
    box.setInformativeText(tr("They are lost if they are not saved."));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return Save();
        case QMessageBox::Discard:
            return true;
        default:
            return false;
    }
}

}  // namespace studio
