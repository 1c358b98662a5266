#pragma once

#include <lineup/Clip.h>
#include <lineup/ClipDocument.h>

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <cstdint>
#include <memory>

namespace studio {

/// The clip that a window shows: its values, the file they are kept in, and what was done to them. UI thread.
class StudioDocument : public QObject {
    Q_OBJECT

public:
    /// A new document with the plug-in's default settings.
    explicit StudioDocument(std::shared_ptr<const lineup::Importer> importer, QObject* parent = nullptr);

    [[nodiscard]] const lineup::Importer& Plugin() const noexcept { return *mImporter; }
    [[nodiscard]] const std::shared_ptr<const lineup::Importer>& Importer() const noexcept { return mImporter; }
    [[nodiscard]] const lineup::ClipDocument& Values() const noexcept { return mValues; }

    /// The clip that the values stand for. It stays as it is; a change of the document makes another one.
    [[nodiscard]] const std::shared_ptr<const lineup::Clip>& Clip() const noexcept { return mClip; }

    /// The clip's length at its sample rate: whole frames, to the nearest sample.
    [[nodiscard]] std::int64_t LengthSamples() const;

    /// The sample that a frame starts with, and the frame that a sample lies in. Frames count from 0.
    [[nodiscard]] std::int64_t SampleOfFrame(std::int64_t frame) const;
    [[nodiscard]] std::int64_t FrameOf(std::int64_t sample) const;

    /// The start of a frame that lies nearest to a sample.
    [[nodiscard]] std::int64_t OnFrame(std::int64_t sample) const;

    [[nodiscard]] QUndoStack& Undo() noexcept { return mUndo; }
    [[nodiscard]] bool IsChanged() const { return !mUndo.isClean(); }

    /// The file, "" for a document that was never saved.
    [[nodiscard]] const QString& File() const noexcept { return mFile; }

    /// The file's name without folder and extension, "Untitled" without a file.
    [[nodiscard]] QString Name() const;

    /// Starts a new document. Throws lineup::Error, and changes nothing, when the plug-in has no such clip.
    void New(const lineup::ClipDocument& values);

    /// Throws lineup::Error, and changes nothing, when the file is not a usable document.
    void Open(const QString& file);

    /// Throws lineup::Error when the file cannot be written; it is then as it was.
    void SaveAs(const QString& file);

    /// Changes the values; one step of undo, called `act`. Equal values add no step. Throws lineup::Error,
    /// and changes nothing, when the plug-in has no such clip.
    void Edit(const lineup::ClipDocument& values, const QString& act);

Q_SIGNALS:
    void ClipChanged();   ///< the values, and with them the clip
    void StateChanged();  ///< the file, or whether there are changes

private:
    class EditCommand;
    void Take(const lineup::ClipDocument& values);
    void Start(const lineup::ClipDocument& values, const QString& file);

    std::shared_ptr<const lineup::Importer> mImporter;
    lineup::ClipDocument mValues;
    std::shared_ptr<const lineup::Clip> mClip;
    QString mFile;
    QUndoStack mUndo;
};

}  // namespace studio
