#include <lineup/ChannelLayout.h>
#include <lineup/Exporter.h>
#include <lineup/FormatTable.h>
#include <lineup/Idents.h>
#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>
#include <lineup/services/LocalizerSetup.h>
#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Sound/SpeakerMap.h"
#include "Apps/studio/Text/CatalogueTranslator.h"
#include "Apps/studio/Text/Counted.h"
#include "Apps/studio/Text/ProblemPatterns.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <algorithm>
#include <set>
#include <string>

namespace {

using studio::CatalogueTranslator;
using test::DialogHands;
using test::SaidBy;
using test::StudioTest;
using testing::HasSubstr;

constexpr std::array<const char*, 4> kCatalogues = {"de", "es", "fr", "ja"};

QString ReadSource(const QString& name) {
    QFile file(QString(TEST_SOURCE_DIR "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

// What adjacent string literals of C++ say.
QString SaidByLiterals(const QString& literals) {
    static const QRegularExpression kLiteral(R"re("((?:[^"\\]|\\.)*)")re");
    static const QRegularExpression kCode(R"(\\u([0-9A-F]{4}))");
    QString text;
    for (auto match = kLiteral.globalMatch(literals); match.hasNext();) {
        text += match.next().captured(1);
    }
    for (auto code = kCode.match(text); code.hasMatch(); code = kCode.match(text)) {
        text.replace(code.captured(0), QChar(code.captured(1).toUShort(nullptr, 16)));
    }
    return text.replace("\\\"", "\"");
}

// Every text that the sources of the studio mark as one to be translated.
QStringList TextsOfTheSources() {
    static const QRegularExpression kMarked(
        R"re((?:\btr\(|\b(?:translate|QT_TRANSLATE_NOOP)\(\s*"\w+",)\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re");
    QStringList texts;
    for (QDirIterator files(TEST_SOURCE_DIR "/Apps/studio", {"*.cpp", "*.h"}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();) {
        const QString source =
            ReadSource("Apps/studio/" + QDir(TEST_SOURCE_DIR "/Apps/studio").relativeFilePath(files.next()));
        for (auto match = kMarked.globalMatch(source); match.hasNext();) {
            texts += SaidByLiterals(match.next().captured(1));
        }
    }
    return texts;
}

QString Of(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// And those that it shows out of the library's tables.
QStringList TextsOfTables() {
    QStringList texts;
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        texts += Of(format.description);
    }
    for (const lineup::VideoCodec& codec : lineup::VideoCodecs()) {
        texts += Of(codec.description);
    }
    for (const lineup::AudioCodec& codec : lineup::AudioCodecs()) {
        texts += Of(codec.description);
    }
    for (const lineup::ChannelLayout& layout : lineup::ChannelLayouts()) {
        texts += Of(layout.name);
    }
    for (const lineup::Ident& ident : lineup::Idents()) {
        texts += Of(ident.title);
    }
    for (const auto& [clip, device] : {std::pair(6, 2), std::pair(2, 1), std::pair(6, 1), std::pair(4, 2)}) {
        texts += QString::fromStdString(studio::SpeakerMap(clip, device).Notice());
    }
    return texts;
}

TEST(Texts, EveryCatalogueHasEachText) {
    const QStringList texts = TextsOfTheSources() + TextsOfTables();
    EXPECT_GT(texts.size(), 200);
    for (const char* const language : kCatalogues) {
        const QString catalogue = ReadSource(QString("Resources/locale/%1.po").arg(language));
        for (QString text : texts) {
            text.replace("\"", "\\\"");
            const QString msgid = QString("msgid \"%1%2\"\nmsgstr \"").arg(CatalogueTranslator::kTextKey, text);
            EXPECT_TRUE(catalogue.contains(msgid) && !catalogue.contains(msgid + "\"\n"))
                << language << " lacks: " << text.toStdString();
        }
    }
}

TEST(Texts, HaveTheSamePlacesInEachCatalogue) {
    static const QRegularExpression kEntry("msgid \"\\$\\$\\$/Lineup/Studio/Text=(.*)\"\nmsgstr \"(.*)\"");
    static const QRegularExpression kPlace("%\\d");
    const auto places = [](const QString& text) {
        std::set<QString> found;
        for (auto match = kPlace.globalMatch(text); match.hasNext();) {
            found.insert(match.next().captured());
        }
        return found;
    };
    for (const char* const language : kCatalogues) {
        auto entry = kEntry.globalMatch(ReadSource(QString("Resources/locale/%1.po").arg(language)));
        EXPECT_TRUE(entry.hasNext());
        while (entry.hasNext()) {
            const auto match = entry.next();
            EXPECT_EQ(places(match.captured(1)), places(match.captured(2)))
                << language << ": " << match.captured(1).toStdString();
        }
    }
}

TEST(Texts, NameNoOptionOfTheCommandLineAndHaveTrueMinusSigns) {
    static const QRegularExpression kOption(R"((^|\s)--?[a-z]|mono-tracks|audio-codec|video-codec)");
    for (const QString& text : TextsOfTheSources()) {
        EXPECT_FALSE(text.contains(kOption)) << text.toStdString();
        EXPECT_FALSE(text.contains(QRegularExpression("(^|\\s)-\\d"))) << "no true minus: " << text.toStdString();
    }
}

class StudioTexts : public StudioTest {
protected:
    ~StudioTexts() override { Speak("C"); }

    // What is said from now on is said in `language`.
    void Speak(const char* language) {
        zelcore::config::SetLanguage(language);
        QCoreApplication::installTranslator(&mTranslator);
    }

private:
    CatalogueTranslator mTranslator;
};

TEST_F(StudioTexts, TheWindowSpeaksGerman) {
    Speak("de");
    OpenWindow();
    EXPECT_EQ(Window().menuBar()->actions().front()->text(), "&Datei");
    EXPECT_EQ(Find<QLabel>("signal").text(), QString::fromUtf8("1000 Hz mit \u221212.04 dBFS"));
    EXPECT_EQ(Find<QLabel>("lengthText").text(), QString::fromUtf8("/ 0:05.000 \u00B7 125 Bilder"));
    PressFor(Qt::Key_E, Qt::ControlModifier, [&](DialogHands& hands) {
        EXPECT_EQ(hands.Dialog().windowTitle(), "Exportieren");
        EXPECT_EQ(hands.Find<QComboBox>("exportAudio").currentText(), "Unkomprimiert, 24 Bit");
        hands.Find<QLineEdit>("exportFile").setText(InFolder("clip.xyz"));
        EXPECT_THAT(hands.Find<QLabel>("exportProblem").text().toStdString(),
                    testing::AllOf(testing::StartsWith("Dateiname "), HasSubstr("clip.xyz: der Name muss auf .mov")));
        hands.Press(Qt::Key_Escape);
    });
}

// Half a cycle is one in French and several in English; what is counted in Japanese has one form.
TEST_F(StudioTexts, CountsTakeTheFormThatTheLanguageHasForThem) {
    struct Said {
        const char* language;
        std::array<const char*, 4> of;  // 0, 0.5, 1, 2
    };
    const std::array<Said, 5> kSaid = {{{"C", {"0 cycles", "0.5 cycles", "1 cycle", "2 cycles"}},
                                        {"de", {"0 Durchläufe", "0.5 Durchläufe", "1 Durchlauf", "2 Durchläufe"}},
                                        {"es", {"0 ciclos", "0.5 ciclos", "1 ciclo", "2 ciclos"}},
                                        {"fr", {"0 cycle", "0.5 cycle", "1 cycle", "2 cycles"}},
                                        {"ja", {"0 サイクル", "0.5 サイクル", "1 サイクル", "2 サイクル"}}}};
    for (const Said& said : kSaid) {
        Speak(said.language);
        for (std::size_t at = 0; at < 4; ++at) {
            const double count = std::array{0.0, 0.5, 1.0, 2.0}[at];
            const QString form = studio::FormFor(count, " \u00B7 %1 cycle", " \u00B7 %1 cycles");
            EXPECT_EQ(form.arg(count).mid(3), QString::fromUtf8(said.of[at])) << said.language;
        }
    }
}

TEST_F(StudioTexts, ErrorsAreSaidInEachLanguageWithWhatTheyAreAbout) {
    const QString missing = InFolder("%2 none.lineup");  // a name that looks like a place to be filled in
    test::WriteFile(Folder() / "damaged.lineup", R"({"kind": "lineup", "version": 1, "settings": "00"})");
    struct Said {
        const char* language;
        const char* missing;
        const char* damaged;
        const char* tone;
    };
    const std::array<Said, 4> kSaid = {
        {{"de", "lässt sich nicht öffnen: Datei oder Verzeichnis nicht gefunden.", "64 hexadezimalen Ziffern bestehen.",
          "Frequenz 9000 Hz: muss mindestens 1 Hz sein und unter 4000 Hz liegen: bei der halben Abtastrate ist ein "
          "Sinus fast still."},
         {"fr", "Aucun fichier ou dossier de ce nom.", "64 chiffres hexadécimaux.",
          "Fréquence 9000 Hz: doit être d'au moins 1 Hz et inférieure à 4000 Hz : à la moitié de la fréquence "
          "d'échantillonnage, un sinus est presque muet."},
         {"es", "No existe el archivo o el directorio.", "64 dígitos hexadecimales.",
          "Frecuencia 9000 Hz: debe ser de 1 Hz como mínimo y menor que 4000 Hz: a la mitad de la frecuencia de "
          "muestreo, un seno es casi silencio."},
         {"ja", "そのようなファイルやフォルダーはありません。", "16 進数 64 桁でなければなりません。",
          "周波数 9000 Hz: 1 Hz 以上、4000 Hz 未満でなければなりません: "
          "サンプルレートの半分では正弦波はほぼ無音です。"}}};
    lineup::BarsAndToneInfo high;
    high.frequency = 9000.0F;
    for (const Said& said : kSaid) {
        Speak(said.language);
        const std::string unfound = SaidBy([&] { Window().Open(missing); });
        EXPECT_THAT(unfound, HasSubstr(said.missing));
        EXPECT_THAT(unfound, HasSubstr(missing.toStdString()));
        EXPECT_THAT(SaidBy([&] { Window().Open(InFolder("damaged.lineup")); }), HasSubstr(said.damaged));
        EXPECT_EQ(studio::ToneProblem(high, 8000).toStdString(), said.tone);
    }
}

// What the library says against exports of `clip` that the dialog lets a person ask for, or that the clip brings along.
std::set<std::string> RefusalsOf(const lineup::Clip& clip) {
    std::set<std::string> refusals;
    const auto ask = [&](const lineup::ExportSettings& settings) {
        try {
            lineup::CheckExport(clip, settings);
        } catch (const lineup::UsageError& error) {
            refusals.insert(error.Remedy());
        }
    };
    for (const lineup::FileFormat& format : lineup::FileFormats()) {
        lineup::ExportSettings settings;
        settings.target = "clip." + std::string(format.extension);
        settings.frames = settings.samples = 10;
        for (const std::string_view codec : format.videoCodecs) {
            lineup::ExportSettings picture = settings;
            picture.videoCodec = codec;
            for (const auto& [width, height] : {std::pair(720, 578), std::pair(1, 1), std::pair(2, 2),
                                                std::pair(1920, 1080), std::pair(8192, 8192), std::pair(16384, 2)}) {
                picture.width = width;
                picture.height = height;
                for (const lineup::Rational rate : {lineup::Rational{25, 1}, {60, 1}, {997, 10}, {500, 1}}) {
                    picture.frameRate = rate;
                    for (const lineup::Scan scan : {lineup::Scan::Progressive, lineup::Scan::TopFieldFirst}) {
                        picture.scan = scan;
                        ask(picture);
                    }
                }
            }
        }
        settings.monoTracks = true;
        for (const std::string_view codec : format.audioCodecs) {
            settings.audioCodec = codec;
            ask(settings);
        }
    }
    lineup::ExportSettings settings;
    settings.target = "clip.mov";
    ask(settings);
    settings.target = "clip.xyz";
    ask(settings);
    return refusals;
}

TEST_F(StudioTexts, EveryRefusalOfAnExportIsSaidInTheLanguageInUse) {
    const auto clip = [](double rateHz) {
        return lineup::Clip(test::ThePlugin(), lineup::MakeSettings(*test::ThePlugin(), {.sampleRateHz = rateHz}));
    };
    std::set<std::string> refusals = RefusalsOf(clip(48000));
    refusals.merge(RefusalsOf(clip(47952)));
    ASSERT_GT(refusals.size(), 20U);
    Speak("de");
    const QString fields = studio::ProblemWords(lineup::UsageError("scan", "tff", "ffv1 has no fields; v210 have"));
    EXPECT_TRUE(fields.startsWith("Abtastung Zeilensprung, oberes Halbbild zuerst: ")) << fields.toStdString();
    EXPECT_TRUE(fields.endsWith(" hat keine Halbbilder.")) << fields.toStdString();
    Speak("ja");
    for (const std::string& refusal : refusals) {
        const QString words = studio::WindowWords(QString::fromStdString(refusal));
        const bool isJapanese =
            std::ranges::any_of(words, [](QChar c) { return c.script() == QChar::Script_Hiragana; });
        EXPECT_TRUE(isJapanese) << refusal;
    }
}

}  // namespace
