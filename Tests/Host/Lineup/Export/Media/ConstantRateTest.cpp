#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

namespace {

struct RatedPicture {
    int width = 0;
    int height = 0;
    lineup::Rational rate;
    lineup::Scan scan = lineup::Scan::Progressive;
    const char* level = "";  ///< as mediainfo has it
};

// What a level allows is what its headers may say: Main up to 30 frames of standard definition, High for all else.
constexpr std::array<RatedPicture, 6> kRatedPictures = {{
    {1920, 1080, {25, 1}, lineup::Scan::TopFieldFirst, "4:2:2@High"},
    {1920, 1080, {30000, 1001}, lineup::Scan::TopFieldFirst, "4:2:2@High"},
    {1280, 720, {60000, 1001}, lineup::Scan::Progressive, "4:2:2@High"},
    {720, 576, {25, 1}, lineup::Scan::TopFieldFirst, "4:2:2@Main"},
    {720, 576, {50, 1}, lineup::Scan::Progressive, "4:2:2@High"},
    {720, 486, {30000, 1001}, lineup::Scan::BottomFieldFirst, "4:2:2@Main"},
}};

std::vector<std::int64_t> PacketBytes(const std::filesystem::path& file) {
    std::vector<std::int64_t> sizes;
    for (const auto& packet : test::Packets(file)) {
        sizes.push_back(std::stoll(packet.at("size").get<std::string>()));
    }
    return sizes;
}

/// The time that each of so many pictures says it waits in the decoder's buffer, in ticks of 90 kHz.
std::vector<int> Delays(const std::vector<std::uint8_t>& file, std::size_t pictures) {
    std::vector<int> delays;
    for (std::size_t i = 0; i + 8 < file.size() && delays.size() < pictures; ++i) {
        if (file[i] == 0 && file[i + 1] == 0 && file[i + 2] == 1 && file[i + 3] == 0 && (file[i + 5] >> 3U & 7U) == 1) {
            delays.push_back((file[i + 5] & 7) << 13 | file[i + 6] << 5 | file[i + 7] >> 3);
        }
    }
    return delays;
}

TEST(ConstantRate, IsThatOfEveryMpeg2FileAndWhatReadersSay) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip();
    for (const RatedPicture& row : kRatedPictures) {
        SCOPED_TRACE(std::to_string(row.height) + " lines at " + std::to_string(row.rate.num));
        auto settings = test::SmallExport(folder / "a.mxf", 4);
        settings.width = row.width;
        settings.height = row.height;
        settings.frameRate = row.rate;
        settings.scan = row.scan;
        settings.overwrite = true;
        Export(clip, settings);
        const auto sizes = PacketBytes(settings.target);
        ASSERT_EQ(sizes.size(), 4U);
        const double share = 50e6 / 8 * row.rate.den / row.rate.num;
        EXPECT_EQ(std::accumulate(sizes.begin(), sizes.end(), std::int64_t{0}), static_cast<std::int64_t>(4 * share));
        for (const std::int64_t size : sizes) {
            EXPECT_LT(std::abs(static_cast<double>(size) - share), 1);
        }
        const int frame = static_cast<int>(std::ceil(90000.0 * row.rate.den / row.rate.num));
        EXPECT_EQ(Delays(test::ReadBytes(settings.target), 4), std::vector<int>(4, frame));
        EXPECT_EQ(test::MediaInfo(settings.target, "Video;%BitRate_Mode% %BitRate% %Format_Profile%"),
                  std::string("CBR 50000000 ") + row.level);
    }
}

}  // namespace
