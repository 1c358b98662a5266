#include "Apps/studio/Export/ExportJob.h"

#include "Apps/studio/Document/ProblemWords.h"

#include <exception>
#include <utility>

namespace studio {

ExportJob::ExportJob(std::shared_ptr<const lineup::Clip> clip, lineup::ExportSettings settings, QObject* parent)
    : QObject(parent), mClip(std::move(clip)), mSettings(std::move(settings)) {}

ExportJob::~ExportJob() {
    Cancel();
}

void ExportJob::Start() {
    mThread = std::jthread([this] { Run(); });
}

// Signals are emitted here and, the receivers being in another thread, delivered there.
void ExportJob::Run() {
    try {
        const lineup::ExportReport report =
            lineup::Export(*mClip, mSettings, [this](std::int64_t done, std::int64_t total) {
                mShare.store(total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0);
                return !mCancel.load();
            });
        Q_EMIT Finished(report.bytes);
    } catch (const lineup::Cancelled&) {
        Q_EMIT Cancelled();
    } catch (const std::exception& error) {
        Q_EMIT Failed(ProblemWords(error));
    }
}

}  // namespace studio
