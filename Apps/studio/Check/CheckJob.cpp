#include "Apps/studio/Check/CheckJob.h"

#include <lineup/Check.h>
#include "Apps/studio/Document/ProblemWords.h"

#include <QFile>
#include <algorithm>
#include <exception>
#include <utility>

namespace studio {

CheckJob::CheckJob(QString file, std::shared_ptr<const lineup::Importer> importer, QObject* parent)
    : QObject(parent), mFile(std::move(file)), mImporter(std::move(importer)) {
    qRegisterMetaType<std::shared_ptr<const lineup::CheckReport>>();
}

CheckJob::~CheckJob() {
    Cancel();
}

void CheckJob::Start() {
    mThread = std::jthread([this] { Run(); });
}

// Signals are emitted here and, the receivers being in another thread, delivered there.
void CheckJob::Run() {
    try {
        const auto goesOn = [this](double seconds, std::optional<double> all) {
            mShare.store(all && *all > 0 ? std::clamp(seconds / *all, 0.0, 1.0) : -1);
            return !mCancel.load();
        };
        lineup::CheckReport report = lineup::Check(QFile::encodeName(mFile).toStdString(), mImporter, {}, goesOn);
        Q_EMIT Finished(std::make_shared<const lineup::CheckReport>(std::move(report)));
    } catch (const lineup::Cancelled&) {
        Q_EMIT Cancelled();
    } catch (const std::exception& error) {
        Q_EMIT Failed(ProblemWords(error));
    }
}

}  // namespace studio
