// What is concluded of a line-up that was heard: whatever levels, delays, lines and events were measured, the faults
// are known ones, at inputs that there are, said in sentences, and their numbers are numbers.
#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Importer.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Follow/Listener.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/Require.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using fuzz::Require;
using lineup::sound::Lineup;

constexpr double kRate = 8000;
constexpr double kSeconds = 14;
constexpr double kHighestTone = 2000;  // Hz
constexpr std::size_t kMostEvents = 40;
constexpr std::size_t kBlockHops = 8;
constexpr std::array<const char*, 5> kSent = {"blits", "ebu-5.1", "ebu-stereo-1000", "ebu-stereo-400", ""};

std::shared_ptr<const lineup::Importer> Bundle() {
    static const auto kImporter = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return kImporter;
}

// As it is heard when nothing is wrong.
class Heard {
public:
    explicit Heard(const std::string& ident) {
        lineup::ToneChoice choice{.sampleRateHz = kRate};
        if (!ident.empty()) {
            choice.ident = ident;
        }
        const lineup::Clip clip(Bundle(), lineup::MakeSettings(*Bundle(), choice));
        const auto& order = lineup::FindChannelLayout(clip.NumChannels())->fileOrder;
        static const std::vector<lineup::sound::Reference> kReferences = lineup::sound::MakeIdentReferences(Bundle());
        const lineup::sound::Grid grid = lineup::sound::MakeGrid(kRate, kHighestTone);
        mListener = std::make_unique<lineup::sound::Listener>(static_cast<int>(order.size()), grid, kReferences,
                                                              lineup::sound::ExpectationOf({}), Bundle(), false);
        const auto block = static_cast<std::size_t>(grid.HopSamples()) * kBlockHops;
        std::vector<std::vector<float>> samples(order.size(), std::vector<float>(block));
        std::vector<float*> targets(order.size());
        for (std::size_t place = 0; place < order.size(); ++place) {
            targets[static_cast<std::size_t>(order[place])] = samples[place].data();
        }
        lineup::AudioReader reader(clip);
        for (std::size_t at = 0; at < static_cast<std::size_t>(kRate * kSeconds); at += block) {
            reader.Read(static_cast<std::int64_t>(at), static_cast<std::int64_t>(block), targets);
            const std::vector<std::span<float>> inputs(samples.begin(), samples.end());
            mListener->Hear(inputs);
        }
        mListener->Finish();
        Require(mListener->Found() != nullptr, "what is sent is heard");
    }
    [[nodiscard]] const Lineup& Found() const { return *mListener->Found(); }

private:
    std::unique_ptr<lineup::sound::Listener> mListener;
};

double Number(fuzz::Bytes& bytes, double most) {
    return most * static_cast<double>(bytes.Take<std::int16_t>()) / 32768;
}

// A mean square, from nothing to far above full scale.
double Power(fuzz::Bytes& bytes) {
    return std::pow(10, Number(bytes, 20) - 12);
}

void Add(lineup::sound::LevelTally& tally, fuzz::Bytes& bytes) {
    tally.Add(Power(bytes), 1 + static_cast<double>(bytes.Take<std::uint8_t>()));
}

void MeasureLines(lineup::sound::LineFindings& lines, fuzz::Bytes& bytes) {
    Add(lines.harmonics, bytes);
    Add(lines.beside, bytes);
    for (auto& clear : lines.clear) {
        Add(clear, bytes);
    }
    Add(lines.floor, bytes);
    for (auto& harmonic : lines.harmonic) {
        harmonic.weight += 1;
        harmonic.sum += std::polar(std::abs(Number(bytes, 4)), Number(bytes, 4));
        harmonic.doubts += Power(bytes);
    }
    for (auto* const tallies : {&lines.hum, &lines.moved}) {
        for (auto& hum : *tallies) {
            Add(hum.power, bytes);
            Add(hum.beside, bytes);
        }
    }
}

// Another measurement of one thing.
void Measure(Lineup& lineup, fuzz::Bytes& bytes) {
    lineup::sound::InputFindings& input = lineup.inputs[bytes.Below(lineup.inputs.size())];
    const std::size_t channels = lineup.reference->channels.size();
    switch (bytes.Below(10)) {
        case 0:
            input.surveyed.arrival.sounds = bytes.Flag();
            input.surveyed.arrival.channel.reset();
            if (bytes.Flag()) {
                input.surveyed.arrival.channel = bytes.Below(channels);
            }
            input.surveyed.arrival.likeness = std::abs(Number(bytes, 1));
            input.surveyed.arrival.gain = std::sqrt(Power(bytes));
            break;
        case 1:
            input.surveyed.delay = Number(bytes, 2);
            input.surveyed.polarity = static_cast<int>(bytes.Below(3)) - 1;
            input.surveyed.exact = bytes.Flag();
            input.surveyed.hasEdges = bytes.Flag();
            break;
        case 2:
            Add(input.toneNoise, bytes);
            Add(input.gapNoise, bytes);
            break;
        case 3:
            input.dc.Add(Number(bytes, 2), 1 + static_cast<double>(bytes.Take<std::uint8_t>()));
            break;
        case 4:
            MeasureLines(input.lines, bytes);
            break;
        case 5:
            input.samples = static_cast<double>(bytes.Take<std::uint32_t>());
            input.tops = input.samples * std::abs(Number(bytes, 1));
            input.bits = bytes.Take<std::uint32_t>();
            input.least = -std::abs(Number(bytes, 4));
            input.most = std::abs(Number(bytes, 4));
            break;
        case 6:
            lineup.speed.weight += 1;
            lineup.speed.slopes += Number(bytes, 0.1);
            lineup.speed.slotSlopes.Add(Number(bytes, 0.1));
            lineup.speed.shifts.Add(Number(bytes, 0.1));
            break;
        case 7:
            Add(lineup.steadiness.squares, bytes);
            lineup.placing.pitch = 1 + Number(bytes, 0.3);
            lineup.placing.tempo = 1 + Number(bytes, 0.3);
            lineup.startSeen = bytes.Flag();
            lineup.endSeen = bytes.Flag();
            lineup.endsAt = lineup.startsAt + std::abs(Number(bytes, 30));
            break;
        case 8:
            for (std::size_t points = bytes.Below(kMostEvents); points > 0; --points) {
                lineup.levels.push_back({std::abs(Number(bytes, 14)), Number(bytes, 100),
                                         bytes.Below(lineup.inputs.size()), std::abs(Number(bytes, 1)), bytes.Flag()});
            }
            std::ranges::sort(lineup.levels, {}, &lineup::sound::LevelPoint::at);
            break;
        default:
            for (std::size_t events = bytes.Below(kMostEvents); events > 0; --events) {
                lineup::sound::SoundEvent event{.kind = static_cast<lineup::sound::SoundEvent::Kind>(bytes.Below(4)),
                                                .at = std::abs(Number(bytes, 14)),
                                                .amount = Number(bytes, 4),
                                                .inputs = {}};
                for (std::size_t at = 0; at < lineup.inputs.size(); ++at) {
                    if (bytes.Flag()) {
                        event.inputs.push_back(at);
                        event.phases.push_back({Number(bytes, 1), std::abs(Number(bytes, 0.02))});
                    }
                }
                event.sure = bytes.Flag();
                lineup.events.push_back(event);
            }
            std::ranges::sort(lineup.events, {}, &lineup::sound::SoundEvent::at);
            lineup.moreEvents = bytes.Below(3);
    }
}

void RequireNumber(const std::optional<double>& number) {
    Require(!number || std::isfinite(*number), "a number is one, or left out");
}

void RequireOrder(const lineup::SoundFindings& findings, std::size_t inputs) {
    Require(findings.faults.empty() == (findings.verdict != lineup::CheckVerdict::Faults),
            "the verdict has its faults");
    for (const lineup::CheckFault& fault : findings.faults) {
        Require(lineup::FindCheckFaultKind(fault.id, lineup::CheckPart::Sound) != nullptr, "a fault's id is known");
        Require(std::ranges::is_sorted(fault.inputs), "inputs are in their order");
        Require(std::ranges::all_of(fault.inputs, [inputs](int at) { return at >= 0 && std::cmp_less(at, inputs); }),
                "a fault is at inputs that there are");
        Require(!fault.text.empty() && fault.text.find("nan") == std::string::npos, "a fault is said in a sentence");
        RequireNumber(fault.measured);
        RequireNumber(fault.expected);
        RequireNumber(fault.at);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::map<std::string, Heard> heard;
    fuzz::Bytes bytes(data, size);
    const std::string sent = bytes.Pick(kSent);
    Lineup lineup = heard.try_emplace(sent, sent).first->second.Found();
    const lineup::CheckSettings settings;
    const lineup::sound::Expectation expected = lineup::sound::ExpectationOf(settings);
    lineup::sound::RecordingFacts facts{.rate = kRate, .bits = {}, .lossy = {}, .startSeconds = 0};
    if (bytes.Flag()) {
        facts.bits = 1 + static_cast<int>(bytes.Below(64));
    }
    if (bytes.Flag()) {
        facts.lossy = bytes.Flag();
    }
    for (std::size_t measurements = bytes.Below(32); measurements > 0; --measurements) {
        Measure(lineup, bytes);
    }
    lineup::SoundFindings findings;
    lineup::sound::Case check{&lineup, &settings, &expected, &facts, &findings, {}, {}, {}, {}};
    Decide(check);
    RequireOrder(findings, lineup.inputs.size());
    return 0;
}
