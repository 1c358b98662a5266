#pragma once

#include <lineup/Rational.h>
#include "Bridges/MLT/ClipChoice.h"
#include "Bridges/MLT/Picture.h"
#include "Bridges/MLT/Sound.h"
#include "Bridges/MLT/SoundTimeline.h"
#include "Bridges/MLT/UnknownProperties.h"

#include <cstdint>
#include <list>
#include <memory>
#include <optional>

namespace bridge {

/// A stretch of sound as a consumer asks for it.
struct SoundRequest {
    std::int64_t position = 0;  ///< of the frame, counted from the clip's beginning
    std::int64_t count = 0;     ///< samples
    lineup::Rational frameRate;
};

/// What one producer knows of its clip between requests: what its properties ask for, the pictures drawn for
/// it, and where its sound has got to. Not thread safe: its producer's lock guards it.
class ClipService {
public:
    explicit ClipService(std::shared_ptr<const lineup::Importer> importer);

    /// The length of a clip as the plug-in has it, in frames of the given rate.
    [[nodiscard]] std::int64_t DurationFrames(lineup::Rational frameRate) const;

    /// Reads the producer's properties. Complains once of an invalid value, and of an unknown name.
    void Update(mlt_properties properties, const Complain& complain);

    /// Whether pictures for a profile of this colour space (601 or 709, as the framework counts) are BT.709.
    [[nodiscard]] bool IsBt709For(int profileColourSpace) const noexcept;

    [[nodiscard]] std::shared_ptr<const PictureBytes> Picture(int width, int height, Packing packing, bool bt709);

    /// The clip's sound at `rateHz`, which is a Sound::NearestRate.
    [[nodiscard]] Sound& SoundAt(int rateHz, const Complain& complain);

    /// Where in the clip the asked-for sound starts.
    [[nodiscard]] std::int64_t StartOf(const SoundRequest& request, int rateHz);

private:
    // A render and a waveform view ask at rates of their own.
    static constexpr std::size_t kMostRates = 3;

    std::shared_ptr<const lineup::Importer> mImporter;
    lineup::Clip mPictureClip;
    PropertyTexts mTexts;
    ClipChoice mChoice;
    UnknownProperties mUnknown;
    PictureStore mPictures;
    std::list<Sound> mSounds;  // newest first
    SoundTimeline mTimeline;
    lineup::Rational mFrameRate;
};

}  // namespace bridge
