#include "Host/Lineup/Check/Sound/CheckSound.h"

#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Decide/SoundReportOf.h"
#include "Host/Lineup/Check/Sound/Find/Speeds.h"
#include "Host/Lineup/Check/Sound/Follow/Listener.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

constexpr std::size_t kHopsPerBlock = 8;
constexpr double kHighestIdentTone = 2000;  // Hz

// The samples of a source between two times, in blocks of whole hops.
class Excerpt {
public:
    Excerpt(SoundSource& source, const CheckSettings& settings)
        : mSource(&source),
          mBuffers(static_cast<std::size_t>(source.Inputs())),
          mSkip(std::llround(settings.fromSeconds.value_or(0) * source.SampleRate())),
          mLeft(settings.forSeconds ? std::llround(*settings.forSeconds * source.SampleRate()) : -1) {}

    /// Fills `block` samples of each input, fewer at the end; the number of them.
    std::size_t Read(std::size_t block, const SoundProgress& progress) {
        for (std::vector<float>& buffer : mBuffers) {
            buffer.resize(block);
        }
        while (mSkip > 0) {
            const std::size_t count = ReadSome(0, std::min(block, static_cast<std::size_t>(mSkip)), progress);
            if (count == 0) {
                return 0;
            }
            mSkip -= static_cast<std::int64_t>(count);
        }
        std::size_t filled = 0;
        while (filled < block && mLeft != 0) {
            const std::size_t most =
                mLeft < 0 ? block - filled : std::min(block - filled, static_cast<std::size_t>(mLeft));
            const std::size_t count = ReadSome(filled, most, progress);
            if (count == 0) {
                break;
            }
            filled += count;
            mLeft -= mLeft < 0 ? 0 : static_cast<std::int64_t>(count);
        }
        return filled;
    }

    std::vector<std::span<float>> Samples(std::size_t count) {
        std::vector<std::span<float>> samples;
        samples.reserve(mBuffers.size());
        for (std::vector<float>& buffer : mBuffers) {
            samples.push_back(std::span(buffer).first(count));
        }
        return samples;
    }

private:
    std::size_t ReadSome(std::size_t offset, std::size_t most, const SoundProgress& progress) {
        std::vector<float*> targets;
        targets.reserve(mBuffers.size());
        for (std::vector<float>& buffer : mBuffers) {
            targets.push_back(buffer.data() + offset);
        }
        const std::size_t count = mSource->Read(targets, most);
        mHeard += static_cast<std::int64_t>(count);
        if (progress && !progress(mHeard)) {
            throw Cancelled("the check was stopped");
        }
        return count;
    }

    SoundSource* mSource;
    std::vector<std::vector<float>> mBuffers;
    std::int64_t mSkip;
    std::int64_t mLeft;  // -1: all of them
    std::int64_t mHeard = 0;
};

SoundFindings NothingFound(const SoundSource& source, const CheckSettings& settings) {
    SoundFindings findings;
    findings.sound.sampleRate = source.SampleRate();
    findings.sound.inputs = source.Inputs();
    if (settings.expect == "tone") {
        findings.notes.push_back({"no-line-up", CheckPart::Sound,
                                  "No steady tone was found. A second of one would settle what the path did."});
    } else {
        findings.notes.push_back(
            {"no-line-up", CheckPart::Sound,
             "No identification sequence and no steady tone was found. A whole cycle, or three seconds of tone, "
             "would settle what the path did."});
    }
    return findings;
}

}  // namespace

SoundChecker::SoundChecker(std::shared_ptr<const Importer> importer)
    : mImporter(std::move(importer)), mReferences(sound::MakeIdentReferences(mImporter)) {}

SoundChecker::~SoundChecker() = default;

SoundFindings SoundChecker::Check(SoundSource& source, const CheckSettings& settings, double origin,
                                  const SoundProgress& progress) const {
    ValidateCheckSettings(settings);
    const sound::Expectation expected = sound::ExpectationOf(settings);
    const double highest = std::max(kHighestIdentTone, sound::kFastest * expected.frequencyHz.value_or(0));
    const sound::Grid grid = sound::MakeGrid(source.SampleRate(), highest);
    sound::Listener listener(source.Inputs(), grid, mReferences, expected, mImporter, source.Lossy().value_or(false));
    Excerpt excerpt(source, settings);
    const std::size_t block = static_cast<std::size_t>(grid.HopSamples()) * kHopsPerBlock;
    while (const std::size_t count = excerpt.Read(block, progress)) {
        listener.Hear(excerpt.Samples(count));
    }
    listener.Finish();
    const double startSeconds = origin + settings.fromSeconds.value_or(0);
    const sound::Lineup* const lineup = listener.Found();
    if (lineup == nullptr) {
        SoundFindings findings = NothingFound(source, settings);
        findings.sound.lanes = listener.Drawing().Draw(nullptr, startSeconds);
        return findings;
    }
    SoundFindings findings;
    const sound::RecordingFacts facts{source.SampleRate(), source.Bits(), source.Lossy(), startSeconds};
    findings.heard =
        HeardLineup{.startsAt = startSeconds + lineup->startsAt,
                    .endsAt = startSeconds + lineup->endsAt,
                    .sentCycle = lineup->reference->cycle,
                    .cycle = lineup->reference->cycle / lineup->placing.tempo,
                    .cycleStart = startSeconds + lineup->lastPlacing.StartAt(lineup->endsAt) + UsualDelay(*lineup),
                    .isSteady = lineup->reference->Steady(),
                    .unsteady = lineup->steadiness.Wander()};
    sound::Case check{&*lineup, &settings, &expected, &facts, &findings, {}, {}, {}, {}};
    Decide(check);
    findings.sound.lanes = listener.Drawing().Draw(lineup, startSeconds);
    return findings;
}

SoundFindings CheckSound(SoundSource& source, const std::shared_ptr<const Importer>& importer,
                         const CheckSettings& settings, const SoundProgress& progress) {
    ValidateCheckSettings(settings);
    return SoundChecker(importer).Check(source, settings, 0, progress);
}

}  // namespace parts

}  // namespace lineup
