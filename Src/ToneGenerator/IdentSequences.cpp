#include "Src/ToneGenerator/IdentSequences.h"

#include "Host/Interface/Platform/PatternFill.h"

#include <boost/assign/list_of.hpp>

#include <algorithm>

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace ident {

namespace {

constexpr int kChannelCount = 6;
constexpr std::array<ChannelIndex, kChannelCount> kChannelsInOrder = {
    kLeftChannelIndex,          kRightChannelIndex,  kLeftSurroundChannelIndex,
    kRightSurroundChannelIndex, kCentreChannelIndex, kLowFrequencyChannelIndex,
};

}  // namespace

ToneGenerator::ChannelList ToChannelList(ChannelSet set) {
    const auto contains = [set](ChannelIndex channel) { return (set & Only(channel)) != 0; };
    const auto* const end = kChannelsInOrder.end();
    const auto* channel = std::find_if(kChannelsInOrder.begin(), end, contains);
    if (channel == end) {
        return {};
    }
    auto list = boost::assign::cref_list_of<kChannelCount>(*channel);
    while ((channel = std::find_if(channel + 1, end, contains)) != end) {
        list(*channel);
    }
    return list.convert_to_container<ToneGenerator::ChannelList>();
}

}  // namespace ident

void ToneGenerator::WriteIdentTone(const TickTime& phaseTime, double frequency, float* out, long long numSamples,
                                   bool peakMode) const {
    if (!peakMode) {
        WriteSine(phaseTime, frequency, ident::kLevel, out, numSamples);
        return;
    }
    constexpr std::array<float, 4> kPattern = {ident::kLevelFloat, ident::kLevelFloat, ident::kLevelFloat,
                                               ident::kLevelFloat};
    if (numSamples > 0) {
        memset_pattern16(out, kPattern.data(), static_cast<std::size_t>(numSamples) * sizeof(float));
    }
}

long long ToneGenerator::CountPieceSamples(const TickTime& segmentStart, const FrameRate& segmentLength,
                                           const TickTime& pieceStart, const TickTime& endTime,
                                           long long samplesLeft) const {
    const long long count = CalculateNumSamplesToGenerate(segmentStart, segmentLength, pieceStart, endTime);
    return std::clamp(count, 1LL, samplesLeft);
}
