#include "Host/Interface/Core/TextConversion.h"
#include "Host/Services/Text/UnicodeText.h"

#include <gtest/gtest.h>

#include <string>

using zelcore::utility::AsciiToUTF16;

TEST(AsciiToUTF16, KeepsEveryAsciiCharacter) {
    std::string ascii;
    Brio::String expected;
    for (int c = 0; c < 128; ++c) {
        ascii.push_back(static_cast<char>(c));
        expected.push_back(static_cast<char16_t>(c));
    }
    EXPECT_EQ(AsciiToUTF16(ascii), expected);
    EXPECT_EQ(AsciiToUTF16(""), u"");
}

TEST(AsciiToUTF16, ReplacesEveryOtherByte) {
    EXPECT_EQ(AsciiToUTF16("a\x80\xFF"), u"a\uFFFD\uFFFD");
}

TEST(UnicodeText, GoesToUtf8AndBack) {
    const Brio::String text = u"a\u00E9\u20AC\U0001D11E";
    EXPECT_EQ(zelcore::ToUtf8(text), "a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E");
    EXPECT_EQ(zelcore::FromUtf8(zelcore::ToUtf8(text)), text);
    EXPECT_EQ(zelcore::ToUtf8Strictly(text), zelcore::ToUtf8(text));
}

TEST(UnicodeText, LeavesOutWhatIsNoText) {
    const Brio::String half{u'a', u'b', char16_t{0xD800}};
    EXPECT_EQ(zelcore::ToUtf8(half), "ab");
    EXPECT_EQ(zelcore::ToUtf8Strictly(half), std::nullopt);
    EXPECT_EQ(zelcore::FromUtf8("a\xFF"
                                "b"),
              u"ab");
}
