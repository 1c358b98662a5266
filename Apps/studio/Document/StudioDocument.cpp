#include "Apps/studio/Document/StudioDocument.h"

#include "Host/Lineup/Files/TargetFile.h"

#include <QFile>
#include <QFileInfo>
#include <QUndoCommand>
#include <algorithm>
#include <cmath>

namespace studio {

// One change of the values, and the way back.
class StudioDocument::EditCommand : public QUndoCommand {
public:
    EditCommand(StudioDocument& document, const lineup::ClipDocument& after, const QString& act)
        : QUndoCommand(act), mDocument(document), mBefore(document.Values()), mAfter(after) {}

    void undo() override { mDocument.Take(mBefore); }
    void redo() override { mDocument.Take(mAfter); }

private:
    StudioDocument& mDocument;
    lineup::ClipDocument mBefore;
    lineup::ClipDocument mAfter;
};

StudioDocument::StudioDocument(std::shared_ptr<const lineup::Importer> importer, QObject* parent)
    : QObject(parent), mImporter(std::move(importer)) {
    connect(&mUndo, &QUndoStack::cleanChanged, this, &StudioDocument::StateChanged);
    mValues.settings = mImporter->DefaultSettings(lineup::Clip::kHostSampleRate);
    Take(mValues);
}

std::int64_t StudioDocument::LengthSamples() const {
    const lineup::Rational rate = mValues.picture.frameRate;
    const double seconds = static_cast<double>(mValues.lengthFrames) * rate.den / rate.num;
    return std::max<std::int64_t>(1, std::llround(seconds * static_cast<double>(mClip->SampleRate())));
}

QString StudioDocument::Name() const {
    return mFile.isEmpty() ? tr("Untitled") : QFileInfo(mFile).completeBaseName();
}

void StudioDocument::Take(const lineup::ClipDocument& values) {
    mClip = std::make_shared<lineup::Clip>(mImporter, values.settings);
    mValues = values;
    Q_EMIT ClipChanged();
}

void StudioDocument::Start(const lineup::ClipDocument& values, const QString& file) {
    Take(values);
    mFile = file;
    mUndo.clear();
    Q_EMIT StateChanged();
}

void StudioDocument::New(const lineup::ClipDocument& values) {
    Start(values, {});
}

void StudioDocument::Open(const QString& file) {
    Start(lineup::ReadDocument(QFile::encodeName(file).toStdString()), file);
}

void StudioDocument::SaveAs(const QString& file) {
    lineup::TargetFile target(QFile::encodeName(file).toStdString(), true);
    lineup::WriteDocument(target, mValues);
    mFile = file;
    mUndo.setClean();
    Q_EMIT StateChanged();
}

// A clip that cannot be is refused here: the undo stack has no way to say so.
void StudioDocument::Edit(const lineup::ClipDocument& values, const QString& act) {
    if (values != mValues) {
        (void)lineup::Clip(mImporter, values.settings);
        mUndo.push(new EditCommand(*this, values, act));
    }
}

}  // namespace studio
