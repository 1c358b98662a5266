#include <lineup/services/LocalizerSetup.h>
#include "Apps/studio/Text/CatalogueTranslator.h"
#include "Apps/studio/Text/FaultSentences.h"
#include "Tests/Apps/studio/Check/SaidBySources.h"
#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <filesystem>

namespace {

using studio::FaultSentence;
using test::SaidBySources;

// What stands in the sources of the check and is not said of a recording.
constexpr std::array kElsewhere = {
    "CheckSettings.cpp",  // of the options of the command line
    "CheckReport.cpp",    // the kinds' meaning, for --help
    "Watch",              // of a feed that goes on, which the studio does not watch
    "RtpSound",           // of a URL; the studio opens files
    "Protocol",           // of a decoder that is broken itself
    "Decoder/Main.cpp",
    "Check.cpp",  // of a library that is not installed
};
constexpr std::array kNotShown = {"the check was stopped", "the decoder was stopped"};

std::vector<SaidBySources::Text> SaidByTheCheck() {
    SaidBySources said;
    const std::filesystem::path folder = TEST_SOURCE_DIR "/Host/Lineup/Check";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string file = entry.path().lexically_relative(folder);
        const auto isPartOfName = [&file](const char* part) { return file.find(part) != std::string::npos; };
        if (entry.path().extension() == ".cpp" && std::ranges::none_of(kElsewhere, isPartOfName)) {
            said.Add(file, test::ReadFile(entry.path()));
        }
    }
    std::vector<SaidBySources::Text> texts = said.Texts();
    std::ranges::sort(texts, {}, &SaidBySources::Text::text);
    const auto same = std::ranges::unique(texts, {}, &SaidBySources::Text::text);
    texts.erase(same.begin(), same.end());
    std::erase_if(texts, [](const SaidBySources::Text& text) {
        return std::ranges::find(kNotShown, text.text) != kNotShown.end();
    });
    return texts;
}

class CheckSentences : public testing::Test {
protected:
    CheckSentences() {
        static_cast<void>(test::ThePlugin());  // which brings the catalogues
        QCoreApplication::installTranslator(&mTranslator);
    }
    ~CheckSentences() override { zelcore::config::SetLanguage("C"); }

    // What the window says for it. What is no sentence is said as the cause of something.
    static QString Shown(std::string text) {
        text.erase(0, text.find_first_not_of(' '));
        const bool isSentence = std::islower(static_cast<unsigned char>(text.front())) == 0 && text.ends_with('.');
        return FaultSentence(QString::fromStdString(isSentence ? text : "There is no sound: " + text + "."));
    }

private:
    studio::CatalogueTranslator mTranslator;
};

// Names and units are the same in every language; any other word in Latin letters is one that nobody translated.
TEST_F(CheckSentences, AreSaidInEachLanguageWhateverTheCheckFinds) {
    static const QRegularExpression kName(
        "Landlock|seccomp|FFmpeg|SIG[A-Z]*|LEVEL|SMPTE|NTSC|AAC|DTS|LFE|dBFS|kHz|sRGB");
    static const QRegularExpression kWord("[A-Za-z]{3,}");
    const auto texts = SaidByTheCheck();
    EXPECT_GT(texts.size(), 200U);
    for (const auto& [file, text] : texts) {
        for (const char* const language : {"de", "es", "fr"}) {
            zelcore::config::SetLanguage(language);
            EXPECT_FALSE(Shown(text).contains(QString::fromStdString(text).trimmed()))
                << language << ", " << file << ": " << text;
        }
        zelcore::config::SetLanguage("ja");
        const QString japanese = Shown(text);
        EXPECT_FALSE(QString(japanese).remove(kName).contains(kWord))
            << file << ": " << text << "\n  is said as " << japanese.toStdString();
    }
}

// What explains the patches as well is a list of sentences, with commas of their own.
TEST_F(CheckSentences, OfAListAreSaidOneByOne) {
    zelcore::config::SetLanguage("de");
    EXPECT_EQ(
        Shown(
            "Another explanation fits the patches as well: the numbers are those of BT.601, where BT.709 is due, black "
            "lies at 7.5 %: NTSC's setup of 7.5 %, there is no colour."),
        "Ebenso gut erklärt die Felder: Die Werte sind die von BT.601, wo BT.709 sein muss; Schwarz liegt bei "
        "7.5 %: die Schwarzabhebung von 7.5 % von NTSC; Es gibt keine Farbe.");
    EXPECT_EQ(Shown("The recording cannot be read: it is of no kind that the FFmpeg libraries know (moov atom not "
                    "found)."),
              "Die Aufnahme lässt sich nicht lesen: sie ist von keiner Art, die die FFmpeg-Bibliotheken kennen (moov "
              "atom not found).");
}

}  // namespace
