#include "Host/Lineup/Check/Reader/DecodedTracks.h"
#include "Tests/Host/Lineup/Check/Reader/Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using lineup::DamagedStretch;
using lineup::DecodedTracks;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

DecodedTracks Tracks(const std::vector<std::uint32_t>& channels) {
    std::vector<lineup::decoding::Track> facts;
    for (const std::uint32_t count : channels) {
        facts.push_back(test::Words::RightTrack(static_cast<std::uint32_t>(facts.size()), count));
    }
    return DecodedTracks(std::move(facts));
}

void Add(DecodedTracks& tracks, std::uint32_t track, std::int64_t position, const std::vector<float>& values,
         std::uint32_t channels = 1) {
    tracks.Add(lineup::DecodedSamples{.head = {.track = track,
                                               .channels = channels,
                                               .count = static_cast<std::uint32_t>(values.size() / channels),
                                               .reserved = 0,
                                               .position = position},
                                      .values = values});
}

std::vector<std::vector<float>> TakeAll(DecodedTracks& tracks) {
    std::vector<std::vector<float>> taken(static_cast<std::size_t>(tracks.Inputs()),
                                          std::vector<float>(tracks.Waiting()));
    std::vector<float*> pointers;
    for (auto& input : taken) {
        pointers.push_back(input.data());
    }
    tracks.Take(pointers, tracks.Waiting());
    return taken;
}

auto Stretch(std::int64_t position, std::int64_t count, const std::string& reason) {
    return AllOf(Field(&DamagedStretch::position, position), Field(&DamagedStretch::count, count),
                 Field(&DamagedStretch::reason, reason));
}

TEST(DecodedTracks, PutChannelsBesideEachOtherInTheOrderOfTheTracks) {
    DecodedTracks tracks = Tracks({2, 1});
    EXPECT_EQ(tracks.Inputs(), 3);
    Add(tracks, 1, 0, {5, 6});
    EXPECT_EQ(tracks.Waiting(), 0U);
    Add(tracks, 0, 0, {1, 2, 3, 4}, 2);
    EXPECT_THAT(TakeAll(tracks), ElementsAre(ElementsAre(1, 2), ElementsAre(3, 4), ElementsAre(5, 6)));
}

TEST(DecodedTracks, WaitForTheTrackThatIsBehind) {
    DecodedTracks tracks = Tracks({1, 1});
    Add(tracks, 0, 0, {1, 2, 3});
    Add(tracks, 1, 0, {7});
    EXPECT_THAT(TakeAll(tracks), ElementsAre(ElementsAre(1), ElementsAre(7)));
    Add(tracks, 1, 1, {8, 9, 10});
    EXPECT_THAT(TakeAll(tracks), ElementsAre(ElementsAre(2, 3), ElementsAre(8, 9)));
}

TEST(DecodedTracks, AreSilentWhereOneBeginsLaterOrEndsEarlier) {
    DecodedTracks tracks = Tracks({1, 1});
    Add(tracks, 0, 0, {1, 2, 3, 4});
    Add(tracks, 1, 1, {8});
    tracks.PadAll();
    EXPECT_THAT(TakeAll(tracks), ElementsAre(ElementsAre(1, 2, 3, 4), ElementsAre(0, 8, 0, 0)));
    EXPECT_THAT(tracks.Damage(), IsEmpty());
}

TEST(DecodedTracks, GoOnWithoutATrackThatFallsTooFarBehind) {
    DecodedTracks tracks = Tracks({1, 1});
    const std::vector<float> block(1U << 18, 0.25F);
    std::int64_t position = 0;
    while (tracks.Waiting() == 0) {
        Add(tracks, 0, position, block);
        position += 1 << 18;
        ASSERT_LE(position * 4, static_cast<std::int64_t>(DecodedTracks::kMostBytes + block.size() * 4));
    }
    EXPECT_EQ(tracks.Waiting(), static_cast<std::size_t>(position));
    Add(tracks, 1, 0, {1, 2, 3});
    EXPECT_THAT(tracks.Damage(), ElementsAre(Stretch(0, 3, "the tracks lie too far apart in the recording")));
}

TEST(DecodedTracks, ListDamageWithItsPlaces) {
    DecodedTracks tracks = Tracks({1});
    tracks.Add(
        lineup::decoding::Damage{.track = 0, .reserved = 0, .position = 10, .count = 5, .reason = {'b', 'a', 'd'}});
    tracks.Add(
        lineup::decoding::Damage{.track = 0, .reserved = 0, .position = 15, .count = 5, .reason = {'b', 'a', 'd'}});
    tracks.Add(
        lineup::decoding::Damage{.track = 0, .reserved = 0, .position = 20, .count = 5, .reason = {'o', 'd', 'd'}});
    tracks.Add(
        lineup::decoding::Damage{.track = 0, .reserved = 0, .position = 99, .count = 0, .reason = {'o', 'd', 'd'}});
    EXPECT_THAT(tracks.Damage(), ElementsAre(Stretch(10, 10, "bad"), Stretch(20, 5, "odd"), Stretch(99, 0, "odd")));
}

TEST(DecodedTracks, ListNoMoreDamageThanAPersonReads) {
    DecodedTracks tracks = Tracks({1});
    for (std::int64_t i = 0; i < 5000; ++i) {
        tracks.Add(
            lineup::decoding::Damage{.track = 0, .reserved = 0, .position = 10 * i, .count = 1, .reason = {'x'}});
    }
    EXPECT_EQ(tracks.Damage().size(), DecodedTracks::kMostStretches);
}

TEST(DecodedTracks, CountSamplesThatAreNoNumbersAsDamage) {
    DecodedTracks tracks = Tracks({1});
    Add(tracks, 0, 0, {1, NAN});
    EXPECT_THAT(TakeAll(tracks), ElementsAre(ElementsAre(1, 0)));
    EXPECT_THAT(tracks.Damage(), ElementsAre(Stretch(0, 2, "samples are no numbers")));
}

}  // namespace
