#include "Apps/studio/Document/ProblemWords.h"

#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>
#include "Apps/studio/Document/ScanWords.h"
#include "Apps/studio/Text/ProblemPatterns.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

namespace studio {

namespace {

// The options that a window refuses, and what it calls them.
struct OptionName {
    std::string_view option;
    const char* name;
    const char* unit = "";
};
constexpr std::array<OptionName, 16> kNames = {{{"audio-codec", QT_TRANSLATE_NOOP("Option", "Sound codec")},
                                                {"card", QT_TRANSLATE_NOOP("Option", "Card")},
                                                {"channels", QT_TRANSLATE_NOOP("Option", "Channels")},
                                                {"duration", QT_TRANSLATE_NOOP("Option", "Length")},
                                                {"fps", QT_TRANSLATE_NOOP("Option", "Frame rate")},
                                                {"frequency", QT_TRANSLATE_NOOP("Option", "Frequency"), " Hz"},
                                                {"ident", QT_TRANSLATE_NOOP("Option", "Ident")},
                                                {"level", QT_TRANSLATE_NOOP("Option", "Level"), " dBFS"},
                                                {"mono-tracks", QT_TRANSLATE_NOOP("Option", "Mono tracks")},
                                                {"output", QT_TRANSLATE_NOOP("Option", "File name")},
                                                {"sample-rate", QT_TRANSLATE_NOOP("Option", "Sample rate"), " Hz"},
                                                {"scan", QT_TRANSLATE_NOOP("Option", "Scan")},
                                                {"size", QT_TRANSLATE_NOOP("Option", "Picture size")},
                                                {"start", QT_TRANSLATE_NOOP("Option", "Start")},
                                                {"timecode", QT_TRANSLATE_NOOP("Option", "Time code")},
                                                {"video-codec", QT_TRANSLATE_NOOP("Option", "Picture codec")}}};

QString ValueWords(const std::string& option, const std::string& value) {
    if (option == "scan") {
        const auto* const name = std::ranges::find(lineup::kScanNames, value, &lineup::ScanName::name);
        if (name != lineup::kScanNames.end()) {
            const auto* const word = std::ranges::find(kScanWords, name->scan, &ScanWord::scan);
            return QCoreApplication::translate("Scan", word->text);
        }
    }
    return QString::fromStdString(value);
}

// "Frequency 10000 Hz"
QString WordsOf(const std::string& option, const std::string& value) {
    const auto* const row = std::ranges::find(kNames, option, &OptionName::option);
    const bool isKnown = row != kNames.end();
    return (isKnown ? QCoreApplication::translate("Option", row->name) : QString::fromStdString(option)) + " " +
           ValueWords(option, value) + (isKnown ? row->unit : "");
}

QString Sentence(QString text) {
    if (!text.isEmpty()) {
        text[0] = text[0].toUpper();
        const bool isJapanese = text.back().script() == QChar::Script_Hiragana;
        text += text.endsWith('.') ? "" : isJapanese ? "\u3002" : ".";
    }
    return text;
}

QString RefusalOf(const std::function<void()>& check) {
    try {
        check();
        return {};
    } catch (const std::exception& error) {
        return ProblemWords(error);
    }
}

}  // namespace

QString ProblemWords(const std::exception& error) {
    if (const auto* const usage = dynamic_cast<const lineup::UsageError*>(&error)) {
        return Sentence(WordsOf(usage->Option(), usage->Value()) + ": " +
                        WindowWords(QString::fromStdString(usage->Remedy())));
    }
    return Sentence(WindowWords(QString::fromUtf8(error.what())));
}

QString SampleRateProblem(const lineup::Importer& plugin, double rateHz) {
    return RefusalOf([&] { static_cast<void>(lineup::MakeSettings(plugin, {.sampleRateHz = rateHz})); });
}

QString ToneProblem(const lineup::BarsAndToneInfo& settings, double rateHz) {
    lineup::BarsAndToneInfo atRate = settings;
    atRate.sampleRate = static_cast<float>(rateHz);
    return RefusalOf([&] { lineup::CheckTone(atRate); });
}

}  // namespace studio
