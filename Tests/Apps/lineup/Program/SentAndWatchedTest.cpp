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
    const std::string words = "cd '" + Folder().string() +
                              "' && send() { '" TEST_LINEUP
                              "' send \"$@\" --ident ebu-stereo-1000 --clock free --for 9 --quiet; } && "
                              "sound() { send \"$1\" --video-codec none --audio-codec s302m; } && "
                              "watch() { '" TEST_LINEUP
                              "' check \"$1\" --watch; } && "
                              "lose() { head -c 1880000; head -c 37600 > /dev/null; cat; } && { ";
    struct Row {
        const char* script;
        int exitCode;
        const char* summary;
    };
    for (const Row& row : {
             Row{"sound sent.ts && watch sent.ts", 0, "nothing wrong"},
             Row{"send sent.flv --size 320x180 && watch sent.flv", 0, "nothing wrong"},
             Row{"lose < sent.ts > lost.ts && watch lost.ts", 1, "1 fault\n  0:04.06"},
             Row{"sound - | lose | watch -", 1, "1 fault\n  0:04.06"},
             Row{"true | watch -", 3, "cannot tell"},
         }) {
        std::string script = words;
        script += row.script;
        script += "; }";
        const auto result = test::RunProgram(script, Folder());
        EXPECT_EQ(result.exitCode, row.exitCode) << row.script << "\n" << result.out << result.err;
        EXPECT_THAT(result.out, HasSubstr(row.summary)) << row.script;
    }
}

}  // namespace
