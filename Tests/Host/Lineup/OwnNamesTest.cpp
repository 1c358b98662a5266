// A program's own global names beside every header of the library. Headers below <lineup/interface/...> are the
// boundary that plug-ins share with other hosts, and have names of their own.
#include <gtest/gtest.h>

struct vexelFrame {
    int own = 1;
};
using vexel = vexelFrame;
struct imStdParms {
    int own = 2;
};
struct BarsAndToneInfo {
    int own = 3;
};
enum class IdentifierFormat { Own = 4 };
constexpr int EBUStereo1000 = 5;
constexpr int EBUStereo400 = 6;
constexpr int EBUMultichannel = 7;
constexpr int BLITS5_1 = 8;
constexpr int kChannelTypeMono = 9;
constexpr int kChannelTypeStereo = 10;
constexpr int kChannelType51 = 11;
constexpr int kImportInit = 12;
constexpr int kImportNoError = 13;
constexpr int kImportEntryName = 14;
constexpr int kPixelFormat_VUYA_32f = 15;
constexpr int kPixelFormat_VUYA_8u = 16;
constexpr int Mono = 17;
constexpr int Stereo = 18;
constexpr int Clip = 19;
constexpr int Error = 20;
constexpr int ChannelTypeFor(int own) {
    return own;
}
constexpr int vexelGetRowbytes(int own) {
    return own;
}
constexpr int IR_FillWithColor(int own) {
    return own;
}
constexpr int xImportEntry(int own) {
    return own;
}

#include "EveryHeader.h"

namespace {

TEST(LibraryHeaders, LeaveAProgramItsOwnGlobalNames) {
    EXPECT_EQ(vexel().own + imStdParms().own + BarsAndToneInfo().own + static_cast<int>(IdentifierFormat::Own), 10);
    EXPECT_EQ(EBUStereo1000 + EBUStereo400 + EBUMultichannel + BLITS5_1, 26);
    EXPECT_EQ(kChannelTypeMono + kChannelTypeStereo + kChannelType51, 30);
    EXPECT_EQ(kImportInit + kImportNoError + kImportEntryName + kPixelFormat_VUYA_32f + kPixelFormat_VUYA_8u, 70);
    EXPECT_EQ(Mono + Stereo + Clip + Error, 74);
    EXPECT_EQ(ChannelTypeFor(21) + vexelGetRowbytes(22) + IR_FillWithColor(23) + xImportEntry(24), 90);
    EXPECT_EQ(lineup::BarsAndToneInfo().identifierFormat, lineup::EBUStereo1000);
}

}  // namespace
