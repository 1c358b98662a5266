#include "Apps/lineup/Commands/CheckRun.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <numeric>
#include <thread>
#include <utility>

namespace cli {

namespace {

struct Outcome {
    bool isThere = false;
    lineup::CheckReport report;
    std::exception_ptr error;
};

class Run {
public:
    Run(const std::vector<std::string>& recordings, const std::shared_ptr<const lineup::Importer>& importer,
        const lineup::CheckSettings& settings, const CheckRunProgress& progress)
        : mRecordings(&recordings),
          mImporter(&importer),
          mSettings(&settings),
          mProgress(&progress),
          mOutcomes(recordings.size()),
          mShares(recordings.size(), 0) {}

    // Takes up one recording after the other, until there is none, or one has gone wrong.
    void Work() {
        for (std::size_t index = 0; (index = TakeNext()) < mRecordings->size();) {
            Outcome outcome = CheckOne(index);
            const std::lock_guard lock(mMutex);
            mHasFailed = mHasFailed || outcome.error != nullptr;
            mShares[index] = 1;
            mOutcomes[index] = std::move(outcome);
            mChanged.notify_all();
        }
    }

    lineup::CheckReport WaitFor(std::size_t index) {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [&] { return mOutcomes[index].isThere; });
        if (mOutcomes[index].error != nullptr) {
            std::rethrow_exception(mOutcomes[index].error);
        }
        return std::move(mOutcomes[index].report);
    }

    void Cancel() {
        const std::lock_guard lock(mMutex);
        mIsCancelled = true;
    }

private:
    std::size_t TakeNext() {
        const std::lock_guard lock(mMutex);
        return mHasFailed || mIsCancelled ? mRecordings->size() : mNext++;
    }

    Outcome CheckOne(std::size_t index) {
        Outcome outcome{.isThere = true, .report = {}, .error = {}};
        try {
            outcome.report =
                lineup::Check((*mRecordings)[index], *mImporter, *mSettings,
                              [&](double seconds, std::optional<double> all) { return GoesOn(index, seconds, all); });
        } catch (...) {
            outcome.error = std::current_exception();
        }
        return outcome;
    }

    bool GoesOn(std::size_t index, double seconds, std::optional<double> all) {
        const std::lock_guard lock(mMutex);
        std::optional<double> share;
        if (all && *all > 0) {
            mShares[index] = std::clamp(seconds / *all, 0.0, 1.0);
        }
        if ((all && *all > 0) || mShares.size() > 1) {
            share = std::reduce(mShares.begin(), mShares.end()) / static_cast<double>(mShares.size());
        }
        mIsCancelled = mIsCancelled || !(*mProgress)(share);
        return !mIsCancelled;
    }

    const std::vector<std::string>* mRecordings;
    const std::shared_ptr<const lineup::Importer>* mImporter;
    const lineup::CheckSettings* mSettings;
    const CheckRunProgress* mProgress;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::vector<Outcome> mOutcomes;
    std::vector<double> mShares;
    std::size_t mNext = 0;
    bool mHasFailed = false;
    bool mIsCancelled = false;
};

}  // namespace

void CheckRecordings(const std::vector<std::string>& recordings,
                     const std::shared_ptr<const lineup::Importer>& importer, const lineup::CheckSettings& settings,
                     const CheckRunProgress& progress, const std::function<void(lineup::CheckReport)>& handOver) {
    Run run(recordings, importer, settings, progress);
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::jthread> workers;
    for (std::size_t i = 0; i < std::min(processors, recordings.size()); ++i) {
        workers.emplace_back([&run] { run.Work(); });
    }
    try {
        for (std::size_t i = 0; i < recordings.size(); ++i) {
            handOver(run.WaitFor(i));
        }
    } catch (...) {
        run.Cancel();
        throw;
    }
}

}  // namespace cli
