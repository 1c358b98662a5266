#include <lineup/Exporter.h>
#include <lineup/StillPicture.h>
#include "Host/Lineup/Export/MediaLibrary.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Export/Progress.h"
#include "Host/Lineup/Export/Wave/WaveFile.h"
#include "Host/Lineup/Values/SampleAspect.h"

#include <string>

namespace lineup {

namespace {

void WriteStill(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                const ProgressFunction& progress, ExportReport& report) {
    ReportProgress(progress, 0, 1, settings);
    WritePng(clip, settings.width, settings.height, settings.card, settings.target, settings.overwrite);
    report.video = VideoReport{.codec = std::string(plan.video->name),
                               .pixelFormat = std::string(plan.video->pixelFormat),
                               .width = settings.width,
                               .height = settings.height,
                               .sampleAspect = SampleAspect(settings.width, settings.height),
                               .frameRate = settings.frameRate,
                               .colour = "rgb"};
}

WriteMediaFunction& WriterOf(FileKind kind) {
    switch (kind) {
        case FileKind::Wave:
            return WriteWaveFile;
        case FileKind::Still:
            return WriteStill;
        case FileKind::Movie:
            break;
    }
    return *MediaLibrary::Get().WriteMedia();
}

}  // namespace

ExportReport Export(const Clip& clip, const ExportSettings& settings, const ProgressFunction& progress) {
    const ExportPlan plan = PlanExport(clip, settings);
    ExportReport report;
    WriterOf(plan.format->kind)(clip, settings, plan, progress, report);
    report.target = settings.target;
    report.container = plan.format->extension;
    report.frames = plan.frames;
    report.samples = plan.samples;
    report.bytes = std::filesystem::file_size(settings.target);
    return report;
}

}  // namespace lineup
