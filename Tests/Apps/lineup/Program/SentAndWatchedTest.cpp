// lineup send and lineup check --watch, as a shell puts one behind the other.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::HasSubstr;

class SentAndWatched : public test::TestFolder {};

// By a file and by a pipe, whole and with 200 packets missing on the way.
TEST_F(SentAndWatched, IsRightUnlessSomethingIsMissing) {
    const std::string program = "'" TEST_LINEUP "' ";
    const std::string options =
        " --ident ebu-stereo-1000 --video-codec none --audio-codec s302m --clock free --for 9 --quiet";
    const std::string flv = " --ident ebu-stereo-1000 --size 320x180 --clock free --for 9 --quiet";
    const std::string loses = "{ head -c 1880000; head -c 37600 > /dev/null; cat; }";
    const std::string pipe = program + "send -" + options;
    const std::string watch = program + "check - --watch";
    struct Row {
        std::string script;
        int exitCode;
        const char* summary;
    };
    for (const Row& row : {
             Row{program + "send sent.ts" + options + " && " + program + "check sent.ts --watch", 0, "nothing wrong"},
             Row{program + "send sent.flv" + flv + " && " + program + "check sent.flv --watch", 0, "nothing wrong"},
             Row{loses + " < sent.ts > lost.ts && " + program + "check lost.ts --watch", 1, "1 fault\n  0:04.06"},
             Row{pipe + " | " + loses + " | " + watch, 1, "1 fault\n  0:04.06"},
             Row{"true | " + watch, 3, "cannot tell"},
         }) {
        const auto result = test::RunProgram("cd '" + Folder().string() + "' && { " + row.script + "; }", Folder());
        EXPECT_EQ(result.exitCode, row.exitCode) << row.script << "\n" << result.out << result.err;
        EXPECT_THAT(result.out, HasSubstr(row.summary)) << row.script;
    }
}

}  // namespace
