#include "Apps/studio/Document/ClipWords.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>
#include "Apps/studio/Document/NumberWords.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <fmt/format.h>

#include <QCoreApplication>
#include <cmath>
#include <cstdint>
#include <string>

namespace studio {

namespace {

constexpr const char* kDot = " \u00B7 ";

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

QString Tr(const char* text) {
    return QCoreApplication::translate("Clip", text);
}

}  // namespace

QString LevelWords(double gain) {
    if (gain <= 0) {
        return Tr(QT_TRANSLATE_NOOP("Clip", "Silence"));
    }
    const double levelDb = lineup::DbFromGain(gain);
    return SignedNumber(levelDb, 2) + " dBFS";
}

QString SignalWords(const lineup::Clip& clip) {
    const lineup::BarsAndToneInfo settings = clip.Settings().value_or(lineup::BarsAndToneInfo{});
    if (const lineup::Ident* const ident = lineup::FindIdent(settings)) {
        return Tr(std::string(ident->title).c_str());
    }
    if (lineup::AsksForUnknownIdent(settings)) {
        return Tr(QT_TRANSLATE_NOOP("Clip", "Unknown ident %1: silent"))
            .arg(static_cast<std::uint32_t>(settings.identifierFormat));
    }
    if (settings.amplitude <= 0) {
        return LevelWords(0);
    }
    return Tr(QT_TRANSLATE_NOOP("Clip", "%1 Hz at %2"))
        .arg(static_cast<double>(settings.frequency))
        .arg(LevelWords(static_cast<double>(settings.amplitude)));
}

QString SoundWords(const lineup::Clip& clip) {
    const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(clip.NumChannels());
    const QString channels =
        layout == nullptr ? Tr(QT_TRANSLATE_NOOP("Clip", "%1 channels")).arg(clip.NumChannels()) : LayoutWords(*layout);
    return channels + kDot + Tr(QT_TRANSLATE_NOOP("Clip", "%1 kHz")).arg(clip.SampleRate() / 1000);
}

QString LayoutWords(const lineup::ChannelLayout& layout) {
    QString words = Tr(std::string(layout.name).c_str());
    words[0] = words[0].toUpper();
    return words;
}

QString FrameRateWords(lineup::Rational frameRate) {
    const double rate = static_cast<double>(frameRate.num) / frameRate.den;
    return Text(fmt::format("{:g}", std::round(rate * 1000) / 1000));
}

QString PictureWords(const lineup::PictureFormat& picture) {
    const bool isHd = lineup::ResolveCard(picture.card, picture.height) == lineup::Card::HD;
    return Text(fmt::format("{} \u00D7 {}{}", picture.width, picture.height, kDot)) +
           Tr(QT_TRANSLATE_NOOP("Clip", "%1 fps")).arg(FrameRateWords(picture.frameRate)) + kDot +
           Tr(isHd ? QT_TRANSLATE_NOOP("Clip", "HD card") : QT_TRANSLATE_NOOP("Clip", "SD card"));
}

QString TimeWords(double seconds) {
    const auto ms = std::llround(seconds * 1000);
    const auto minutes = ms / 60000;
    const std::string rest = fmt::format("{:02}.{:03}", ms / 1000 % 60, ms % 1000);
    return Text(minutes < 60 ? fmt::format("{}:{}", minutes, rest)
                             : fmt::format("{}:{:02}:{}", minutes / 60, minutes % 60, rest));
}

QString TimecodeWords(std::int64_t frame, lineup::Rational frameRate) {
    const std::int64_t rate = (std::int64_t{frameRate.num} + frameRate.den - 1) / frameRate.den;
    const std::int64_t seconds = frame / rate;
    return Text(fmt::format("{:02}:{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60, frame % rate));
}

std::vector<ShownChannel> ShownChannels(const lineup::Clip& clip) {
    std::vector<ShownChannel> channels;
    if (const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(clip.NumChannels())) {
        for (const int index : layout->fileOrder) {
            const auto place = static_cast<std::size_t>(index);
            channels.push_back({place, Text(std::string(layout->channels[place]))});
        }
        return channels;
    }
    for (int index = 0; index < clip.NumChannels(); ++index) {
        channels.push_back({static_cast<std::size_t>(index), QString::number(index + 1)});
    }
    return channels;
}

}  // namespace studio
