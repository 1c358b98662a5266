#include "Apps/studio/Export/ExportChoice.h"

#include <lineup/Exporter.h>
#include "Apps/studio/Document/ProblemWords.h"

#include <QFile>
#include <exception>

namespace studio {

const lineup::FileFormat* FormatOf(const QString& file) {
    return lineup::FindFileFormat(QFile::encodeName(file).toStdString());
}

lineup::ExportSettings MakeExportSettings(const StudioDocument& document, const ExportChoice& choice) {
    const lineup::PictureFormat& picture = document.Values().picture;
    lineup::ExportSettings settings;
    settings.target = QFile::encodeName(choice.file).toStdString();
    settings.width = picture.width;
    settings.height = picture.height;
    settings.card = picture.card;
    settings.frameRate = picture.frameRate;
    settings.frames = document.Values().lengthFrames;
    settings.samples = document.LengthSamples();
    settings.videoCodec = choice.videoCodec.toStdString();
    settings.audioCodec = choice.audioCodec.toStdString();
    if (!choice.timecode.isEmpty()) {
        settings.timecode.emplace(choice.timecode.toStdString(), settings.frameRate);
    }
    settings.scan = choice.scan;
    settings.monoTracks = choice.monoTracks;
    return settings;
}

QString ExportProblem(const StudioDocument& document, const ExportChoice& choice) {
    try {
        lineup::CheckExport(*document.Clip(), MakeExportSettings(document, choice));
        return {};
    } catch (const std::exception& error) {
        return ProblemWords(error);
    }
}

}  // namespace studio
