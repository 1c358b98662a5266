// Transport streams as they arrive: packets lost, doubled, out of order, of another programme, with wrong bits and
// wrong clocks. What the product sends is damaged as an input says, and decoded here, by the code of the process that
// has no rights. Whatever arrives gives samples that are numbers and pictures of the size they say, or a sentence.
#include <lineup/Error.h>
#include <lineup/Importer.h>
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Check/Reader/Decoder/LibraryLog.h"
#include "Host/Lineup/Check/Reader/Decoder/Session.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Fuzz/Support/Scratch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using fuzz::Require;
using Packet = std::array<std::uint8_t, 188>;
using Stream = std::vector<Packet>;

constexpr double kRate = 48000;
constexpr std::size_t kMostDamages = 16;
constexpr std::size_t kMostPackets = 2000;
constexpr std::size_t kMost = 4096;            // samples of a read
constexpr std::size_t kEnough = 1000 * kMost;  // a gap may be a day long
constexpr std::array<const char*, 5> kAudio = {"aac", "ac3", "mp2", "s302m", lineup::kNoCodec};

// Half a second, as it is sent.
const Stream& Sent(const char* audio) {
    static std::map<std::string, Stream> streams;
    Stream& stream = streams[audio];
    if (stream.empty()) {
        // Stays loaded: the fuzzer counts in its memory which branches are taken.
        static const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
        const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.sampleRateHz = kRate}));
        const fuzz::Scratch scratch("sent.ts");
        lineup::SendSettings settings;
        settings.target = scratch.File().string();
        settings.overwrite = true;
        settings.width = 128;
        settings.height = 96;
        settings.videoCodec = "mpeg2";
        settings.audioCodec = audio;
        settings.samples = static_cast<std::int64_t>(kRate / 2);
        settings.timing = lineup::SendTiming::Free;
        Send(clip, settings);
        std::ifstream file(scratch.File(), std::ios::binary);
        for (Packet packet{}; stream.size() < kMostPackets && file.read(reinterpret_cast<char*>(packet.data()), 188);) {
            stream.push_back(packet);
        }
        Require(!stream.empty(), "a stream is sent");
    }
    return stream;
}

// One thing that happens to packets on their way.
void Damage(Stream& stream, fuzz::Bytes& bytes) {
    const auto place = [&] { return static_cast<std::ptrdiff_t>(bytes.Take<std::uint16_t>() % stream.size()); };
    const std::ptrdiff_t first = place();
    const std::ptrdiff_t count = std::min(std::ssize(stream) - first, std::ptrdiff_t{1} + bytes.Take<std::uint8_t>());
    Packet& packet = stream[static_cast<std::size_t>(first)];
    switch (bytes.Below(8)) {
        case 0:  // a bit
            packet[bytes.Below(packet.size())] ^= static_cast<std::uint8_t>(1U << bytes.Below(8));
            break;
        case 1:  // what is said of the packet, and of its contents where they begin
            for (std::size_t at = bytes.Below(20), end = at + bytes.Below(20); at < end; ++at) {
                packet[at] = bytes.Take<std::uint8_t>();
            }
            break;
        case 2:
            stream.erase(stream.begin() + first, stream.begin() + first + std::min(count, std::ssize(stream) - 1));
            break;
        case 3: {
            const Stream again(stream.begin() + first, stream.begin() + first + count);
            stream.insert(stream.begin() + place(), again.begin(), again.end());
            break;
        }
        case 4: {
            const Packet moved = std::exchange(stream[static_cast<std::size_t>(place())], packet);
            packet = moved;
            break;
        }
        case 5:  // another programme's
            for (std::ptrdiff_t at = first; at < first + count; ++at) {
                stream[static_cast<std::size_t>(at)][2] ^= bytes.Take<std::uint8_t>();
            }
            break;
        case 6: {  // another stream from here on
            const Stream& other = Sent(bytes.Pick(kAudio));
            stream.resize(static_cast<std::size_t>(first) + 1);
            stream.insert(stream.end(), other.begin(), other.end());
            break;
        }
        default:  // counters and clocks, all the way
            for (std::ptrdiff_t at = first; at < std::ssize(stream); ++at) {
                stream[static_cast<std::size_t>(at)][3 + bytes.Below(2)] ^= bytes.Take<std::uint8_t>();
            }
    }
    stream.resize(std::min(stream.size(), kMostPackets));
}

// A file in memory, written anew for each input.
class Memory {
public:
    explicit Memory(int as) : mDescriptor(as) {
        const int made = memfd_create("fuzz", MFD_CLOEXEC);
        if (made < 0 || dup2(made, as) < 0) {
            throw std::system_error(errno, std::generic_category(), "cannot have a file in memory");
        }
        close(made);
    }
    void Replace(std::span<const std::uint8_t> bytes) const {
        const bool done = ftruncate(mDescriptor, 0) == 0 && lseek(mDescriptor, 0, SEEK_SET) == 0 &&
                          write(mDescriptor, bytes.data(), bytes.size()) == std::ssize(bytes) &&
                          lseek(mDescriptor, 0, SEEK_SET) == 0;
        Require(done, "memory is written to");
    }
    [[nodiscard]] int Descriptor() const { return mDescriptor; }

private:
    int mDescriptor;
};

class Words : public lineup::ByteInput {
public:
    explicit Words(int descriptor) : mDescriptor(descriptor) { lseek(mDescriptor, 0, SEEK_SET); }
    std::size_t Read(std::span<std::byte> bytes) override {
        const ssize_t count = read(mDescriptor, bytes.data(), bytes.size());
        Require(count >= 0, "memory is read");
        return static_cast<std::size_t>(count);
    }

private:
    int mDescriptor;
};

class Pictures : public lineup::PictureListener {
public:
    void OnFacts(const lineup::decoding::Picture& facts) override {
        Require(std::isfinite(facts.frameRate) && facts.frameRate >= 0, "a frame rate is a number");
    }
    bool OnPicture(const lineup::DecodedPicture& picture) override {
        Require(std::isfinite(picture.head.seconds), "a picture has its time");
        return true;
    }
    void OnEnd(const lineup::decoding::PictureEnd& end) override {
        Require(std::isfinite(end.start) && std::isfinite(end.end), "pictures begin and end");
    }
};

void RequireSense(const std::string& ended) {
    Require(ended.find("nonsense") == std::string::npos, ("the decoder makes sense: " + ended).c_str());
}

// Gives how many samples there are.
std::size_t Read(int messages) {
    Pictures pictures;
    lineup::RecordingReader reader(
        std::make_unique<Words>(messages), [] { return std::string("cut off"); }, &pictures);
    if (!reader.HasSound()) {
        reader.ReadPictures();
        return 0;
    }
    std::vector<std::vector<float>> samples(static_cast<std::size_t>(reader.Inputs()), std::vector<float>(kMost));
    std::vector<float*> pointers;
    for (auto& input : samples) {
        pointers.push_back(input.data());
    }
    std::size_t total = 0;
    while (const std::size_t count = total < kEnough ? reader.Read(pointers, kMost) : 0) {
        total += count;
        for (const auto& input : samples) {
            Require(std::all_of(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(count),
                                [](float value) { return std::isfinite(value); }),
                    "samples are numbers");
        }
    }
    RequireSense(reader.EndedBecause().value_or(""));
    return total;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Memory arrived(lineup::decoding::kInputDescriptor);
    static const Memory said(100);
    static const bool isListening = (lineup::decoding::ListenToLibraries(), true);
    Require(isListening, "complaints are heard");
    fuzz::Bytes bytes(data, size);
    const char* const audio = bytes.Pick(kAudio);
    Stream stream = Sent(audio);
    const std::size_t all = bytes.Below(kMostDamages);
    for (std::size_t damages = all; damages > 0; --damages) {
        Damage(stream, bytes);
    }
    arrived.Replace({stream.front().data(), stream.size() * sizeof(Packet)});
    said.Replace({});
    lineup::decoding::MessageWriter out(said.Descriptor());
    out.Write(lineup::decoding::Hello{.version = lineup::decoding::kProtocolVersion, .givenUp = 0});
    lineup::decoding::DecodeRecording(lineup::decoding::InputKind::File, "arrived.ts", std::chrono::seconds(10),
                                      {.sound = true, .picture = true, .from = {}}, out);
    out.Flush();
    try {
        const std::size_t samples = Read(said.Descriptor());
        Require(all > 0 || audio == std::string_view(lineup::kNoCodec) || samples > 20000,
                "what is not damaged is heard");
    } catch (const lineup::Unreadable& unreadable) {
        RequireSense(unreadable.what());
    }
    return 0;
}
