#pragma once

#include <lineup/Api.h>
#include <lineup/CheckReport.h>
#include "Host/Lineup/Check/Reader/DecodedTracks.h"
#include "Host/Lineup/Check/Reader/PictureAssembly.h"
#include "Host/Lineup/Check/Reader/Process/DecoderProcess.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"
#include "Host/Lineup/Check/Reader/Unreadable.h"
#include "Host/Lineup/Check/SoundSource.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lineup {

inline namespace parts {

/// The sound of a recording, decoded by a process that has no rights. Memory is the same for a minute and for an hour.
/// One thread, the one that made it.
class LINEUP_API RecordingReader : public SoundSource {
public:
    /// Takes the decoder's words from anywhere: what a process says, or a file that holds what one said. `ending` is
    /// asked how the process ended when they stop without an end. Pictures go to `pictures` on the way, which may be
    /// null.
    RecordingReader(std::unique_ptr<ByteInput> input, std::function<std::string()> ending,
                    PictureListener* pictures = nullptr);

    /// Starts decoding. Throws Unreadable, Cancelled, and Error when decoding cannot be started.
    static std::unique_ptr<RecordingReader> Open(const std::string& recording, const DecoderSettings& settings = {},
                                                 const DecoderProcess::KeepGoing& keepGoing = {},
                                                 PictureListener* pictures = nullptr);

    /// Without sound, nothing but ReadPictures, Seconds, EndedBecause and Notes may be asked for.
    [[nodiscard]] bool HasSound() const noexcept { return mTracks.has_value(); }
    [[nodiscard]] bool HasPictures() const noexcept { return mPictures.HasPictures(); }

    /// Reads on, and drops what comes of sound, until the end or until no more pictures are wanted.
    void ReadPictures();

    [[nodiscard]] double SampleRate() const override { return mTracks->SampleRate(); }
    [[nodiscard]] int Inputs() const override { return mTracks->Inputs(); }
    [[nodiscard]] std::optional<int> Bits() const override;
    [[nodiscard]] std::optional<bool> Lossy() const override;
    std::size_t Read(std::span<float* const> inputs, std::size_t most) override;
    [[nodiscard]] std::vector<DamagedStretch> Damage() const override { return mTracks->Damage(); }
    /// Those that have been read since it was asked for the last time.
    [[nodiscard]] std::vector<DamagedStretch> TakeDamage() { return mTracks->TakeDamage(); }
    /// When samples came in, and how they are stamped, since it was asked for the last time; of that a limited
    /// number.
    [[nodiscard]] std::vector<decoding::Arrival> TakeArrivals() { return std::exchange(mArrivals, {}); }
    [[nodiscard]] std::optional<std::string> EndedBecause() const override { return mEndedBecause; }

    /// Whether reading ended because something went wrong, and not because the recording is over, was cut off or
    /// stalled.
    [[nodiscard]] bool HasBrokenOff() const noexcept { return mHasBrokenOff; }

    /// The length that the recording gives itself, s.
    [[nodiscard]] std::optional<double> Seconds() const noexcept { return mSeconds; }

    /// What a person should know of the way the recording was read.
    [[nodiscard]] std::vector<CheckNote> Notes() const;

private:
    void ReadFacts();
    void Pump();
    void TakeUp(const DecoderMessage& message);
    void Finish(const std::optional<decoding::End>& end);

    std::unique_ptr<ByteInput> mInput;
    std::function<std::string()> mEnding;
    MessageReader mMessages;
    std::uint32_t mGivenUp = 0;
    decoding::Begin mBegin{};
    std::optional<DecodedTracks> mTracks;
    std::optional<double> mSeconds;
    PictureAssembly mPictures;
    std::vector<decoding::Arrival> mArrivals;
    bool mHasBegun = false;
    bool mHasEnded = false;
    bool mHasBrokenOff = false;
    std::optional<std::string> mEndedBecause;
};

}  // namespace parts

}  // namespace lineup
