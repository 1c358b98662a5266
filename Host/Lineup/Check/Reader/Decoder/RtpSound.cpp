#include "Host/Lineup/Check/Reader/Decoder/RtpSound.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

namespace lineup::decoding {

namespace {

constexpr std::string_view kScheme = "rtp://";
constexpr int kBitsOfByte = 8;

[[noreturn]] void Refuse(const std::string& text) {
    throw EarlyEnd(EndCause::NotOpened, text);
}

int NumberOf(const std::string& name, const std::string& text, int most) {
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || *stop != '\0' || number < 1 || number > most) {
        Refuse(fmt::format("{}={} must be a whole number from 1 to {}", name, text, most));
    }
    return number;
}

std::map<std::string, std::string> OptionsOf(std::string_view query) {
    std::map<std::string, std::string> options;
    while (!query.empty()) {
        const std::string_view option = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(query.size(), option.size() + 1));
        const std::size_t sign = std::min(option.find('='), option.size());
        options.emplace(option.substr(0, sign), option.substr(std::min(sign + 1, option.size())));
    }
    return options;
}

// "239.1.2.3:5004", "[ff02::1]:5004", with an @ in front as some write it.
void TakeAddress(std::string_view address, RtpSound& sound) {
    address = address.substr(0, address.find('/'));
    const std::size_t colon = address.rfind(':');
    std::string_view host = address.substr(0, colon);
    host.remove_prefix(std::min(host.find_first_not_of('@'), host.size()));
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    }
    if (colon == std::string_view::npos || colon + 1 == address.size() || host.empty()) {
        Refuse(fmt::format("{}{} must be HOST:PORT", kScheme, address));
    }
    sound.host = host;
    sound.port = address.substr(colon + 1);
}

std::string TakeOption(std::map<std::string, std::string>& options, const char* name) {
    auto taken = options.extract(name);
    return taken.empty() ? std::string() : std::move(taken.mapped());
}

int BitsOf(const std::string& encoding) {
    return encoding == "L16" ? 16 : 24;
}

bool IsSix(const RtpSound& sound) {
    return sound.host.find(':') != std::string::npos;
}

}  // namespace

std::optional<RtpSound> ParseRtpSound(const std::string& url) {
    const std::size_t mark = std::min(url.find('?'), url.size());
    RtpSound sound;
    sound.options = OptionsOf(std::string_view(url).substr(std::min(mark + 1, url.size())));
    const bool describes = std::ranges::any_of(sound.options, [](const auto& one) {
        return one.first == "encoding" || one.first == "rate" || one.first == "channels";
    });
    if (!url.starts_with(kScheme) || !describes) {
        return std::nullopt;
    }
    TakeAddress(std::string_view(url).substr(kScheme.size(), mark - kScheme.size()), sound);
    if (const std::string encoding = TakeOption(sound.options, "encoding"); !encoding.empty()) {
        if (encoding != "L24" && encoding != "L16") {
            Refuse(fmt::format("encoding={} must be L24 or L16; of others, a session description says what they are",
                               encoding));
        }
        sound.encoding = encoding;
    }
    if (const std::string rate = TakeOption(sound.options, "rate"); !rate.empty()) {
        sound.rateHz = NumberOf("rate", rate, static_cast<int>(kHighestRate));
    }
    if (const std::string channels = TakeOption(sound.options, "channels"); !channels.empty()) {
        sound.channels = NumberOf("channels", channels, static_cast<int>(kMostChannels));
    }
    for (const auto& [name, value] : sound.options) {
        if (name != "localaddr" && name != "buffer_size" && name != "sources") {
            Refuse(
                fmt::format("a URL that describes its sound has no option {}: encoding, rate, channels, localaddr, "
                            "buffer_size, sources",
                            name));
        }
    }
    return sound;
}

std::optional<std::string> WantedOfRtp(std::string_view complaint) {
    if (complaint.find("without an SDP") == std::string_view::npos) {
        return std::nullopt;
    }
    return "what its packets of RTP are only its sender knows: open its session description, a file.sdp, or say it "
           "behind the URL: ?encoding=L24&rate=48000";
}

std::string PacketUrl(const RtpSound& sound) {
    std::string url = IsSix(sound) ? fmt::format("{}[{}]:{}", kScheme, sound.host, sound.port)
                                   : fmt::format("{}{}:{}", kScheme, sound.host, sound.port);
    char mark = '?';
    for (const auto& [name, value] : sound.options) {
        url += fmt::format("{}{}={}", std::exchange(mark, '&'), name, value);
    }
    return url;
}

bool RtpPackets::TakeUp(std::span<const std::uint8_t> packet) {
    constexpr std::size_t kHead = 12;
    constexpr int kFirstControl = 72;  // with the marker's bit apart: 200 to 204, reports of RTCP
    constexpr int kLastControl = 76;
    const auto number = [packet](std::size_t at, std::size_t count) {
        std::uint32_t value = 0;
        for (const std::uint8_t byte : packet.subspan(at, count)) {
            value = value << kBitsOfByte | byte;
        }
        return value;
    };
    if (packet.size() < kHead || number(0, 1) >> 6U != 2) {
        return false;
    }
    const auto type = static_cast<int>(number(1, 1) & 0x7FU);
    std::size_t head = kHead + std::size_t{4} * (number(0, 1) & 0xFU);
    if ((number(0, 1) & 0x10U) != 0 && packet.size() >= head + 4) {
        head += 4 + std::size_t{4} * number(head + 2, 2);
    }
    if ((type >= kFirstControl && type <= kLastControl) || packet.size() <= head) {
        return false;
    }
    const std::uint32_t sequence = number(2, 2);
    const std::uint32_t stamp = number(4, 4);
    const bool follows = mLastNumber && sequence == ((*mLastNumber + 1) & 0xFFFFU) && stamp != mLastStamp;
    if (follows) {
        mPayloadType = type;
        mBytesASample = static_cast<double>(packet.size() - head) / (stamp - mLastStamp);
    }
    mLastNumber = sequence;
    mLastStamp = stamp;
    return follows;
}

std::string DescribeRtpSound(const RtpSound& sound, const RtpPackets& packets) {
    const int bytes = BitsOf(sound.encoding) / kBitsOfByte;
    const double there = packets.BytesASample() / bytes;
    const double channels = sound.channels.value_or(static_cast<int>(std::lround(there)));
    if (channels < 1 || channels > static_cast<double>(kMostChannels) || channels != there) {
        Refuse(fmt::format("its packets have {:g} bytes a sample, which is not {} of {}", packets.BytesASample(),
                           sound.channels ? fmt::format("{} channels", *sound.channels) : "channels", sound.encoding));
    }
    const std::string address = fmt::format("IN {} {}", IsSix(sound) ? "IP6" : "IP4", sound.host);
    std::string text = fmt::format("v=0\r\no=- 0 0 {}\r\ns=-\r\nc={}\r\nt=0 0\r\nm=audio {} RTP/AVP {}\r\n", address,
                                   address, sound.port, packets.PayloadType());
    text += fmt::format("a=rtpmap:{} {}/{}/{:g}\r\n", packets.PayloadType(), sound.encoding, sound.rateHz, channels);
    if (const auto sources = sound.options.find("sources"); sources != sound.options.end()) {
        text += fmt::format("a=source-filter: incl {} {}\r\n", address, sources->second);
    }
    return text;
}

}  // namespace lineup::decoding
