#pragma once

#include "Host/Interface/Core/SmallBlockAllocator.h"
#include "Host/Interface/Media/TickTime.h"

/// Renders line-up audio: steady tones, silence and the channel-identification sequences, as planar
/// 32-bit float samples in the caller's buffers. Every waveform is a function of absolute clip time,
/// so a clip may be rendered in any order and in pieces of any length.
///
/// Arguments that all operations share:
/// - startTime: clip time of the first sample written; sample i stands for startTime + i * frame rate
/// - frequency in Hz; amplitude as a linear gain, 1.0 is full scale
/// - buffers[c][i]: channel c, sample i; numSamples <= 0 writes nothing
/// - peakMode: write each tone's constant level instead of its waveform; silence stays 0.0
///
/// No operation locks or keeps state; all are safe to call concurrently on separate buffers. The only
/// failure is std::bad_alloc, from the operations that build channel lists: the all-channels overload,
/// before it writes anything, and the two 5.1 idents, between the pieces they have written.
class ToneGenerator {
public:
    using ChannelList = zelcore::utility::SmallBlockAllocator::vector<int>;

    /// `frameRate` is the length of one sample in ticks. The channel count is not kept: every
    /// operation that needs one is told.
    ToneGenerator(const zelmediatypes::FrameRate& frameRate, int numChannels) noexcept;

    /// Writes buffer[0] .. buffer[numSamples - 1].
    void GenerateTone(const zelmediatypes::TickTime& startTime, float frequency, float amplitude, float* buffer,
                      long long numSamples, bool peakMode) const;

    /// Writes 0.0 to numSamples samples (the count narrowed to 32 bits).
    void GenerateSilence(float* buffer, long long numSamples) const;

    /// Computes the tone in the first listed channel, from buffers[c] + sampleOffset on, and copies it
    /// to the others in list order. Channels that are not listed are not touched; an empty list writes
    /// nothing. `numChannels` is not used.
    void GenerateTonesAcrossChannels(const ChannelList& channels, const zelmediatypes::TickTime& startTime,
                                     float frequency, float amplitude, float** buffers, int numChannels,
                                     long long sampleOffset, long long numSamples, bool peakMode) const;

    /// The same for channels 0 .. numChannels - 1, from sample 0 on.
    void GenerateTonesAcrossChannels(const zelmediatypes::TickTime& startTime, float frequency, float amplitude,
                                     float** buffers, int numChannels, long long numSamples, bool peakMode) const;

    /// Zeroes the first listed channel from sampleOffset on and copies it to the others. Null buffers
    /// or an empty list write nothing. `numChannels` is not used.
    void GenerateSilenceAcrossChannels(const ChannelList& channels, float** buffers, int numChannels,
                                       long long sampleOffset, long long numSamples) const;

    /// The samples from currentTime to the end of the segment that starts at segmentStart and is
    /// segmentLength ticks long, or to endTime where that is earlier. 0 is returned as 1, so that a
    /// loop that advances by the result always moves; a negative count is returned as it is.
    [[nodiscard]] long long CalculateNumSamplesToGenerate(const zelmediatypes::TickTime& segmentStart,
                                                          const zelmediatypes::FrameRate& segmentLength,
                                                          const zelmediatypes::TickTime& currentTime,
                                                          const zelmediatypes::TickTime& endTime) const;

    /// The EBU stereo ident at `frequency`: channel 0 falls silent for the last quarter of a second of
    /// each 3 s cycle, channel 1 never does. Level 0.125. Other channels are not touched.
    void GenerateEBUStereo(const zelmediatypes::TickTime& startTime, float frequency, float** buffers, int numChannels,
                           long long numSamples, bool peakMode) const;

    /// The EBU 5.1 ident, a 12 s cycle on six channels (L R Ls Rs C LFE). Level 0.125. The bursts that
    /// sound alone take the phase of startTime, wherever in the request they begin.
    void GenerateEBUMultichannel(const zelmediatypes::TickTime& startTime, float** buffers, int numChannels,
                                 long long numSamples, bool peakMode) const;

    /// The BLITS 5.1 ident, a 13.4 s cycle on six channels (L R Ls Rs C LFE).
    void GenerateBLITS(const zelmediatypes::TickTime& startTime, float** buffers, int numChannels, long long numSamples,
                       bool peakMode) const;

private:
    /// The sine of absolute clip time: `phaseTime` is the time whose phase the first sample takes.
    /// numSamples <= 0 writes nothing.
    void WriteSine(const zelmediatypes::TickTime& phaseTime, double frequency, double amplitude, float* out,
                   long long numSamples) const;

    /// An ident tone on one channel: the sine, or the constant level in peak mode.
    void WriteIdentTone(const zelmediatypes::TickTime& phaseTime, double frequency, float* out, long long numSamples,
                        bool peakMode) const;

    /// The samples that an ident writes in one piece from pieceStart on: what
    /// CalculateNumSamplesToGenerate counts, but never less than one nor more than are left of the
    /// request, even where times wrap.
    [[nodiscard]] long long CountPieceSamples(const zelmediatypes::TickTime& segmentStart,
                                              const zelmediatypes::FrameRate& segmentLength,
                                              const zelmediatypes::TickTime& pieceStart,
                                              const zelmediatypes::TickTime& endTime, long long samplesLeft) const;

    zelmediatypes::FrameRate mFrameRate;
};
