#include <lineup/services/LocalizerSetup.h>
#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Core/Localizer.h"
#include "Host/Services/Text/UnicodeText.h"
#include "Tests/Host/Services/Text/MessageCatalogue.h"
#include "Tests/Support/LoadedBundleCopy.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

const std::string kKey = "$$$/Test/Greeting=Hello";

std::string TextOf(const std::string& key) {
    return zelcore::ToUtf8(zelcore::config::Localizer::Get().GetLocalizedString(key));
}

}  // namespace

// Catalogues of a folder of the test's own. Folders stay with the localiser, but this one is gone afterwards.
class LocalizerTest : public testing::Test {
protected:
    LocalizerTest() { Reset(); }
    ~LocalizerTest() override { zelcore::config::SetLanguage("C"); }

    // Makes the localiser read its catalogues anew.
    static void Reset(const std::string& language = "de_DE.UTF-8") { zelcore::config::SetLanguage(language); }

    void AddFile(const std::string& language, const std::string& bytes) {
        test::WriteFile(folder.Path() / language / "LC_MESSAGES" / "BarsAndTone.mo", bytes);
        zelcore::config::AddCatalogues(folder.Path());
    }

    void AddGerman(const std::string& text) { AddFile("de", test::MessageCatalogue().Add(kKey, text).Bytes()); }

    test::TemporaryFolder folder;
};

TEST_F(LocalizerTest, GivesTheDefaultTextOfAKeyWithoutATranslation) {
    EXPECT_EQ(TextOf(kKey), "Hello");
    EXPECT_EQ(TextOf("$$$/Test/Sum=a=b"), "a=b");
    EXPECT_EQ(TextOf("$$$/Test/Empty="), "");
}

TEST_F(LocalizerTest, GivesAKeyWithoutADefaultTextAndATextThatIsNoKeyThemselves) {
    EXPECT_EQ(TextOf("$$$/Test/Bare"), "$$$/Test/Bare");
    EXPECT_EQ(TextOf("Level=0"), "Level=0");
    EXPECT_EQ(TextOf(""), "");
}

TEST_F(LocalizerTest, GivesDefaultTextsInUnicode) {
    EXPECT_EQ(zelcore::config::Localizer::Get().GetLocalizedString("$$$/Test/Clef=\xF0\x9D\x84\x9E \xC3\xA9"),
              u"\U0001D11E \u00E9");
}

TEST_F(LocalizerTest, TranslatesAKeyByItsWholeText) {
    AddGerman(
        "Gr\xC3\xBC\xC3\x9F"
        "e");
    EXPECT_EQ(TextOf(kKey),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_EQ(TextOf("$$$/Test/Greeting=Hi"), "Hi");
}

TEST_F(LocalizerTest, TranslatesFromCataloguesWithHashCells) {
    test::MessageCatalogue catalogue;
    catalogue.Add(kKey, "Hallo").Add("$$$/Test/More=More", "Mehr").Add("$$$/Test/Less=Less", "Weniger").Hash();
    AddFile("de", catalogue.Bytes());
    EXPECT_EQ(TextOf(kKey), "Hallo");
    EXPECT_EQ(TextOf("$$$/Test/More=More"), "Mehr");
    EXPECT_EQ(TextOf("$$$/Test/Less=Less"), "Weniger");
    EXPECT_EQ(TextOf("$$$/Test/None=None"), "None");
}

TEST_F(LocalizerTest, TranslatesFromCataloguesInOtherCharacterSets) {
    test::MessageCatalogue latin1("Content-Type: text/plain; charset=ISO-8859-1\n");
    AddFile("de", latin1
                      .Add(kKey,
                           "Gr\xFC\xDF"
                           "e")
                      .Bytes());
    EXPECT_EQ(TextOf(kKey),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
}

TEST_F(LocalizerTest, PrefersTheCountryAndFallsBackOnTheLanguage) {
    AddFile("de", test::MessageCatalogue().Add(kKey, "Hallo").Bytes());
    AddFile("de_CH", test::MessageCatalogue().Add(kKey, "Sali").Bytes());
    Reset("de_CH.UTF-8");
    EXPECT_EQ(TextOf(kKey), "Sali");
    Reset("de_AT");
    EXPECT_EQ(TextOf(kKey), "Hallo");
    Reset("fr");
    EXPECT_EQ(TextOf(kKey), "Hello");
}

TEST_F(LocalizerTest, GivesTheDefaultTextsForC) {
    AddGerman("Hallo");
    for (const char* const language : {"C", "C.UTF-8", "POSIX"}) {
        Reset(language);
        EXPECT_EQ(TextOf(kKey), "Hello") << language;
    }
}

TEST_F(LocalizerTest, TakesNoPathForALanguage) {
    AddGerman("Hallo");
    for (const char* const language :
         {"../de", "fr/../de", "de/", ".", "..", "x_../../de", "x@/../de", "d:e", "d[e", "d{e"}) {
        Reset(language);
        EXPECT_EQ(TextOf(kKey), "Hello") << language;
    }
}

TEST_F(LocalizerTest, TakesRegionsThatAreNumbers) {
    AddGerman("Hallo");
    Reset("de_419");
    EXPECT_EQ(TextOf(kKey), "Hallo");
    Reset("419_DE");
    EXPECT_EQ(TextOf(kKey), "Hello");
}

TEST_F(LocalizerTest, TakesTheLanguageOfTheEnvironmentWhenToldSo) {
    AddGerman("Hallo");
    unsetenv("LC_ALL");
    unsetenv("LC_MESSAGES");
    setenv("LANG", "de_DE.UTF-8", 1);
    Reset("");
    EXPECT_EQ(TextOf(kKey), "Hallo");
    setenv("LC_MESSAGES", "fr_FR.UTF-8", 1);
    Reset("");
    EXPECT_EQ(TextOf(kKey), "Hello");
    setenv("LC_ALL", "de", 1);
    Reset("");
    EXPECT_EQ(TextOf(kKey), "Hallo");
    setenv("LC_ALL", "", 1);  // set to nothing is not set
    Reset("");
    EXPECT_EQ(TextOf(kKey), "Hello");
    unsetenv("LC_ALL");
    unsetenv("LC_MESSAGES");
    unsetenv("LANG");
    Reset("");
    EXPECT_EQ(TextOf(kKey), "Hello");
}

TEST_F(LocalizerTest, AsksFoldersInTheOrderTheyWereAdded) {
    test::TemporaryFolder second;
    AddGerman("Hallo");
    test::WriteFile(second.Path() / "de" / "LC_MESSAGES" / "BarsAndTone.mo",
                    test::MessageCatalogue().Add(kKey, "Servus").Add("$$$/Test/More=More", "Mehr").Bytes());
    zelcore::config::AddCatalogues(second.Path());
    EXPECT_EQ(TextOf(kKey), "Hallo");
    EXPECT_EQ(TextOf("$$$/Test/More=More"), "Mehr");
}

TEST_F(LocalizerTest, TranslatesFromBundlesWhileTheyAreLoaded) {
    {
        const test::LoadedBundleCopy bundle;
        bundle.AddResource("locale/de/LC_MESSAGES/BarsAndTone.mo", test::MessageCatalogue().Add(kKey, "Hallo").Bytes());
        EXPECT_EQ(TextOf(kKey), "Hallo");
    }
    EXPECT_EQ(TextOf(kKey), "Hello");
}

TEST_F(LocalizerTest, TranslatesTheTextsOfErrors) {
    AddGerman("Hallo \xE2\x82\xAC");
    const zelcore::config::Error error(kKey);
    EXPECT_STREQ(error.what(), "Hallo \xE2\x82\xAC");
    EXPECT_EQ(error.Key(), kKey);
    EXPECT_THROW(zelcore::config::ThrowError(kKey), zelcore::config::Error);
}

class BrokenCatalogue : public LocalizerTest {
protected:
    void ExpectDefaultText(const std::string& file, const std::string& what) {
        AddFile("de", file);
        EXPECT_EQ(TextOf(kKey), "Hello") << what;
    }

    // Two texts: the header is 28 bytes, the tables of keys and texts are at 28 and 44, strings at 60.
    const std::string sound = test::MessageCatalogue().Add(kKey, "Hallo").Bytes();
};

TEST_F(BrokenCatalogue, IsNoneWhenNothingIsBroken) {
    AddFile("de", sound);
    EXPECT_EQ(TextOf(kKey), "Hallo");
}

TEST_F(BrokenCatalogue, CutAtAnyByteTranslatesNothing) {
    for (std::size_t size = 0; size < sound.size(); ++size) {
        ExpectDefaultText(sound.substr(0, size), "cut to " + std::to_string(size));
    }
}

TEST_F(BrokenCatalogue, WithAWordThatPointsOutsideTranslatesNothing) {
    using test::WithWord;
    ExpectDefaultText(WithWord(sound, 0, 0x12345678), "magic number");
    ExpectDefaultText(WithWord(sound, 8, 0), "no texts");
    ExpectDefaultText(WithWord(sound, 8, 0xFFFFFFFF), "too many texts");
    ExpectDefaultText(WithWord(sound, 8, 0x20000001), "a table that wraps to 8 bytes");
    ExpectDefaultText(WithWord(sound, 12, 0xFFFFFFFC), "keys behind the end");
    ExpectDefaultText(WithWord(sound, 16, 0xFFFFFFFC), "texts behind the end");
    for (std::size_t entry = 28; entry < 60; entry += 8) {
        ExpectDefaultText(WithWord(sound, entry, 0xFFFFFFFF), "length at " + std::to_string(entry));
        ExpectDefaultText(WithWord(sound, entry + 4, 0xFFFFFFFF), "offset at " + std::to_string(entry));
    }
    ExpectDefaultText(WithWord(sound, 36, 3), "a key that does not end where it says");
    // The words at 4 and 8 hold 0 and 2, which hash cells may.
    ExpectDefaultText(WithWord(WithWord(sound, 20, 2), 24, 4), "too few hash cells");
    ExpectDefaultText(WithWord(sound, 20, 0x40000001), "hash cells that wrap to one");
    ExpectDefaultText(WithWord(WithWord(sound, 20, 3), 24, 0), "a hash cell of a text that is not there");
}

TEST_F(BrokenCatalogue, WithoutACharacterSetOrWithAnUnknownOneTranslatesNothing) {
    ExpectDefaultText(test::MessageCatalogue("").Add(kKey, "Hallo").Bytes(), "none");
    ExpectDefaultText(test::MessageCatalogue("Content-Type: text/plain; charset=KLINGON\n").Add(kKey, "Hallo").Bytes(),
                      "unknown");
}

TEST_F(BrokenCatalogue, WithAPluralRuleThatNestsTooDeeplyTranslatesNothing) {
    const std::string start = "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=2; plural=";
    test::MessageCatalogue usual(start + "n != 1;\n");
    AddFile("de", usual.Add(kKey, "Hallo").Bytes());
    ASSERT_EQ(TextOf(kKey), "Hallo");
    test::MessageCatalogue deep(start + std::string(500'000, '(') + ";\n");
    ExpectDefaultText(deep.Add(kKey, "Hallo").Bytes(), "deep");
}

TEST_F(BrokenCatalogue, LargerThanAMebibyteTranslatesNothing) {
    const std::size_t rest = (1U << 20U) - sound.size();
    AddFile("de", sound + std::string(rest, 'x'));
    EXPECT_EQ(TextOf(kKey), "Hallo");
    ExpectDefaultText(sound + std::string(rest + 1, 'x'), "one byte more");
}

TEST_F(BrokenCatalogue, LeavesTheOtherCataloguesAlone) {
    AddFile("de", sound.substr(0, 40));
    test::TemporaryFolder second;
    test::WriteFile(second.Path() / "de" / "LC_MESSAGES" / "BarsAndTone.mo", sound);
    zelcore::config::AddCatalogues(second.Path());
    EXPECT_EQ(TextOf(kKey), "Hallo");
}
