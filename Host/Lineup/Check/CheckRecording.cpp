#include "Host/Lineup/Check/CheckRecording.h"

#include "Host/Lineup/Check/Asked.h"
#include "Host/Lineup/Check/Lengths.h"
#include "Host/Lineup/Check/Picture/CheckPicture.h"
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
class ReadingProgress {
public:
    explicit ReadingProgress(const CheckProgress& progress) : mProgress(&progress) {}

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

void Append(std::vector<CheckNote>& notes, std::vector<CheckNote> more) {
    std::ranges::move(more, std::back_inserter(notes));
}

// How many samples there were.
std::int64_t CheckSoundOf(RecordingReader& reader, const std::shared_ptr<const Importer>& importer,
                          const CheckSettings& settings, ReadingProgress& reading, CheckReport& report) {
    reading.SetAll(reader.Seconds());
    const double rate = reader.SampleRate();
    std::int64_t read = 0;
    SoundFindings findings = CheckSound(reader, importer, settings, [&](std::int64_t samples) {
        read = samples;
        return reading.At(static_cast<double>(samples) / rate);
    });
    report.verdict = findings.verdict;
    report.sound = std::move(findings.sound);
    report.faults = std::move(findings.faults);
    Append(report.notes, std::move(findings.notes));
    const bool isStream = ParseRecordingName(report.source).kind == RecordingName::Kind::Url;
    AddReadingFaults(reader, isStream, read, report);
    return read;
}

// Both parts together: a card that is right stands for a sound in which there is no line-up, unless one was asked for;
// not for a line-up that is there, and of which not all can be told.
CheckVerdict Together(const CheckReport& report, bool isCardFound, const CheckSettings& settings) {
    if (!report.faults.empty()) {
        return CheckVerdict::Faults;
    }
    const bool isSoundRight = report.verdict == CheckVerdict::Right;
    const bool isSoundDue = NamesSound(settings) || (report.sound && !report.sound->expected.empty());
    return isSoundRight || (isCardFound && !isSoundDue) ? CheckVerdict::Right : CheckVerdict::CannotTell;
}

void AddPictures(const picture::PictureFindings& findings, const CheckSettings& settings, CheckReport& report) {
    report.picture = findings.picture;
    std::ranges::copy(findings.faults, std::back_inserter(report.faults));
    // Nobody asked for a card in a recording of sound.
    if (findings.isCardFound || report.verdict == CheckVerdict::CannotTell) {
        Append(report.notes, findings.notes);
    }
    report.verdict = Together(report, findings.isCardFound, settings);
}

void CheckBoth(RecordingReader& reader, picture::PictureExaminer* examiner,
               const std::shared_ptr<const Importer>& importer, const CheckSettings& settings, ReadingProgress& reading,
               CheckReport& report) {
    std::int64_t samples = 0;
    const bool listens = reader.HasSound() && ListensToSound(settings);
    if (listens) {
        samples = CheckSoundOf(reader, importer, settings, reading, report);
    }
    if (examiner != nullptr) {
        reader.ReadPictures();
        const picture::PictureFindings findings = examiner->Findings();
        if (!reader.HasSound() && ListensToSound(settings) && !findings.isStill) {
            report.notes.push_back({.id = "no-sound", .part = CheckPart::Sound, .text = "There is no sound."});
        }
        const bool isFound = findings.isCardFound || report.verdict != CheckVerdict::CannotTell;
        AddPictures(findings, settings, report);
        const auto lengths = listens && isFound ? LengthFault(reader, samples, findings, settings) : std::nullopt;
        if (lengths) {
            report.faults.push_back(*lengths);
            report.verdict = CheckVerdict::Faults;
        }
    }
    Append(report.notes, reader.Notes());
}

}  // namespace

void CheckRecording(const std::string& recording, const std::shared_ptr<const Importer>& importer,
                    const CheckSettings& settings, const CheckProgress& progress, CheckReport& report) {
    ValidateCheckSettings(settings);
    ReadingProgress reading(progress);
    report.source = recording;
    std::optional<Clip> clip;
    std::optional<picture::PictureExaminer> examiner;
    DecoderSettings decoder;
    decoder.wantsPicture = LooksAtPicture(settings);
    if (decoder.wantsPicture) {
        clip.emplace(importer);
        examiner.emplace(*clip, settings);
    }
    try {
        const auto reader = RecordingReader::Open(
            recording, decoder, [&reading] { return reading.Ask(); }, examiner ? &*examiner : nullptr);
        CheckBoth(*reader, examiner ? &*examiner : nullptr, importer, settings, reading, report);
    } catch (const Unreadable& unreadable) {
        report.notes.push_back(WhyUnreadable(unreadable));
    }
}

}  // namespace lineup
