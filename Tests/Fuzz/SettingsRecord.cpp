// The settings record: any 32 bytes give a clip that plays, or a sentence; and a dialog over them that gives
// them back as they were unless a person changes them. The bytes behind the record say what is done.
#include <lineup/AudioReader.h>
#include <lineup/Error.h>
#include <lineup/UsageError.h>
#include <lineup/WaveformOverview.h>
#include <lineup/services/ContractReporter.h>
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/FuzzedPerson.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"
#include "Tests/Support/GuardedBuffer.h"

#include <cstring>
#include <memory>
#include <span>

namespace {

using fuzz::Bytes;
using fuzz::Require;
using test::GuardedChannels;

constexpr std::size_t kMostSamples = 700;

void ReadAudio(const lineup::Clip& clip, Bytes& bytes) {
    const std::int64_t position = bytes.Position();
    const std::size_t count = bytes.Take<std::uint16_t>() % (kMostSamples + 1);
    const std::size_t cut = count == 0 ? 0 : bytes.Take<std::uint16_t>() % count;
    const auto channels = static_cast<std::size_t>(clip.NumChannels());
    GuardedChannels whole(channels, count);
    GuardedChannels pieces(channels, count);
    lineup::AudioReader reader(clip);
    reader.Read(position, static_cast<std::int64_t>(count), std::span(whole.Pointers(), channels));
    reader.Read(position, static_cast<std::int64_t>(cut), std::span(pieces.Pointers(), channels));
    std::vector<float*> rest;
    for (std::size_t c = 0; c < channels; ++c) {
        rest.push_back(pieces[c].Data() + cut);
    }
    reader.Read(position + static_cast<std::int64_t>(cut), static_cast<std::int64_t>(count - cut), rest);
    Require(whole.GuardsIntact() && pieces.GuardsIntact(), "nothing is written before or behind a buffer");
    for (std::size_t c = 0; c < channels; ++c) {
        Require(std::memcmp(whole[c].Data(), pieces[c].Data(), count * sizeof(float)) == 0,
                "samples do not depend on how they are cut");
    }
}

void ReadOverview(const lineup::Clip& clip, Bytes& bytes) {
    const lineup::OverviewSpan span{.startSample = bytes.Position(),
                                    .length = zelmediatypes::TickTime(bytes.Take<std::int64_t>()),
                                    .columns = bytes.Take<std::int16_t>() % 600};
    try {
        const auto overview = lineup::ReadOverview(clip, span);
        Require(std::ssize(overview.channels) == clip.NumChannels(), "an overview has the clip's channels");
        for (const auto& channel : overview.channels) {
            Require(std::ssize(channel.maxima) == span.columns && std::ssize(channel.minima) == span.columns,
                    "an overview has the columns that were asked for");
        }
    } catch (const lineup::UsageError&) {
    } catch (const lineup::Error&) {
    }
}

void Play(const std::shared_ptr<const lineup::Importer>& importer, const lineup::BarsAndToneInfo& settings,
          Bytes& bytes) {
    try {
        const lineup::Clip clip(importer, settings);
        Require(clip.NumChannels() >= 1 && clip.SampleRate() > 0, "a clip that opens can be played");
        for (int i = 0; i < 4 && !bytes.Empty(); ++i) {
            bytes.Flag() ? ReadAudio(clip, bytes) : ReadOverview(clip, bytes);
        }
    } catch (const lineup::Error&) {
    }
}

void Edit(const lineup::Importer& importer, const lineup::BarsAndToneInfo& settings, Bytes& bytes) {
    test::FakeToolkit toolkit;
    fuzz::Leaving leaving;
    toolkit.layout = test::IdentifiersLayout();
    toolkit.person = [&](test::FakeDialog& dialog) { fuzz::UseDialog(dialog, bytes, leaving); };
    lineup::BarsAndToneInfo edited = settings;
    bool threw = false;
    try {
        importer.EditSettings(edited);
    } catch (const std::exception&) {
        threw = true;
    }
    Require(toolkit.LiveNodes() == 0, "a dialog leaves no control behind");
    if (!leaving.accepted || threw) {
        Require(std::memcmp(&edited, &settings, sizeof settings) == 0, "settings change with OK only");
    } else if (!leaving.edited) {
        edited.identifierFormat = settings.identifierFormat;  // one that the channels cannot play gives way
        Require(std::memcmp(&edited, &settings, sizeof settings) == 0, "OK alone gives the settings back");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    zelcore::debug::SetContractReporter([](const zelcore::debug::ContractReport&) { return false; });
    Bytes bytes(data, size);
    const auto settings = bytes.Take<lineup::BarsAndToneInfo>();
    Edit(*importer, settings, bytes);
    Play(importer, settings, bytes);
    return 0;
}
