#include <lineup/Watch.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Host/Lineup/Check/ReadingFaults.h"
#include "Host/Lineup/Check/Watch/SoundWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace lineup {

namespace {

constexpr double kBlockSeconds = 0.1;

// A feed's samples, a block after the other, from where looking begins to where it ends.
class Feed {
public:
    Feed(RecordingReader& reader, const CheckSettings& settings)
        : mReader(&reader),
          mBlock(static_cast<std::size_t>(std::max(1.0, kBlockSeconds * reader.SampleRate()))),
          mInputs(static_cast<std::size_t>(reader.Inputs()), std::vector<float>(mBlock)) {
        mSkip = std::llround(settings.fromSeconds.value_or(0) * reader.SampleRate());
        if (settings.forSeconds) {
            mLeft = std::llround(*settings.forSeconds * reader.SampleRate());
        }
        for (std::vector<float>& input : mInputs) {
            mTargets.push_back(input.data());
        }
    }

    /// The number of samples that Inputs() then has; 0 at the end.
    std::size_t Next() {
        while (mSkip > 0) {
            const std::size_t skipped = Read(std::min(mSkip, static_cast<std::int64_t>(mBlock)));
            mSkip = skipped == 0 ? 0 : mSkip - static_cast<std::int64_t>(skipped);
        }
        const std::size_t count = Read(std::min(mLeft, static_cast<std::int64_t>(mBlock)));
        mLeft -= static_cast<std::int64_t>(count);
        return count;
    }

    [[nodiscard]] const std::vector<std::vector<float>>& Inputs() const { return mInputs; }

private:
    std::size_t Read(std::int64_t most) {
        return most <= 0 ? 0 : mReader->Read(mTargets, static_cast<std::size_t>(most));
    }

    RecordingReader* mReader;
    std::size_t mBlock;
    std::vector<std::vector<float>> mInputs;
    std::vector<float*> mTargets;
    std::int64_t mSkip = 0;
    std::int64_t mLeft = std::numeric_limits<std::int64_t>::max();
};

// Whoever asks the watch to end gets what was found until then.
void WatchSound(RecordingReader& reader, const std::shared_ptr<const Importer>& importer, const CheckSettings& settings,
                const WatchListener& listener, double& seconds, WatchReport& report) {
    const FeedFacts facts{reader.SampleRate(), reader.Inputs(), reader.Bits(), reader.Lossy()};
    SoundWatch watch(facts, importer, settings, listener, report);
    const double origin = settings.fromSeconds.value_or(0);
    Feed feed(reader, settings);
    try {
        while (const std::size_t count = feed.Next()) {
            watch.Hear(feed.Inputs(), count);
            for (DamagedStretch& damage : reader.TakeDamage()) {
                damage.position -= std::llround(origin * facts.rate);
                watch.AddDamage(damage);
            }
            for (const decoding::Arrival& arrival : reader.TakeArrivals()) {
                watch.Arrives(arrival.stamp, arrival.arrived);
            }
            seconds = watch.Seconds();
            if (listener.progress && !listener.progress(seconds, reader.Seconds())) {
                break;
            }
        }
    } catch (const Cancelled&) {  // NOLINT(bugprone-empty-catch): the watch ends in good order
    }
    watch.Finish();
    if (const auto why = reader.EndedBecause()) {
        report.notes.push_back(
            {.id = "ended-early",
             .part = CheckPart::Sound,
             .text = fmt::format("After {:.3f} s nothing more could be read: {}.", watch.Seconds(), *why)});
    }
    std::ranges::copy(reader.Notes(), std::back_inserter(report.notes));
}

}  // namespace

WatchReport Watch(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                  const CheckSettings& settings, const WatchListener& listener) {
    ValidateCheckSettings(settings);
    WatchReport report;
    report.source = recording;
    double seconds = 0;
    const auto goesOn = [&] { return !listener.progress || listener.progress(seconds, std::nullopt); };
    try {
        const auto reader = RecordingReader::Open(recording, DecoderSettings(), goesOn);
        WatchSound(*reader, importer, settings, listener, seconds, report);
    } catch (const Unreadable& unreadable) {
        report.notes.push_back(WhyUnreadable(unreadable));
    } catch (const Cancelled&) {
        report.notes.push_back({.id = "nothing-heard", .part = CheckPart::Sound, .text = "Nothing had arrived yet."});
    }
    return report;
}

}  // namespace lineup
