#include <lineup/FormatTable.h>
#include <lineup/UsageError.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

// Every kind of file with every codec of sound that it offers, in all layouts and arrangements of tracks.
namespace {

using nlohmann::json;

// What stands where in each header of a track: whether it is enabled, and which group of alternatives it is in.
struct TrackHeader {
    bool enabled = false;
    int group = 0;
    friend bool operator==(const TrackHeader&, const TrackHeader&) = default;
};

std::vector<TrackHeader> TrackHeaders(const std::vector<std::uint8_t>& file) {
    constexpr std::string_view kName = "tkhd";
    std::vector<TrackHeader> headers;
    for (auto at = file.begin(); (at = std::search(at, file.end(), kName.begin(), kName.end())) != file.end(); ++at) {
        headers.push_back({.enabled = (at[7] & 1) != 0, .group = at[38] * 256 + at[39]});
    }
    return headers;
}

// How the atom "chan" says which channel is which: its tag, or 0 without one.
std::uint32_t LayoutTag(const std::vector<std::uint8_t>& file) {
    constexpr std::string_view kName = "chan";
    const auto at = std::search(file.begin(), file.end(), kName.begin(), kName.end());
    std::uint32_t tag = 0;
    for (std::ptrdiff_t i = 8; i < 12 && at != file.end(); ++i) {
        tag = tag << 8U | at[i];
    }
    return tag;
}

constexpr std::uint32_t kLRCLfeLsRs = 121U << 16U | 6U;
constexpr std::uint32_t kCLRLsRsLfe = 124U << 16U | 6U;  // the order of AAC's and ALAC's own data

class SoundTable : public testing::Test {
protected:
    // The streams of sound in the file that these settings make; none where they are refused in advance.
    std::vector<json> Streams(const lineup::ExportSettings& settings, std::uint32_t channels) {
        try {
            Export(test::OpenClip(channels), settings);
        } catch (const lineup::UsageError&) {
            return {};
        }
        return test::Streams(settings.target, "audio", false);
    }

    lineup::ExportSettings Settings(const lineup::FileFormat& format, std::string_view codec, bool monoTracks) const {
        auto settings = test::SmallExport(mFolder / ("a." + std::string(format.extension)), 2);
        settings.width = 64;
        settings.height = 36;
        settings.audioCodec = codec;
        settings.monoTracks = monoTracks;
        settings.overwrite = true;
        return settings;
    }

private:
    test::TemporaryFolder mFolder;
};

TEST_F(SoundTable, WhatIsOfferedIsWrittenOrRefusedInAdvance) {
    int written = 0;
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        for (const std::string_view codec : format.audioCodecs) {
            for (const auto& [channels, monoTracks] : {std::pair(1U, false), {6U, false}, {6U, true}}) {
                const auto streams = Streams(Settings(format, codec, monoTracks), channels);
                const std::size_t tracks = monoTracks || format.onlyMonoTracks ? channels : 1;
                if (!streams.empty()) {
                    EXPECT_EQ(streams.size(), tracks) << format.extension << ' ' << codec << ' ' << channels;
                }
                for (const json& stream : streams) {
                    EXPECT_EQ(stream.at("channels"), channels / tracks) << format.extension << ' ' << codec;
                }
                written += streams.empty() ? 0 : 1;
            }
        }
    }
    // mov 6 x 3, mkv 5 x 3 but four without a layout, mp4 2 x 2, ts 1 x 2, mxf 2 x 3, wav 4 x 2
    EXPECT_EQ(written, 18 + 11 + 4 + 2 + 6 + 8);
}

TEST_F(SoundTable, AMoviesMonoTracksAllPlay) {
    for (const std::string_view codec : {"pcm-s24", "alac", "aac"}) {
        const auto settings = Settings(*lineup::FindFileFormat("a.mov"), codec, true);
        ASSERT_EQ(Streams(settings, 6).size(), 6U);
        const auto headers = TrackHeaders(test::ReadBytes(settings.target));
        EXPECT_EQ(headers, std::vector<TrackHeader>(7, TrackHeader{.enabled = true, .group = 0})) << codec;
    }
}

TEST_F(SoundTable, AMoviesLayoutIsInTheOrderOfItsData) {
    struct Case {
        const char* name;
        std::string_view codec;
        std::uint32_t tag;
    };
    for (const Case& of : {Case{"a.mov", "pcm-s24", kLRCLfeLsRs}, Case{"a.mov", "aac", kCLRLsRsLfe},
                           Case{"a.mov", "alac", kCLRLsRsLfe}, Case{"a.mp4", "alac", kCLRLsRsLfe}}) {
        const auto settings = Settings(*lineup::FindFileFormat(of.name), of.codec, false);
        ASSERT_EQ(Streams(settings, 6).size(), 1U);
        EXPECT_EQ(LayoutTag(test::ReadBytes(settings.target)), of.tag) << of.name << ' ' << of.codec;
    }
}

TEST_F(SoundTable, MatroskasTracksArePlayedUnlessAPersonChoosesOthers) {
    const auto settings = Settings(*lineup::FindFileFormat("a.mkv"), "flac", false);
    Export(test::OpenClip(), settings);
    for (const char* const kind : {"video", "audio"}) {
        EXPECT_EQ(test::Streams(settings.target, kind, false).at(0).at("disposition").at("default"), 1) << kind;
    }
}

}  // namespace
