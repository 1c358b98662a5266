#include <lineup/Exporter.h>
#include <lineup/StillPicture.h>
#include "Host/Lineup/Export/MediaEntry.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Export/Wave/WaveFile.h"
#include "Host/Lineup/Files/TargetFile.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"
#include "Host/Lineup/Values/RethrowAsError.h"

#include <exception>
#include <string>

namespace lineup {

namespace {

/// What the caller's own function threw: no failure of the library, so it goes back as it is.
struct ThrownByCaller {
    std::exception_ptr exception;
};

ProgressFunction Enclosed(const ProgressFunction& progress) {
    if (!progress) {
        return {};
    }
    return [&progress](std::int64_t done, std::int64_t total) {
        try {
            return progress(done, total);
        } catch (...) {
            throw ThrownByCaller{std::current_exception()};
        }
    };
}

WriteFunction& WriterInMedia(const char* name) {
    return DynamicLibrary::Companion(kMediaLibraryName).Function<WriteFunction>(name, "cannot write media files");
}

WriteFunction& WriterOf(FileKind kind) {
    switch (kind) {
        case FileKind::Wave:
            return WriteWaveFile;
        case FileKind::Still:
            return WriterInMedia(kWriteStillName);
        case FileKind::Movie:
            break;
    }
    return WriterInMedia(kWriteMovieName);
}

TargetFile OpenTarget(const ExportPlan& plan) {
    return plan.pipe ? TargetFile(plan.target, *plan.pipe) : TargetFile(plan.target, plan.overwrite);
}

ExportReport Write(const Clip& clip, const ExportPlan& plan, const ProgressFunction& progress) {
    try {
        WriteFunction& write = WriterOf(plan.container->kind);
        TargetFile file = OpenTarget(plan);
        write(clip, plan, file, Enclosed(progress));
        file.Commit(plan.disk);
        return ReportOf(plan, file.Size());
    } catch (const ThrownByCaller& thrown) {
        std::rethrow_exception(thrown.exception);
    } catch (...) {
        RethrowAsError("cannot write " + plan.target.string());
    }
}

}  // namespace

ExportReport Export(const Clip& clip, const ExportSettings& settings, const ProgressFunction& progress) {
    return Write(clip, PlanExport(clip, settings), progress);
}

void WritePng(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target, bool overwrite,
              PictureAspect aspect) {
    static_cast<void>(Write(clip, PlanStill(target, width, height, card, overwrite, aspect), {}));
}

}  // namespace lineup
