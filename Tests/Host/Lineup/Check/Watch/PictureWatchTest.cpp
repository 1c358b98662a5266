// Pictures that change on the way, given to the watch one by one.
#include <lineup/Clip.h>
#include "Host/Lineup/Check/Watch/PictureWatch.h"
#include "Host/Lineup/Picture/FloatPicture.h"
#include "Tests/Support/CountedHeap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using lineup::DecodedPicture;
using lineup::WatchedFault;

constexpr int kFrameWidth = 320;
constexpr int kFrameHeight = 180;
constexpr double kFrameRate = 5;

std::shared_ptr<const lineup::Importer> TheImporter() {
    static const auto kImporter = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return kImporter;
}

DecodedPicture Card() {
    const lineup::FloatPicture card =
        lineup::ReadPicture(lineup::Clip(TheImporter()), kFrameWidth, kFrameHeight, lineup::Card::SD);
    DecodedPicture picture;
    picture.head.width = kFrameWidth;
    picture.head.height = kFrameHeight;
    picture.head.bits = 10;
    picture.head.planes = 3;
    for (int plane = 0; plane < 3; ++plane) {
        const double zero = plane == 0 ? 64 : 512;
        const double scale = plane == 0 ? 876 : 896;
        for (int y = 0; y < kFrameHeight; ++y) {
            for (std::size_t x = 0; x < kFrameWidth; ++x) {
                picture.planes.at(static_cast<std::size_t>(plane))
                    .push_back(static_cast<std::uint16_t>(
                        std::lround(zero + scale * static_cast<double>(card.Line(plane, y)[x]))));
            }
        }
    }
    return picture;
}

DecodedPicture WithPlane(DecodedPicture picture, std::size_t plane, const std::function<double(double)>& change) {
    for (std::uint16_t& code : picture.planes.at(plane)) {
        code = static_cast<std::uint16_t>(std::lround(change(code)));
    }
    return picture;
}

DecodedPicture Black() {
    DecodedPicture black = Card();
    std::ranges::fill(black.planes[0], std::uint16_t{64});
    std::ranges::fill(black.planes[1], std::uint16_t{512});
    std::ranges::fill(black.planes[2], std::uint16_t{512});
    return black;
}

struct Scene {
    double until;  // s
    const DecodedPicture* picture;
};

struct Watched {
    lineup::WatchReport report;
    std::vector<lineup::WatchedCycle> cycles;
    std::size_t told = 0;
};

void Show(lineup::PictureWatch& watch, const std::vector<Scene>& scenes) {
    watch.OnFacts({.frameRate = kFrameRate, .flags = lineup::decoding::kLossless, .isStill = 0, .codec = {}});
    int frame = 0;
    for (const Scene& scene : scenes) {
        for (DecodedPicture picture = *scene.picture; frame / kFrameRate < scene.until; ++frame) {
            picture.head.seconds = frame / kFrameRate;
            watch.OnPicture(picture);
        }
    }
}

Watched WatchScenes(const std::vector<Scene>& scenes, const std::string& card = "auto") {
    Watched watched;
    const lineup::WatchListener listener{.onCycle = [&](const auto& cycle) { watched.cycles.push_back(cycle); },
                                         .onBegins = [&](const auto& /*fault*/) { ++watched.told; },
                                         .onEnds = {},
                                         .progress = {}};
    lineup::CheckSettings settings;
    settings.card = card;
    lineup::Alignment alignment;
    lineup::PictureWatch watch(TheImporter(), settings, listener, watched.report, alignment);
    watch.TellCycles();
    Show(watch, scenes);
    watch.Finish();
    return watched;
}

struct PictureDue {
    const char* id;
    double begins;
    double ends;  // 0: it stands to the end, or is a moment
};

TEST(PictureWatch, TellsWhenAFaultBeginsAndWhenItEnds) {
    const DecodedPicture card = Card();
    const DecodedPicture black = Black();
    const DecodedPicture dark = WithPlane(card, 0, [](double code) { return 64 + (code - 64) * 0.9; });
    const DecodedPicture pale = WithPlane(card, 1, [](double code) { return 512 + (code - 512) * 0.5; });
    const DecodedPicture darker = WithPlane(card, 0, [](double code) { return 64 + (code - 64) * 0.97; });
    const Watched watched = WatchScenes({{8, &card},
                                         {8.6, &black},
                                         {15, &card},
                                         {19, &black},
                                         {27, &card},
                                         {27.4, &pale},  // a fade
                                         {37, &dark},
                                         {50, &card},
                                         {60, &darker}});  // too little to be seen at once
    const std::vector<PictureDue> due = {
        {"picture-changes", 8, 0}, {"card-missing", 15, 19}, {"gain-wrong", 27, 37}, {"gain-wrong", 50, 0}};
    ASSERT_EQ(watched.report.faults.size(), due.size());
    EXPECT_EQ(watched.told, due.size());
    for (std::size_t i = 0; i < due.size(); ++i) {
        const WatchedFault& fault = watched.report.faults[i];
        EXPECT_EQ(fault.fault.id, due[i].id);
        EXPECT_NEAR(fault.begins, due[i].begins, i == 3 ? lineup::PictureWatch::kStretch : 0.01) << due[i].id;
        EXPECT_EQ(fault.isMoment, due[i].id == std::string("picture-changes"));
        if (due[i].ends > 0) {
            EXPECT_NEAR(fault.ends.value_or(0), due[i].ends, 0.01) << due[i].id;
        }
    }
    EXPECT_EQ(watched.report.card, "sd");
    ASSERT_EQ(watched.cycles.size(), 15U);
    for (const lineup::WatchedCycle& cycle : watched.cycles) {
        const bool isFaulty = std::ranges::any_of(watched.report.faults, [&cycle](const WatchedFault& fault) {
            return fault.begins < cycle.end &&
                   fault.ends.value_or(cycle.end) > cycle.start - (fault.isMoment ? 1e9 : 0);
        });
        EXPECT_EQ(cycle.verdict == lineup::CheckVerdict::Right, cycle.faults.empty()) << cycle.number;
        EXPECT_TRUE(isFaulty || cycle.faults.empty()) << cycle.number;
    }
}

TEST(PictureWatch, SaysNothingOfPicturesThatShowNoCardUnlessOneIsDue) {
    const DecodedPicture black = Black();
    const DecodedPicture grey = WithPlane(black, 0, [](double) { return 400; });
    const std::vector<Scene> scenes = {{4, &black}, {7, &grey}, {7.4, &black}, {9, &grey}};
    EXPECT_EQ(WatchScenes(scenes).report.faults.size(), 0U);
    const Watched due = WatchScenes(scenes, "hd");
    ASSERT_EQ(due.report.faults.size(), 1U);
    EXPECT_EQ(due.report.faults[0].fault.id, "card-missing");
    EXPECT_EQ(due.report.faults[0].begins, 0);
}

TEST(PictureWatch, SaysWhenNoMorePicturesCome) {
    const DecodedPicture card = Card();
    lineup::WatchReport report;
    const lineup::WatchListener deaf;
    lineup::Alignment alignment;
    lineup::PictureWatch watch(TheImporter(), {}, deaf, report, alignment);
    Show(watch, {{10, &card}});
    watch.GoOnTo(24);
    watch.GoOnTo(26);
    watch.Finish();
    ASSERT_EQ(report.faults.size(), 1U);
    EXPECT_EQ(report.faults[0].fault.id, "card-missing");
    EXPECT_NEAR(report.faults[0].begins, 10, 0.01);
}

}  // namespace
