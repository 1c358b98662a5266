// Recordings that are read from a place on.
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Host/Lineup/Check/Reader/MadeRecordings.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace {

using lineup::DecodedPicture;
using lineup::RecordingReader;

constexpr double kFrame = 1.0 / 25;  // s

struct Seen {
    std::optional<DecodedPicture> last;
    int taken = 0;
};

// Takes the pictures up to the first that is later than a place.
class UpTo : public lineup::PictureListener {
public:
    explicit UpTo(double seconds) : mSeconds(seconds) {}
    void OnFacts(const lineup::decoding::Picture& /*facts*/) override {}
    void OnEnd(const lineup::decoding::PictureEnd& /*end*/) override {}
    bool OnPicture(const DecodedPicture& picture) override {
        ++seen.taken;
        if (picture.head.seconds > mSeconds + kFrame / 2) {
            return false;
        }
        seen.last = picture;
        return true;
    }

    Seen seen;

private:
    double mSeconds;
};

class FromAPlace : public test::MadeRecordings {
protected:
    // Moving pictures, every one of which tells its number, in groups of 2 s with pictures that need later ones, and
    // sound that begins later.
    std::string Film(const std::string& file, const std::string& codecs) {
        return Make(
            "-f lavfi -i testsrc2=s=96x64:r=25 -itsoffset 0.2 -f lavfi -i \"aevalsrc=t/32:s=8000\" -t 5 " + codecs,
            file);
    }

    static Seen PictureAt(const std::string& file, double seconds, std::optional<double> from) {
        lineup::DecoderSettings settings;
        settings.wantsPicture = true;
        settings.wantsSound = !from;
        settings.from = from;
        UpTo pictures(seconds);
        RecordingReader::Open(file, settings, {}, &pictures)->ReadPictures();
        return pictures.seen;
    }
};

TEST_F(FromAPlace, ThePictureIsTheOneThatIsThereWhenAllIsRead) {
    for (const auto& file : {Film("groups.mkv", "-g 50 -bf 2 -c:v libx264 -c:a pcm_s16le"),
                             Film("groups.ts", "-g 50 -bf 2 -c:v mpeg2video -c:a mp2")}) {
        for (const double seconds : {0.0, 1.02, 2.9, 4.9}) {
            const Seen whole = PictureAt(file, seconds, {});
            const Seen near = PictureAt(file, seconds, seconds);
            ASSERT_TRUE(whole.last && near.last) << file << " at " << seconds;
            EXPECT_NEAR(near.last->head.seconds, whole.last->head.seconds, 1e-6) << file << " at " << seconds;
            EXPECT_EQ(near.last->planes[0], whole.last->planes[0]) << file << " at " << seconds;
            EXPECT_LE(near.taken, 3) << file << " at " << seconds;  // it, and what shows where it ends
        }
    }
}

// Each sample says its time.
TEST_F(FromAPlace, TheSoundStandsWhereItStandsWhenAllIsRead) {
    const std::string file = Film("sound.mov", "-c:v mjpeg -c:a pcm_s24le");
    lineup::DecoderSettings settings;
    settings.from = 3.3;
    const auto reader = RecordingReader::Open(file, settings);
    std::vector<float> samples(8000);
    const std::array<float*, 1> inputs = {samples.data()};
    ASSERT_EQ(reader->Read(inputs, samples.size()), samples.size());
    for (std::size_t i = 2000; i < samples.size(); i += 500) {
        EXPECT_NEAR(samples[i] * 32, 3.3 + static_cast<double>(i) / 8000, 1.0 / 8000) << i;
    }
}

}  // namespace
