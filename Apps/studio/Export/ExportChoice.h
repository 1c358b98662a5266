#pragma once

#include <lineup/ExportSettings.h>
#include <lineup/FormatTable.h>
#include "Apps/studio/Document/StudioDocument.h"

#include <QString>

namespace studio {

/// What a person chooses of an export, beside what the document says.
struct ExportChoice {
    QString file;
    QString videoCodec{};  ///< a name out of the table of formats; empty for the format's first
    QString audioCodec{};
    lineup::Scan scan = lineup::Scan::Progressive;
    QString timecode{};  ///< empty for none
    bool monoTracks = false;
};

/// The file format that a file's extension names, or null.
[[nodiscard]] const lineup::FileFormat* FormatOf(const QString& file);

/// The export of the whole clip. Throws lineup::UsageError for a time code that cannot be.
[[nodiscard]] lineup::ExportSettings MakeExportSettings(const StudioDocument& document, const ExportChoice& choice);

/// Why the export cannot be made, as a sentence; empty when it can.
[[nodiscard]] QString ExportProblem(const StudioDocument& document, const ExportChoice& choice);

}  // namespace studio
