#include "Host/Lineup/Export/Wave/WaveHeader.h"

#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include <fmt/format.h>

#include <array>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::uint16_t kTagPcm = 1;
constexpr std::uint16_t kTagFloat = 3;
constexpr std::uint16_t kTagExtensible = 0xFFFE;

// The plain form of the chunk "fmt " is for what the first players knew.
constexpr int kMostPlainChannels = 2;
constexpr int kMostPlainRateHz = 48000;
constexpr int kMostPlainBits = 16;
constexpr std::uint32_t kPlainFormatBytes = 16;
constexpr std::uint32_t kExtensibleFormatBytes = 40;
constexpr std::uint16_t kExtensionBytes = 22;

// KSDATAFORMAT_SUBTYPE_*: these bytes after the tag.
constexpr std::array<std::uint8_t, 14> kSubtype = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                   0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

// Speaker positions: centre for mono; left, right; left, right, centre, low frequencies, side left, side right.
constexpr std::uint32_t kMaskMono = 0x4;
constexpr std::uint32_t kMaskStereo = 0x3;
constexpr std::uint32_t kMaskSurround = 0x60F;

constexpr std::uint32_t kTooLong = 0xFFFFFFFF;  // "see the chunk ds64"
constexpr std::uint32_t kDs64Bytes = 28;
constexpr std::uint32_t kChunkHeadBytes = 8;

// The chunk "bext" of EBU Tech 3285, version 1, up to its coding history.
constexpr std::uint32_t kBextBytes = 602;
constexpr std::size_t kDescriptionBytes = 256;
constexpr std::size_t kOriginatorBytes = 32;
constexpr std::size_t kReferenceBytes = 32;
constexpr std::size_t kDateBytes = 10;
constexpr std::size_t kTimeBytes = 8;
constexpr std::size_t kUmidAndReservedBytes = 64 + 190;
constexpr std::uint16_t kBextVersion = 1;
constexpr std::string_view kOriginator = "Bars and Tone";

/// Bytes in the making, little-endian.
class Bytes {
public:
    void Text(std::string_view text) { mBytes.insert(mBytes.end(), text.begin(), text.end()); }
    /// In a field of `size` bytes, cut or filled with zeros.
    void Field(std::string_view text, std::size_t size) {
        const std::string_view kept = text.substr(0, size);
        Text(kept);
        Zeros(size - kept.size());
    }
    void U16(std::uint16_t value) { Number(value, 2); }
    void U32(std::uint32_t value) { Number(value, 4); }
    void U64(std::uint64_t value) { Number(value, 8); }
    void Zeros(std::size_t count) { mBytes.resize(mBytes.size() + count); }
    template <std::size_t kCount>
    void Raw(const std::array<std::uint8_t, kCount>& bytes) {
        mBytes.insert(mBytes.end(), bytes.begin(), bytes.end());
    }
    [[nodiscard]] std::vector<std::uint8_t> Take() { return std::move(mBytes); }

private:
    void Number(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            mBytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }

    std::vector<std::uint8_t> mBytes;
};

int SampleBytes(SampleFormat format) {
    return static_cast<int>(PackedBytes(format));
}

bool IsFloat(const WaveFormat& format) {
    return format.samples == SampleFormat::F32;
}

bool IsPlain(const WaveFormat& format) {
    return format.channels <= kMostPlainChannels && format.sampleRateHz <= kMostPlainRateHz &&
           8 * SampleBytes(format.samples) <= kMostPlainBits;
}

std::uint32_t ChannelMask(int channels) {
    if (channels > 2) {
        return kMaskSurround;
    }
    return channels == 2 ? kMaskStereo : kMaskMono;
}

void AddFormat(Bytes& bytes, const WaveFormat& format) {
    const int sampleBytes = SampleBytes(format.samples);
    const int frameBytes = sampleBytes * format.channels;
    const std::uint16_t tag = IsFloat(format) ? kTagFloat : kTagPcm;
    const bool plain = IsPlain(format);
    bytes.Text("fmt ");
    bytes.U32(plain ? kPlainFormatBytes : kExtensibleFormatBytes);
    bytes.U16(plain ? tag : kTagExtensible);
    bytes.U16(static_cast<std::uint16_t>(format.channels));
    bytes.U32(static_cast<std::uint32_t>(format.sampleRateHz));
    bytes.U32(static_cast<std::uint32_t>(format.sampleRateHz * frameBytes));
    bytes.U16(static_cast<std::uint16_t>(frameBytes));
    bytes.U16(static_cast<std::uint16_t>(8 * sampleBytes));
    if (!plain) {
        bytes.U16(kExtensionBytes);
        bytes.U16(static_cast<std::uint16_t>(8 * sampleBytes));
        bytes.U32(ChannelMask(format.channels));
        bytes.U16(tag);
        bytes.Raw(kSubtype);
    }
}

std::string_view ModeOf(int channels) {
    if (channels > 2) {
        return "multichannel";
    }
    return channels == 2 ? "stereo" : "mono";
}

// A line of EBU R 98, and the zero that ends it.
std::string CodingHistory(const WaveFormat& format) {
    std::string line = fmt::format("A=PCM,F={},W={},M={},T={}\r\n", format.sampleRateHz,
                                   8 * SampleBytes(format.samples), ModeOf(format.channels), kOriginator);
    line += '\0';
    return line;
}

void AddBroadcastExtension(Bytes& bytes, const WaveFormat& format) {
    const std::string history = CodingHistory(format);
    bytes.Text("bext");
    bytes.U32(kBextBytes + static_cast<std::uint32_t>(history.size()));
    bytes.Field(format.description, kDescriptionBytes);
    bytes.Field(kOriginator, kOriginatorBytes);
    bytes.Zeros(kReferenceBytes);
    bytes.Field(format.date, kDateBytes);
    bytes.Field(format.time, kTimeBytes);
    bytes.U64(static_cast<std::uint64_t>(format.timeReference));
    bytes.U16(kBextVersion);
    bytes.Zeros(kUmidAndReservedBytes);
    bytes.Text(history);
    bytes.Zeros(history.size() % 2);
}

// What a 32-bit field says of a value that may need the chunk ds64.
std::uint32_t Field(std::uint64_t value, bool rf64) {
    return rf64 ? kTooLong : static_cast<std::uint32_t>(value);
}

std::vector<std::uint8_t> Build(const WaveFormat& format, std::uint64_t riffBytes, bool rf64) {
    const auto frames = static_cast<std::uint64_t>(format.frames);
    const std::uint64_t dataBytes = frames * static_cast<std::uint64_t>(format.channels * SampleBytes(format.samples));
    Bytes bytes;
    bytes.Text(rf64 ? "RF64" : "RIFF");
    bytes.U32(Field(riffBytes, rf64));
    bytes.Text("WAVE");
    bytes.Text(rf64 ? "ds64" : "JUNK");  // room for the 64-bit sizes, needed or not
    bytes.U32(kDs64Bytes);
    bytes.U64(rf64 ? riffBytes : 0);
    bytes.U64(rf64 ? dataBytes : 0);
    bytes.U64(rf64 ? frames : 0);
    bytes.U32(0);
    AddFormat(bytes, format);
    if (IsFloat(format) || !IsPlain(format)) {  // whatever is not plain PCM
        bytes.Text("fact");
        bytes.U32(4);
        bytes.U32(Field(frames, rf64));
    }
    AddBroadcastExtension(bytes, format);
    bytes.Text("data");
    bytes.U32(Field(dataBytes, rf64));
    return bytes.Take();
}

}  // namespace

std::vector<std::uint8_t> WaveHeader(const WaveFormat& format) {
    const std::uint64_t headBytes = Build(format, 0, false).size();
    const std::uint64_t dataBytes = static_cast<std::uint64_t>(format.frames) *
                                    static_cast<std::uint64_t>(format.channels * SampleBytes(format.samples));
    const std::uint64_t riffBytes = headBytes + dataBytes + dataBytes % 2 - kChunkHeadBytes;
    return Build(format, riffBytes, riffBytes > std::numeric_limits<std::uint32_t>::max());
}

}  // namespace parts
}  // namespace lineup
