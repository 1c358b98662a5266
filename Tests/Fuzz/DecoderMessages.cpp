// What a decoding program says, in whoever's hands it is: any bytes give samples that are numbers, at the rate and of
// the inputs that were named, or a sentence; and memory does not grow with them.
#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Fuzz/Support/Require.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace {

using fuzz::Require;

constexpr std::size_t kMost = 1009;           // samples of a read
constexpr std::size_t kEnough = 200 * kMost;  // a gap may be a day long

class Words : public lineup::ByteInput {
public:
    explicit Words(std::span<const std::uint8_t> bytes) : mLeft(bytes) {}

    std::size_t Read(std::span<std::byte> bytes) override {
        const std::size_t count = std::min({bytes.size(), mLeft.size(), std::size_t{333}});
        std::ranges::copy(std::as_bytes(mLeft.first(count)), bytes.begin());
        mLeft = mLeft.subspan(count);
        return count;
    }

private:
    std::span<const std::uint8_t> mLeft;
};

void ReadSamples(lineup::RecordingReader& reader) {
    const auto inputs = static_cast<std::size_t>(reader.Inputs());
    Require(inputs >= 1 && inputs <= 64, "there are 1 to 64 inputs");
    Require(reader.SampleRate() > 0, "there is a sample rate");
    std::vector<float> samples(inputs * kMost);
    std::vector<float*> pointers;
    for (std::size_t i = 0; i < inputs; ++i) {
        pointers.push_back(&samples[i * kMost]);
    }
    for (std::size_t total = 0; total < kEnough;) {
        std::ranges::fill(samples, NAN);
        const std::size_t count = reader.Read(pointers, kMost);
        Require(count <= kMost, "no more samples come than were asked for");
        for (float* const input : pointers) {
            Require(std::all_of(input, input + count, [](float value) { return std::isfinite(value); }),
                    "samples are numbers");
            Require(std::all_of(input + count, input + kMost, [](float value) { return std::isnan(value); }),
                    "nothing is written behind the samples");
        }
        if (count == 0) {
            Require(reader.Read(pointers, kMost) == 0, "the end is the end");
            return;
        }
        total += count;
    }
}

void RequireReadable(const std::string& text) {
    Require(std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; }), "a text can be printed");
}

void ReadFacts(const lineup::RecordingReader& reader) {
    Require(reader.Damage().size() <= lineup::DecodedTracks::kMostStretches, "damage is no endless list");
    for (const lineup::DamagedStretch& stretch : reader.Damage()) {
        Require(stretch.position >= 0 && stretch.count >= 0, "damage has a place");
        RequireReadable(stretch.reason);
    }
    for (const lineup::CheckNote& note : reader.Notes()) {
        RequireReadable(note.text);
    }
    RequireReadable(reader.EndedBecause().value_or(""));
    Require(!reader.Bits() || (*reader.Bits() >= 1 && *reader.Bits() <= 64), "a sample has its bits");
    Require(!reader.Seconds() || (*reader.Seconds() > 0 && std::isfinite(*reader.Seconds())), "a length is one");
}

// Whatever version a greeting names: inputs that are kept outlive versions.
void SayThisVersion(std::span<std::uint8_t> bytes) {
    constexpr std::size_t kAt = sizeof(lineup::decoding::MessageHeader) + offsetof(lineup::decoding::Hello, version);
    if (bytes.size() >= kAt + sizeof lineup::decoding::kProtocolVersion) {
        std::memcpy(bytes.data() + kAt, &lineup::decoding::kProtocolVersion, sizeof lineup::decoding::kProtocolVersion);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> bytes(data, data + size);
    SayThisVersion(bytes);
    try {
        lineup::RecordingReader reader(std::make_unique<Words>(bytes), [] { return std::string(); });
        ReadSamples(reader);
        ReadFacts(reader);
    } catch (const lineup::Unreadable& unreadable) {
        RequireReadable(unreadable.what());
    }
    return 0;
}
