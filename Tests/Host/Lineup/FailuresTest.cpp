// What goes wrong in the library, as a program sees it that catches nothing but lineup::Error.
#include <lineup/AudioReader.h>
#include <lineup/BundleSearch.h>
#include <lineup/Clip.h>
#include <lineup/ClipDocument.h>
#include <lineup/Error.h>
#include <lineup/Exporter.h>
#include <lineup/SettingsFile.h>
#include <lineup/StillPicture.h>
#include <lineup/Timecode.h>
#include <lineup/ToneChoice.h>
#include <lineup/WaveformOverview.h>
#include <lineup/interface/Frame/PixelFormats.h>
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using lineup::Clip;
using lineup::Importer;
using testing::HasSubstr;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

// One way to go wrong, in a folder of its own, and what is said of it.
struct Failure {
    const char* name;
    void (*act)(const fs::path& folder);
    std::string said;
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.name;
}

Clip Open(const char* bundle = TEST_BUNDLE) {
    return Clip(std::make_shared<const Importer>(bundle));
}

fs::path CopyOfTheBundle(const fs::path& folder) {
    fs::copy(TEST_BUNDLE, folder / "Copy.bundle", fs::copy_options::recursive);
    return folder / "Copy.bundle";
}

void Read(const Clip& clip, std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    lineup::AudioReader(clip).Read(position, count, buffers);
}

void ReadPeaks(const Clip& clip, float rate) {
    std::vector<float> values(8);
    const std::array<std::span<float>, 2> spans = {values, values};
    clip.ReadPeaks(0, rate, spans, spans);
}

lineup::WaveformOverview ReadOverview(std::int64_t ticks, int columns) {
    return lineup::ReadOverview(Open(),
                                {.startSample = 0, .length = zelmediatypes::TickTime(ticks), .columns = columns});
}

lineup::ExportSettings SmallExport(const fs::path& target) {
    lineup::ExportSettings settings;
    settings.target = target;
    settings.width = 64;
    settings.height = 64;
    settings.frames = 1;
    settings.samples = 1;
    return settings;
}

const std::string kLongName(300, 'a');

const std::vector<Failure> kFailures = {
    // A plug-in that is missing, or is no plug-in.
    {"NoBundle", [](const fs::path& folder) { Importer importer(folder / "None.bundle"); }, "no such folder"},
    {"AFileForABundle", [](const fs::path&) { Importer importer("/proc/version"); }, "it is not a folder"},
    {"ABundleWithoutAPropertyList", [](const fs::path& folder) { Importer importer(folder); },
     "no Contents/Info.plist"},
    {"AnotherPropertyList",
     [](const fs::path& folder) {
         test::WriteFile(CopyOfTheBundle(folder) / "Contents/Info.plist", "{}");
         Importer importer(folder / "Copy.bundle");
     },
     "not a property list"},
    {"ABundleForAnotherPlatform", [](const fs::path&) { Importer importer(TEST_BUNDLES "/NoExecutable.bundle"); },
     "no executable for this platform"},
    {"AnExecutableThatIsText",
     [](const fs::path& folder) {
         const fs::path copy = CopyOfTheBundle(folder);
         test::WriteFile(copy / fs::relative(TEST_MODULE, TEST_BUNDLE), "text");
         Importer importer(copy);
     },
     "cannot load"},
    {"APathLongerThanAny", [](const fs::path& folder) { Importer importer(folder / kLongName); }, "no bundle at"},
    {"NoEntryPoint", [](const fs::path&) { Importer importer(TEST_BUNDLES "/NoEntryPoint.bundle"); }, "no entry point"},
    {"AnotherInterface", [](const fs::path&) { Importer importer(TEST_BUNDLES "/WrongInitAnswer.bundle"); }, "Init"},
    {"NoBundleAtAPrefix", [](const fs::path& folder) { (void)lineup::FindBundle(folder); }, "cannot find the plug-in"},
    {"NoPrefix", [](const fs::path&) { (void)lineup::PrefixOf("liblineup.so"); }, "lies in no folder called lib"},

    // A plug-in that fails.
    {"ThrowsItsOwn",
     [](const fs::path&) { Importer(TEST_BUNDLES "/ThrowsItsOwnError.bundle").ReadAudio({}, 0, 1, nullptr); },
     "out of tape"},
    {"ThrowsANumber",
     [](const fs::path&) { Importer(TEST_BUNDLES "/ThrowsAnything.bundle").ReadAudio({}, 0, 1, nullptr); },
     "other than a std::exception"},
    {"ThrowsForWantOfMemory",
     [](const fs::path&) { (void)Importer(TEST_BUNDLES "/ThrowsAnything.bundle").SettingsSize(); },
     "not enough memory"},
    {"RefusesARequest",
     [](const fs::path&) { (void)Importer(TEST_BUNDLES "/RefusesEverything.bundle").DefaultSettings(48000); },
     "it answers with 3"},
    {"HasOtherSettings",
     [](const fs::path&) { (void)Importer(TEST_BUNDLES "/LongSettings.bundle").DefaultSettings(48000); },
     "33 bytes, not 32"},
    {"NoPlugin", [](const fs::path&) { Clip clip(nullptr); }, "without a plug-in"},
    {"ThrowsAsItDraws",
     [](const fs::path&) { (void)Open(TEST_BUNDLES "/ThrowsAnything.bundle").ReadFrame(8, 8, kPixelFormat_VUYA_8u); },
     "not enough memory"},

    // Sizes, shapes and times.
    {"AFrameOfNoWidth", [](const fs::path&) { (void)Open().ReadFrame(0, 8, kPixelFormat_VUYA_32f); }, "0x8"},
    {"AFrameOfNegativeHeight", [](const fs::path&) { (void)Open().ReadFrame(8, -8, kPixelFormat_VUYA_32f); }, "8x-8"},
    {"AnEndlessFrame", [](const fs::path&) { (void)Open().ReadFrame(32767, 32767, kPixelFormat_VUYA_32f); },
     "8192 at most"},
    {"AFrameOfAnUnknownFormat", [](const fs::path&) { (void)Open().ReadFrame(8, 8, 7); }, "pixel format 7"},
    {"FewerBuffersThanChannels",
     [](const fs::path&) {
         std::vector<float> left(8);
         const std::array<float*, 1> buffers = {left.data()};
         Read(Open(), 0, 8, buffers);
     },
     "cannot read 2 channels: there are buffers for 1"},
    {"NoBuffers", [](const fs::path&) { Read(Open(), 0, 4800, {}); }, "there are buffers for 0"},
    {"ANullBuffer",
     [](const fs::path&) {
         std::vector<float> left(8);
         const std::array<float*, 2> buffers = {left.data(), nullptr};
         Read(Open(), 0, 8, buffers);
     },
     "there are buffers for 1"},
    {"ANegativeCount",
     [](const fs::path&) {
         std::array<float, 1> sample{};
         const std::array<float*, 2> buffers = {sample.data(), sample.data()};
         Read(Open(), 0, -1, buffers);
     },
     "cannot read -1 samples"},
    {"APositionTooFar",
     [](const fs::path&) {
         std::array<float, 1> sample{};
         const std::array<float*, 2> buffers = {sample.data(), sample.data()};
         Read(Open(), kMost, 1, buffers);
     },
     "has no such stretch"},
    {"PeaksAtNoRate", [](const fs::path&) { ReadPeaks(Open(), 0.0F); }, "0 peaks a second"},
    {"PeaksAtARateThatIsNaN", [](const fs::path&) { ReadPeaks(Open(), std::numeric_limits<float>::quiet_NaN()); },
     "nan peaks a second"},
    {"PeaksOfOneChannelInTwo",
     [](const fs::path&) {
         std::vector<float> values(8);
         const std::array<std::span<float>, 1> one = {values};
         Open().ReadPeaks(0, 100, one, one);
     },
     "peaks of 2 channels"},
    {"AnOverviewOfNoColumns", [](const fs::path&) { (void)ReadOverview(zelmediatypes::kTicksPerSecond, 0); },
     "0 columns"},
    {"AnOverviewOfMoreColumnsThanAnyScreenHas",
     [](const fs::path&) { (void)ReadOverview(zelmediatypes::kTicksPerSecond, 1 << 30); }, "1073741824 columns"},
    {"AnOverviewOfNoLength", [](const fs::path&) { (void)ReadOverview(0, 8); }, "duration 0"},
    {"AnOverviewOfNegativeLength", [](const fs::path&) { (void)ReadOverview(-kMost, 8); }, "duration -"},
    {"AnOverviewOfAYear", [](const fs::path&) { (void)ReadOverview(kMost, 1); }, "at most 8.64e+06 s"},
    {"ATimecodeThatIsText",
     [](const fs::path&) {
         lineup::Timecode("noon", {25, 1});
     },
     "HH:MM:SS:FF"},
    {"ATimecodeAtNoRate",
     [](const fs::path&) {
         lineup::Timecode("00:00:00:00", {0, 0});
     },
     "no time code at 0/0"},
    {"ASampleRateThatIsNaN",
     [](const fs::path&) { (void)MakeSettings(Importer(TEST_BUNDLE), {.sampleRateHz = std::nan("")}); },
     "8000 to 384000"},

    // Files that are missing or are others.
    {"NoSettings", [](const fs::path& folder) { (void)lineup::ReadSettings(folder / "none.batn"); }, "No such file"},
    {"AFolderForSettings", [](const fs::path& folder) { (void)lineup::ReadSettings(folder); }, "Is a directory"},
    {"ShortSettings",
     [](const fs::path& folder) {
         test::WriteFile(folder / "short.batn", "short");
         (void)lineup::ReadSettings(folder / "short.batn");
     },
     "it holds 5"},
    {"NoDocument", [](const fs::path& folder) { (void)lineup::ReadDocument(folder / "none.lineup"); }, "No such file"},
    {"ADocumentOfBytesThatAreNoText",
     [](const fs::path& folder) {
         test::WriteFile(folder / "a.lineup", "{\"kind\": \"\xff\xfe\"}");
         (void)lineup::ReadDocument(folder / "a.lineup");
     },
     "it is no Lineup document"},
    {"ADocumentWithNumbersForTexts",
     [](const fs::path& folder) {
         test::WriteFile(folder / "a.lineup", R"({"kind": "lineup", "version": 1, "settings": 32})");
         (void)lineup::ReadDocument(folder / "a.lineup");
     },
     "\"settings\" must be 64 hexadecimal digits"},

    // Files that cannot be written.
    {"ADocumentInNoFolder",
     [](const fs::path& folder) { WriteDocument(folder / "none/a.lineup", lineup::ClipDocument(), false); },
     "No such file or directory"},
    {"ADocumentOfALongName",
     [](const fs::path& folder) { WriteDocument(folder / kLongName, lineup::ClipDocument(), false); },
     "File name too long"},
    {"ADocumentWithoutAName", [](const fs::path& folder) { WriteDocument(folder / "", lineup::ClipDocument(), false); },
     "must end in the name of a file"},
    {"ADocumentThatCouldNotBeOpened",
     [](const fs::path& folder) {
         lineup::ClipDocument document;
         document.picture.width = 1919;
         WriteDocument(folder / "a.lineup", document, false);
     },
     "\"width\" must be even"},
    {"ADocumentWithACardThatThereIsNot",
     [](const fs::path& folder) {
         lineup::ClipDocument document;
         document.picture.card = static_cast<lineup::Card>(7);
         WriteDocument(folder / "a.lineup", document, false);
     },
     "\"card\" must be"},
    {"SettingsBelowAFile",
     [](const fs::path& folder) {
         test::WriteFile(folder / "file", "");
         WriteSettings(folder / "file/a.batn", lineup::BarsAndToneInfo(), false);
     },
     "Not a directory"},
    {"SettingsThatAreThereAlready",
     [](const fs::path& folder) {
         WriteSettings(folder / "a.batn", lineup::BarsAndToneInfo(), false);
         WriteSettings(folder / "a.batn", lineup::BarsAndToneInfo(), false);
     },
     "exists already"},
    {"SettingsThroughALinkInACircle",
     [](const fs::path& folder) {
         fs::create_symlink("circle", folder / "circle");
         WriteSettings(folder / "circle", lineup::BarsAndToneInfo(), true);
     },
     "Too many levels of symbolic links"},
    {"AWaveFileInNoFolder", [](const fs::path& folder) { (void)Export(Open(), SmallExport(folder / "none/a.wav")); },
     "No such file"},
    {"AMovieInNoFolder", [](const fs::path& folder) { (void)Export(Open(), SmallExport(folder / "none/a.mov")); },
     "No such file"},
    {"AMovieOfALongName",
     [](const fs::path& folder) { (void)Export(Open(), SmallExport(folder / (kLongName + ".mov"))); },
     "File name too long"},
    {"AStillPictureInNoFolder",
     [](const fs::path& folder) { WritePng(Open(), 8, 8, lineup::Card::Auto, folder / "none/a.png", false); },
     "No such file"},
    {"AStillPictureOfNoSize",
     [](const fs::path& folder) { WritePng(Open(), 0, 8, lineup::Card::Auto, folder / "a.png", false); }, "0x8"},
    {"AMovieOfNoLength",
     [](const fs::path& folder) {
         auto settings = SmallExport(folder / "a.mov");
         settings.frames = 0;
         (void)Export(Open(), settings);
     },
     "0 frames"},
    {"AMovieLongerThanTime",
     [](const fs::path& folder) {
         auto settings = SmallExport(folder / "a.mov");
         settings.frames = kMost;
         (void)Export(Open(), settings);
     },
     "before the clip's time does"},
    {"AnExportThatIsStopped",
     [](const fs::path& folder) {
         (void)Export(Open(), SmallExport(folder / "a.wav"), [](std::int64_t, std::int64_t) { return false; });
     },
     "cancelled"},
    {"AnExportFromAPluginThatThrows",
     [](const fs::path& folder) {
         (void)Export(Open(TEST_BUNDLES "/ThrowsAnything.bundle"), SmallExport(folder / "a.wav"));
     },
     "other than a std::exception"},
};

class Failures : public test::TestFolder, public testing::WithParamInterface<Failure> {};

TEST_P(Failures, AreErrorsThatSayWhatAndWhy) {
    EXPECT_THAT([this] { GetParam().act(Folder()); },
                testing::ThrowsMessage<lineup::Error>(HasSubstr(GetParam().said)));
}

INSTANTIATE_TEST_SUITE_P(All, Failures, testing::ValuesIn(kFailures),
                         [](const auto& row) { return std::string(row.param.name); });

// The clip is gone without a word: nobody could do anything about it.
TEST(ClipOfAFaultyPlugin, GoesThoughThePluginDoesNotTakeItsDataBack) {
    EXPECT_EQ(Open(TEST_BUNDLES "/ThrowsAnything.bundle").NumChannels(), 2);
}

class CallersFailures : public test::TestFolder {};

// What a progress function throws is no failure of the library.
TEST_F(CallersFailures, GoBackToTheCallerAsTheyAre) {
    struct HadEnough {
        int at;
    };
    for (const char* const name : {"a.wav", "a.mov", "a.png"}) {
        try {
            (void)Export(Open(), SmallExport(Folder() / name),
                         [](std::int64_t done, std::int64_t) -> bool { throw HadEnough{static_cast<int>(done)}; });
            FAIL() << name << " was written";
        } catch (const HadEnough& thrown) {
            EXPECT_EQ(thrown.at, 0);
        }
        EXPECT_FALSE(fs::exists(Folder() / name));
    }
}

}  // namespace
