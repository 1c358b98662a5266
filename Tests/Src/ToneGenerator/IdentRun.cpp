#include "Tests/Src/ToneGenerator/IdentRun.h"

#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <algorithm>

namespace model {

void Generate(Ident ident, const Request& request, test::GuardedChannels& channels) {
    const ToneGenerator generator(zelmediatypes::FrameRate(request.sampleTicks), 6);
    const zelmediatypes::TickTime start(request.startTicks);
    switch (ident) {
        case Ident::kStereo1000:
            generator.GenerateEBUStereo(start, 1000.0F, channels.Pointers(), 2, request.count, request.peakMode);
            break;
        case Ident::kStereo400:
            generator.GenerateEBUStereo(start, 400.0F, channels.Pointers(), 2, request.count, request.peakMode);
            break;
        case Ident::kMultichannel:
            generator.GenerateEBUMultichannel(start, channels.Pointers(), 6, request.count, request.peakMode);
            break;
        case Ident::kBlits:
            generator.GenerateBLITS(start, channels.Pointers(), 6, request.count, request.peakMode);
            break;
    }
}

test::GuardedChannels Generate(Ident ident, const Request& request) {
    test::GuardedChannels channels(kBufferCount, static_cast<std::size_t>(std::max<std::int64_t>(request.count, 0)));
    Generate(ident, request, channels);
    return channels;
}

testing::AssertionResult GeneratesTheModel(Ident ident, const Request& request) {
    test::GuardedChannels got = Generate(ident, request);
    const auto expected = Render(ident, request);
    for (std::size_t channel = 0; channel < expected.size(); ++channel) {
        if (auto same = SameBits(expected[channel], got[channel].Samples()); !same) {
            return same << ", channel " << channel << ", " << Name(ident) << ", " << request;
        }
    }
    if (auto untouched = NothingElseIsWritten(got, expected.size()); !untouched) {
        return untouched << ", " << Name(ident) << ", " << request;
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult NothingElseIsWritten(test::GuardedChannels& channels, std::size_t firstUnused) {
    for (std::size_t channel = firstUnused; channel < channels.Size(); ++channel) {
        if (channels[channel].UnwrittenSamples() != channels[channel].Samples().size()) {
            return testing::AssertionFailure() << "channel " << channel << " is written";
        }
    }
    if (!channels.GuardsIntact()) {
        return testing::AssertionFailure() << "a guard is written";
    }
    return testing::AssertionSuccess();
}

}  // namespace model
