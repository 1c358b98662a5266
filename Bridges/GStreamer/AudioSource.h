#pragma once

#include <lineup/AudioReader.h>
#include <lineup/BarsAndToneInfo.h>
#include <lineup/Clip.h>
#include "Bridges/GStreamer/AudioFormats.h"
#include "Bridges/GStreamer/Element.h"

#include <optional>
#include <string>
#include <vector>

namespace gstreamer {

/// The clip's sound.
class AudioSource : public Source {
public:
    /// `lineupaudiosrc`.
    static const ElementKind kElement;

    /// Caps of everything that the sound of a clip can be.
    [[nodiscard]] static Caps Possible();

    AudioSource();
    ~AudioSource() override;
    AudioSource(const AudioSource&) = delete;
    AudioSource& operator=(const AudioSource&) = delete;

    void Set(guint property, const GValue& value) override;
    void Get(guint property, GValue& value) const override;
    void Open(const std::string& plugin) override;
    void Close() noexcept override;
    [[nodiscard]] Caps Offered() const override;
    [[nodiscard]] Caps Chosen(Caps caps) const override;
    void Take(const GstCaps& caps) override;
    [[nodiscard]] Grid Units() const override;
    [[nodiscard]] std::int64_t UnitsPerBuffer() const override;
    [[nodiscard]] Buffer Make(std::int64_t first, std::int64_t count) override;

private:
    struct Playing;

    [[nodiscard]] int NumChannels() const;
    [[nodiscard]] lineup::BarsAndToneInfo SettingsFor(int rateHz, int channels) const;
    [[nodiscard]] lineup::BarsAndToneInfo ToneSettings(int rateHz, int channels) const;
    void Retune();

    int mIdent = 0;  // of SoundEnum
    std::optional<double> mFrequencyHz;
    std::optional<double> mLevelDb;
    bool mIsRetuned = false;  // since the last buffer
    std::string mSettingsFile;
    int mSamplesPerBuffer = 1024;

    std::shared_ptr<const lineup::Importer> mImporter;  // while it is open
    std::optional<lineup::BarsAndToneInfo> mSettings;   // of the file
    std::unique_ptr<Playing> mPlaying;                  // once caps were taken
};

}  // namespace gstreamer
