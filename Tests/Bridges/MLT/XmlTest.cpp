#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/PlugInSound.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using test::Difference;

class Xml : public test::TestFolder {
protected:
    // Writes `producer` as a project, and the text of it.
    std::string Save(mlt_profile_s& profile, mlt_producer_s& producer, const char* name) const {
        const std::string file = (Folder() / name).string();
        const test::Consumer consumer(mlt_factory_consumer(&profile, "xml", file.c_str()));
        mlt_consumer_connect(consumer.get(), MLT_PRODUCER_SERVICE(&producer));
        mlt_consumer_start(consumer.get());
        return test::ReadFile(file);
    }
    [[nodiscard]] test::Producer Load(mlt_profile_s& profile, const char* name) const {
        const std::string file = (Folder() / name).string();
        return test::Producer(mlt_factory_producer(&profile, "xml", file.c_str()));
    }
};

TEST_F(Xml, BringsBackTheSameClip) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"frequency", "440"}, {"level", "-20"}, {"card", "sd"}});
    mlt_producer_set_in_and_out(clip.get(), 12, 99);
    EXPECT_THAT(Save(*profile, *clip, "a.mlt"),
                testing::AllOf(testing::HasSubstr("barsandtone"), testing::HasSubstr("440")));

    const auto again = Load(*profile, "a.mlt");
    ASSERT_TRUE(again);
    EXPECT_EQ(mlt_producer_get_playtime(again.get()), 88);
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 440.0F;
    settings.amplitude = 0.1F;
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(again.get()), test::kNtsc, 88);
    EXPECT_EQ(Difference(sound, test::PlugInSound(settings, test::SampleAt(12, test::kNtsc, 48000),
                                                  static_cast<std::int64_t>(sound.front().size()))),
              "");
}

// An editor takes a resource for a file, and asks the person where it is. "<producer>" is the framework's own for none.
TEST_F(Xml, NamesNoFile) {
    const auto namesAFile = [](const std::string& text) {
        const std::string element = "<property name=\"resource\">";
        const std::size_t at = text.find(element);
        return at != std::string::npos && text.compare(at + element.size(), 16, "&lt;producer&gt;") != 0;
    };
    const auto profile = test::MakeProfile(test::kNtsc);
    for (const char* const argument : {static_cast<const char*>(nullptr), "blits"}) {
        const auto clip = test::MakeClip(*profile, {}, argument);
        EXPECT_FALSE(namesAFile(Save(*profile, *clip, "a.mlt")));
    }
    int samples = 0;
    for (const auto& sample : std::filesystem::directory_iterator(TEST_SAMPLES)) {
        EXPECT_FALSE(namesAFile(test::ReadFile(sample))) << sample.path();
        ++samples;
    }
    EXPECT_GT(samples, 0);
}

TEST_F(Xml, OfAClipAsItWasMadeIsReadWithoutAWarning) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile);
    Save(*profile, *clip, "a.mlt");
    const test::LogCapture log;
    const auto again = Load(*profile, "a.mlt");
    ASSERT_TRUE(again);
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(again.get()), test::kNtsc, 3);
    EXPECT_EQ(Difference(sound, test::PlugInSound(test::Tone(2), 0, static_cast<std::int64_t>(sound.front().size()))),
              "");
    EXPECT_EQ(log.Text(), "");
}

// As clips were written before: the folder of the project stands before the name.
TEST_F(Xml, TakesTheNameOfASoundFromAResource) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {}, (Folder() / "blits").c_str());
    EXPECT_STREQ(mlt_properties_get(MLT_PRODUCER_PROPERTIES(clip.get()), "sound"), "blits");
}

TEST_F(Xml, OfAClipMadeByNameKeepsWhatWasChangedLater) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {}, "blits");
    mlt_properties_set(MLT_PRODUCER_PROPERTIES(clip.get()), "sound", "ebu-5.1");
    Save(*profile, *clip, "a.mlt");
    const auto again = Load(*profile, "a.mlt");
    ASSERT_TRUE(again);
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(again.get()), test::kNtsc, 30, 48000, 6);
    EXPECT_EQ(Difference(sound, test::PlugInSound(test::IdentSettings(lineup::EBUMultichannel), 0,
                                                  static_cast<std::int64_t>(sound.front().size()))),
              "");
}

}  // namespace
