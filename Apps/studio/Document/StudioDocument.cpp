#include "Apps/studio/Document/StudioDocument.h"

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
    return std::max<std::int64_t>(1, SampleOfFrame(mValues.lengthFrames));
}

std::int64_t StudioDocument::SampleOfFrame(std::int64_t frame) const {
    const lineup::Rational rate = mValues.picture.frameRate;
    const double seconds = static_cast<double>(frame) * rate.den / rate.num;
    return std::llround(seconds * static_cast<double>(mClip->SampleRate()));
}

// Where frames are not whole samples long, a start is rounded: one more or less.
std::int64_t StudioDocument::FrameOf(std::int64_t sample) const {
    const lineup::Rational rate = mValues.picture.frameRate;
    const double seconds = static_cast<double>(sample) / static_cast<double>(mClip->SampleRate());
    const auto frame = static_cast<std::int64_t>(std::floor(seconds * rate.num / rate.den));
    if (SampleOfFrame(frame + 1) <= sample) {
        return frame + 1;
    }
    return SampleOfFrame(frame) <= sample ? frame : frame - 1;
}

std::int64_t StudioDocument::OnFrame(std::int64_t sample) const {
    const std::int64_t frame = FrameOf(sample);
    const std::int64_t before = SampleOfFrame(frame);
    const std::int64_t after = SampleOfFrame(frame + 1);
    return sample - before <= after - sample ? before : after;
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
    lineup::WriteDocument(QFile::encodeName(file).toStdString(), mValues, true);
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
