#pragma once

#include <lineup/Clip.h>
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// What the library of media formats offers to streams.
namespace lineup {
inline namespace parts {

/// Codes the clip's picture as the plan says: `frames` access units, of which the first begins a group. They can follow
/// each other for ever, the first again behind the last.
using CodeGroupFunction = void(const Clip& clip, const PicturePlan& plan, int frames,
                               std::vector<std::vector<std::uint8_t>>& units);
inline constexpr const char* kCodeGroupName = "lineupCodeGroup";

/// An encoder of sound. Packets come in the order of the blocks that went in, each perhaps some blocks later.
class LINEUP_API SoundCoder {
public:
    SoundCoder() = default;
    virtual ~SoundCoder();
    SoundCoder(const SoundCoder&) = delete;
    SoundCoder& operator=(const SoundCoder&) = delete;

    /// Samples of a block.
    [[nodiscard]] virtual int BlockSamples() const = 0;

    /// By how much a decoder's samples lie behind those of the block.
    [[nodiscard]] virtual int PaddingSamples() const = 0;

    /// Hands over a block of all of the clip's channels; the next packet goes to `packet`, which stays empty while
    /// there is none yet.
    virtual void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) = 0;
};

/// Opens the plan's encoder, for its only track.
using OpenSoundCoderFunction = void(const SoundPlan& plan, std::unique_ptr<SoundCoder>& coder);
inline constexpr const char* kOpenSoundCoderName = "lineupOpenSoundCoder";

/// Opens a connection by one of the library's protocols, which is kept up. Each time it is made it begins with `head`,
/// if that has anything, and then an entry.
using OpenConnectionFunction = void(const SendSettings& settings, const std::vector<std::uint8_t>& head,
                                    std::unique_ptr<StreamOutput>& output);
inline constexpr const char* kOpenConnectionName = "lineupOpenConnection";

}  // namespace parts
}  // namespace lineup
