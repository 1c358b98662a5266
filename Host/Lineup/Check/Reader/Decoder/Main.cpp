// lineup-decode file|pipe|url STALL NAME WHAT [FROM]: decodes a recording for liblineup, which starts it. A person has
// no use for it.
#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Decoder/LibraryLog.h"
#include "Host/Lineup/Check/Reader/Decoder/Session.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using lineup::decoding::InputKind;

enum ExitCode : int { kDone = 0, kNobodyListens = 1, kUsedWrongly = 2 };

std::optional<InputKind> ParseKind(std::string_view word) {
    if (word == "file") {
        return InputKind::File;
    }
    if (word == "pipe") {
        return InputKind::Pipe;
    }
    return word == "url" ? std::optional(InputKind::Url) : std::nullopt;
}

std::chrono::milliseconds ParseStall(std::string_view word) {
    long milliseconds = 0;
    std::from_chars(word.data(), word.data() + word.size(), milliseconds);
    return std::chrono::milliseconds(milliseconds);
}

// Where reached lines are counted, the counters go to a file at the end, which a process without rights cannot write.
std::uint32_t GiveUpRightsUnlessCounting(InputKind kind) {
#if defined(LINEUP_COUNTS_COVERAGE)
    static_cast<void>(kind);
    return 0;
#else
    return lineup::decoding::GiveUpRights(kind);
#endif
}

lineup::decoding::Wanted ParseWanted(std::string_view word, std::string_view from) {
    lineup::decoding::Wanted wanted{.sound = word != "picture", .picture = word != "sound", .from = {}};
    double seconds = 0;
    if (std::from_chars(from.data(), from.data() + from.size(), seconds).ec == std::errc()) {
        wanted.from = seconds;
    }
    return wanted;
}

int Decode(InputKind kind, std::chrono::milliseconds stall, const std::string& name,
           const lineup::decoding::Wanted& wanted) {
    const std::uint32_t givenUp = GiveUpRightsUnlessCounting(kind);
    lineup::decoding::ListenToLibraries();
    lineup::decoding::MessageWriter out(lineup::decoding::kMessageDescriptor);
    out.Write(lineup::decoding::Hello{.version = lineup::decoding::kProtocolVersion, .givenUp = givenUp});
    out.Flush();
    lineup::decoding::DecodeRecording(kind, name, stall, wanted, out);
    return kDone;
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kWords = 5;
    const auto kind = argc == kWords || argc == kWords + 1 ? ParseKind(argv[1]) : std::nullopt;
    if (!kind) {
        std::fputs("lineup-decode is for the library of lineup, which starts it.\n", stderr);
        return kUsedWrongly;
    }
    try {
        return Decode(*kind, ParseStall(argv[2]), argv[3], ParseWanted(argv[4], argc > kWords ? argv[kWords] : ""));
    } catch (const std::exception&) {
        return kNobodyListens;
    }
}
