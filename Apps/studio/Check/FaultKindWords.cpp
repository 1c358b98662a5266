#include "Apps/studio/Check/FaultKindWords.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <string>

namespace studio {

namespace {

constexpr auto kSound = lineup::CheckPart::Sound;
constexpr auto kPicture = lineup::CheckPart::Picture;

constexpr std::array<FaultKindWord, 48> kKindWords = {{
    {"channel-missing", kSound, QT_TRANSLATE_NOOP("Fault", "Channel missing")},
    {"channels-swapped", kSound, QT_TRANSLATE_NOOP("Fault", "Channels swapped")},
    {"channel-duplicated", kSound, QT_TRANSLATE_NOOP("Fault", "Channel doubled")},
    {"channel-mixed", kSound, QT_TRANSLATE_NOOP("Fault", "Channels mixed")},
    {"polarity-inverted", kSound, QT_TRANSLATE_NOOP("Fault", "Polarity inverted")},
    {"level-wrong", kSound, QT_TRANSLATE_NOOP("Fault", "Wrong level")},
    {"level-unbalanced", kSound, QT_TRANSLATE_NOOP("Fault", "Levels unbalanced")},
    {"level-changes", kSound, QT_TRANSLATE_NOOP("Fault", "Level changes")},
    {"delay", kSound, QT_TRANSLATE_NOOP("Fault", "Delay between channels")},
    {"speed-wrong", kSound, QT_TRANSLATE_NOOP("Fault", "Wrong speed")},
    {"speed-unsteady", kSound, QT_TRANSLATE_NOOP("Fault", "Unsteady speed")},
    {"dropout", kSound, QT_TRANSLATE_NOOP("Fault", "Dropout")},
    {"samples-lost", kSound, QT_TRANSLATE_NOOP("Fault", "Samples lost")},
    {"samples-repeated", kSound, QT_TRANSLATE_NOOP("Fault", "Samples repeated")},
    {"click", kSound, QT_TRANSLATE_NOOP("Fault", "Click")},
    {"clipped", kSound, QT_TRANSLATE_NOOP("Fault", "Sound clipped")},
    {"distorted", kSound, QT_TRANSLATE_NOOP("Fault", "Distortion")},
    {"noise", kSound, QT_TRANSLATE_NOOP("Fault", "Noise")},
    {"hum", kSound, QT_TRANSLATE_NOOP("Fault", "Hum")},
    {"dc-offset", kSound, QT_TRANSLATE_NOOP("Fault", "DC offset")},
    {"bits-truncated", kSound, QT_TRANSLATE_NOOP("Fault", "Bits cut off")},
    {"sequence-other", kSound, QT_TRANSLATE_NOOP("Fault", "Another sequence")},
    {"card-missing", kPicture, QT_TRANSLATE_NOOP("Fault", "Card missing")},
    {"card-other", kPicture, QT_TRANSLATE_NOOP("Fault", "Another card")},
    {"matrix-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong matrix")},
    {"range-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong range")},
    {"tags-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong tags")},
    {"gain-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong white")},
    {"lift-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong black")},
    {"gamma-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong gamma")},
    {"saturation-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong saturation")},
    {"hue-wrong", kPicture, QT_TRANSLATE_NOOP("Fault", "Wrong hue")},
    {"chroma-swapped", kPicture, QT_TRANSLATE_NOOP("Fault", "Cb and Cr swapped")},
    {"chroma-missing", kPicture, QT_TRANSLATE_NOOP("Fault", "No colour")},
    {"blacks-crushed", kPicture, QT_TRANSLATE_NOOP("Fault", "Blacks crushed")},
    {"whites-clipped", kPicture, QT_TRANSLATE_NOOP("Fault", "Whites clipped")},
    {"bits-truncated", kPicture, QT_TRANSLATE_NOOP("Fault", "Too few steps")},
    {"chroma-subsampled", kPicture, QT_TRANSLATE_NOOP("Fault", "Coarse colour")},
    {"chroma-shifted", kPicture, QT_TRANSLATE_NOOP("Fault", "Colour shifted")},
    {"scaled", kPicture, QT_TRANSLATE_NOOP("Fault", "Picture scaled")},
    {"shifted", kPicture, QT_TRANSLATE_NOOP("Fault", "Picture shifted")},
    {"cropped", kPicture, QT_TRANSLATE_NOOP("Fault", "Picture cropped")},
    {"mirrored", kPicture, QT_TRANSLATE_NOOP("Fault", "Picture mirrored")},
    {"flipped", kPicture, QT_TRANSLATE_NOOP("Fault", "Picture upside down")},
    {"soft", kPicture, QT_TRANSLATE_NOOP("Fault", "Soft picture")},
    {"picture-noise", kPicture, QT_TRANSLATE_NOOP("Fault", "Noisy picture")},
    {"picture-changes", kPicture, QT_TRANSLATE_NOOP("Fault", "Frames differ")},
    {"lengths-differ", lineup::CheckPart::Both, QT_TRANSLATE_NOOP("Fault", "Lengths differ")},
}};

// Those that are words; others, such as dB, are the same in every language.
constexpr std::array<const char*, 8> kUnits = {
    QT_TRANSLATE_NOOP("Unit", "samples"), QT_TRANSLATE_NOOP("Unit", "full scale"), QT_TRANSLATE_NOOP("Unit", "bits"),
    QT_TRANSLATE_NOOP("Unit", "degrees"), QT_TRANSLATE_NOOP("Unit", "pixels"),     QT_TRANSLATE_NOOP("Unit", "codes"),
    QT_TRANSLATE_NOOP("Unit", "frames"),  QT_TRANSLATE_NOOP("Unit", "code")};

}  // namespace

std::span<const FaultKindWord> FaultKindTable() {
    return kKindWords;
}

QString UnitWords(const std::string& unit) {
    if (unit == "exponent") {
        return {};
    }
    const auto* const word = std::ranges::find(kUnits, unit, [](const char* known) { return std::string(known); });
    return word == kUnits.end() ? QString::fromStdString(unit) : QCoreApplication::translate("Unit", *word);
}

}  // namespace studio
