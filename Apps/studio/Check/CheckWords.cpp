#include "Apps/studio/Check/CheckWords.h"

#include <lineup/Idents.h>
#include "Apps/studio/Check/FaultKindWords.h"
#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Text/Counted.h"
#include "Apps/studio/Text/FaultSentences.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr const char* kDot = " \u00B7 ";

QString Tr(const char* text) {
    return QCoreApplication::translate("Check", text);
}

// "bt709" as people write it.
QString MatrixWords(const std::string& name) {
    const bool isBt = name.size() > 2 && name.starts_with("bt");
    return isBt ? "BT." + QString::fromStdString(name.substr(2)) : QString::fromStdString(name).toUpper();
}

QString RangeWords(const std::string& name) {
    return name == "full"      ? Tr(QT_TRANSLATE_NOOP("Check", "full range"))
           : name == "limited" ? Tr(QT_TRANSLATE_NOOP("Check", "limited range"))
                               : QString();
}

// "BT.709, limited range"
QString MeaningWords(const lineup::PictureCodes& codes) {
    QStringList words{codes.matrix.empty() ? QString() : MatrixWords(codes.matrix), RangeWords(codes.range)};
    words.removeAll(QString());
    return words.join(", ");
}

QString NumberWords(std::optional<double> value, const std::string& unit) {
    if (!value) {
        return {};
    }
    const bool isWhole = *value == std::round(*value) && std::abs(*value) < 1e6;
    const int decimals = isWhole ? 0 : std::abs(*value) < 10 ? 2 : 1;
    const bool isOne = std::abs(*value) == 1 && unit.ends_with('s');  // "1 frames"
    const QString words = isOne ? QString() : UnitWords(unit);
    return SignedNumber(*value, decimals) + (words.isEmpty() ? "" : " " + words);
}

bool HasLineup(const lineup::CheckReport& report) {
    return (report.sound && !report.sound->expected.empty()) || (report.picture && !report.picture->card.empty());
}

void AddSound(const lineup::SoundReport& sound, QStringList& words) {
    const lineup::Ident* const ident = lineup::FindIdent(sound.expected);
    words += ident != nullptr           ? Tr(std::string(ident->title).c_str())
             : sound.expected == "tone" ? Tr(QT_TRANSLATE_NOOP("Check", "Steady tone"))
                                        : Tr(QT_TRANSLATE_NOOP("Check", "No line-up in the sound"));
    if (sound.sampleRate) {
        words += Tr(QT_TRANSLATE_NOOP("Check", "%1 kHz")).arg(*sound.sampleRate / 1000);
    }
    words += Tr(QT_TRANSLATE_NOOP("Check", "Inputs: %1")).arg(sound.inputs);
}

void AddPicture(const lineup::PictureReport& picture, QStringList& words) {
    words += picture.card == "hd"   ? Tr(QT_TRANSLATE_NOOP("Check", "HD card"))
             : picture.card == "sd" ? Tr(QT_TRANSLATE_NOOP("Check", "SD card"))
                                    : Tr(QT_TRANSLATE_NOOP("Check", "No card in the picture"));
    words += QString("%1 \u00D7 %2").arg(picture.width).arg(picture.height);
    words += Tr(QT_TRANSLATE_NOOP("Check", "%1 bit")).arg(picture.bits);
}

}  // namespace

QString VerdictWords(const lineup::CheckReport& report) {
    switch (report.verdict) {
        case lineup::CheckVerdict::Right:
            return Tr(QT_TRANSLATE_NOOP("Check", "Nothing wrong"));
        case lineup::CheckVerdict::CannotTell:
            return HasLineup(report) ? Tr(QT_TRANSLATE_NOOP("Check", "Not all can be told"))
                                     : Tr(QT_TRANSLATE_NOOP("Check", "No line-up found"));
        case lineup::CheckVerdict::Faults:
            break;
    }
    const auto faults = report.faults.size();
    return FormFor(static_cast<double>(faults), QT_TRANSLATE_NOOP("Counted", "%1 fault"),
                   QT_TRANSLATE_NOOP("Counted", "%1 faults"))
        .arg(faults);
}

QString FoundWords(const lineup::CheckReport& report) {
    QStringList words;
    if (report.sound) {
        AddSound(*report.sound, words);
    }
    if (report.picture) {
        AddPicture(*report.picture, words);
    }
    return words.join(kDot);
}

QString CodesWords(const lineup::CheckReport& report) {
    if (!report.picture || report.picture->card.empty()) {
        return {};
    }
    const QString found = MeaningWords(report.picture->codes);
    const QString said = MeaningWords(report.picture->tags);
    return said.isEmpty() ? Tr(QT_TRANSLATE_NOOP("Check", "Codes: %1; the file says nothing of them")).arg(found)
                          : Tr(QT_TRANSLATE_NOOP("Check", "Codes: %1; the file says: %2")).arg(found, said);
}

QString ChannelName(const lineup::CheckReport& report, std::size_t input) {
    const bool isKnown = report.sound && input < report.sound->channels.size() && report.sound->channels[input].channel;
    return isKnown ? QString::fromStdString(*report.sound->channels[input].channel) : QString::number(input + 1);
}

QString InputName(const lineup::CheckReport& report, std::size_t input) {
    const QString number = QString::number(input + 1);
    const QString channel = ChannelName(report, input);
    return channel == number ? number : number + " " + channel;
}

QString KindWords(const lineup::CheckFault& fault) {
    for (const FaultKindWord& kind : FaultKindTable()) {
        if (fault.id == kind.id && fault.part == kind.part) {
            return QCoreApplication::translate("Fault", kind.words);
        }
    }
    return QString::fromStdString(fault.id);
}

QString WhereWords(const lineup::CheckFault& fault) {
    if (fault.part == lineup::CheckPart::Both) {
        return Tr(QT_TRANSLATE_NOOP("Check", "Sound and picture"));
    }
    if (fault.part == lineup::CheckPart::Picture) {
        return Tr(QT_TRANSLATE_NOOP("Check", "Picture"));
    }
    if (fault.inputs.empty()) {
        return Tr(QT_TRANSLATE_NOOP("Check", "Sound"));
    }
    QStringList inputs;
    for (const int input : fault.inputs) {
        inputs += QString::number(input + 1);
    }
    return (inputs.size() == 1 ? Tr(QT_TRANSLATE_NOOP("Check", "Input %1"))
                               : Tr(QT_TRANSLATE_NOOP("Check", "Inputs %1")))
        .arg(inputs.join(", "));
}

QString MeasuredWords(const lineup::CheckFault& fault) {
    return NumberWords(fault.measured, fault.unit);
}

QString DueWords(const lineup::CheckFault& fault) {
    return NumberWords(fault.expected, fault.unit);
}

QString UnreadableWords(const lineup::CheckReport& report) {
    const auto note = std::ranges::find(report.notes, "unreadable", &lineup::CheckNote::id);
    if (report.sound || report.picture) {
        return {};
    }
    return note != report.notes.end() || !report.notes.empty()
               ? FaultSentence(QString::fromStdString((note != report.notes.end() ? *note : report.notes.front()).text))
               : VerdictWords(report);
}

}  // namespace studio
