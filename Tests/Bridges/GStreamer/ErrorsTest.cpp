// What a pipeline says of mistakes.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

std::string ErrorOf(const std::string& description) {
    return test::PlayOnce(description).error;
}

class Errors : public test::TestFolder {};

TEST_F(Errors, NameWhatIsWrongAndWhatWouldBeRight) {
    struct Mistake {
        std::string description;
        std::string sentence;
    };
    const std::string missing = (Folder() / "none.bundle").string();
    const std::vector<Mistake> mistakes = {
        {"lineupaudiosrc frequency=5000 ! audio/x-raw,rate=8000",
         "frequency 5000: must be 1 Hz or more, and below 4000 Hz"},
        {"lineupaudiosrc ident=blits level=-20", "level -20: has no effect on the BLITS ident"},
        {"lineupaudiosrc plugin=" + missing, "none.bundle"},
        {"lineupaudiosrc settings=" + (Folder() / "none.batn").string(), "none.batn"},
        {"lineupaudiosrc ident=blits settings=a.batn", "leave out ident, frequency and level"},
        {"lineupvideosrc ! video/x-raw,colorimetry=bt2020", "bt2020: the matrix must be that of bt601 or bt709"},
        {"lineupvideosrc ! video/x-raw,format=I420,height=486,interlace-mode=interleaved",
         "height 486: must be a multiple of 4 for interlaced 4:2:0"},
    };
    for (const Mistake& mistake : mistakes) {
        EXPECT_THAT(ErrorOf(mistake.description), HasSubstr(mistake.sentence)) << mistake.description;
    }
}

}  // namespace
