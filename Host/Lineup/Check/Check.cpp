#include <lineup/Check.h>
#include "Host/Lineup/Check/Reader/RecordingName.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Host/Lineup/Check/ReadingFaults.h"
#include "Host/Lineup/Check/Sound/CheckSound.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace lineup {

namespace {

// How far the reading is, for whoever asks while nothing arrives.
class Watch {
public:
    explicit Watch(const CheckProgress& progress) : mProgress(&progress) {}

    void SetAll(std::optional<double> all) { mAll = all; }

    bool At(double seconds) {
        mSeconds = seconds;
        return Ask();
    }

    [[nodiscard]] bool Ask() const { return !*mProgress || (*mProgress)(mSeconds, mAll); }

private:
    const CheckProgress* mProgress;
    double mSeconds = 0;
    std::optional<double> mAll;
};

CheckNote WhyUnreadable(const Unreadable& unreadable) {
    if (unreadable.Reason() == Unreadable::Why::NoSound) {
        return {.id = "no-sound",
                .part = CheckPart::Sound,
                .text = fmt::format("There is no sound: {}.", unreadable.what())};
    }
    return {.id = "unreadable",
            .part = CheckPart::Both,
            .text = fmt::format("The recording cannot be read: {}.", unreadable.what())};
}

void Append(std::vector<CheckNote>& notes, std::vector<CheckNote> more) {
    std::ranges::move(more, std::back_inserter(notes));
}

void CheckSoundOf(RecordingReader& reader, const std::shared_ptr<const Importer>& importer,
                  const CheckSettings& settings, Watch& watch, CheckReport& report) {
    watch.SetAll(reader.Seconds());
    const double rate = reader.SampleRate();
    std::int64_t read = 0;
    SoundFindings findings = CheckSound(reader, importer, settings, [&](std::int64_t samples) {
        read = samples;
        return watch.At(static_cast<double>(samples) / rate);
    });
    report.verdict = findings.verdict;
    report.sound = std::move(findings.sound);
    report.faults = std::move(findings.faults);
    Append(report.notes, std::move(findings.notes));
    const bool isStream = ParseRecordingName(report.source).kind == RecordingName::Kind::Url;
    AddReadingFaults(reader, isStream, read, report);
    Append(report.notes, reader.Notes());
}

}  // namespace

CheckReport Check(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                  const CheckSettings& settings, const CheckProgress& progress) {
    ValidateCheckSettings(settings);
    Watch watch(progress);
    CheckReport report;
    report.source = recording;
    try {
        const auto reader = RecordingReader::Open(recording, {}, [&watch] { return watch.Ask(); });
        CheckSoundOf(*reader, importer, settings, watch, report);
    } catch (const Unreadable& unreadable) {
        report.notes.push_back(WhyUnreadable(unreadable));
    }
    return report;
}

}  // namespace lineup
