#include "Host/Lineup/Validation/Checks.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <latch>
#include <string>
#include <thread>
#include <vector>

namespace lineup::validation {

namespace {

// One of the requests that a host may make at any time.
struct MixedRequest {
    enum class Kind : std::uint8_t { kAudio, kPeaks, kFrame } kind = Kind::kAudio;
    Sound sound;
    Stretch stretch;
    float peakRateHz = 0;
    FrameShape shape;
};

// All that was written, as bits.
using Answer = std::vector<std::uint32_t>;

void Append(Answer& answer, const Samples& samples) {
    for (const std::vector<float>& channel : samples) {
        for (const float sample : channel) {
            answer.push_back(std::bit_cast<std::uint32_t>(sample));
        }
    }
}

Answer Ask(const RawImporter& plugin, const MixedRequest& request) {
    Answer answer;
    switch (request.kind) {
        case MixedRequest::Kind::kAudio:
            Append(answer, ReadAudio(plugin, request.sound.settings, request.sound.channels, request.stretch));
            break;
        case MixedRequest::Kind::kPeaks: {
            const PeakStretch stretch{.position = request.stretch.position,
                                      .rateHz = request.peakRateHz,
                                      .count = static_cast<std::int32_t>(request.stretch.count)};
            const Peaks peaks = ReadPeaks(plugin, request.sound.settings, request.sound.channels, stretch);
            Append(answer, peaks.maxima);
            Append(answer, peaks.minima);
            break;
        }
        case MixedRequest::Kind::kFrame: {
            const GuardedFrame frame(request.shape);
            DrawFrame(plugin, frame);
            for (int row = 0; row < request.shape.height; ++row) {
                const auto bytes = frame.Row(row);
                answer.insert(answer.end(), bytes.begin(), bytes.end());
            }
            break;
        }
    }
    return answer;
}

std::string Text(const MixedRequest& request) {
    switch (request.kind) {
        case MixedRequest::Kind::kAudio:
            return fmt::format("{} of {}", Text(request.stretch), request.sound.name);
        case MixedRequest::Kind::kPeaks:
            return fmt::format("peaks at {} Hz, {}, of {}", request.peakRateHz, Text(request.stretch),
                               request.sound.name);
        case MixedRequest::Kind::kFrame:
            break;
    }
    return Text(request.shape);
}

// Requests of every kind for every sound, at random places.
std::vector<MixedRequest> DrawRequests(Examination& examination) {
    std::vector<MixedRequest> requests;
    for (const float rateHz : {48000.0F, 44100.0F}) {
        for (const Sound& sound : Sounds(rateHz)) {
            for (const auto kind : {MixedRequest::Kind::kAudio, MixedRequest::Kind::kPeaks}) {
                MixedRequest request;
                request.kind = kind;
                request.sound = sound;
                request.stretch.position = static_cast<std::int64_t>(examination.Below(2000000)) - 1000000;
                request.stretch.count = 1 + static_cast<std::uint32_t>(examination.Below(2000));
                request.peakRateHz = examination.Below(2) == 0 ? 100.0F : 4000.0F;
                requests.push_back(request);
            }
        }
    }
    for (const std::uint32_t format : {kPixelFormat_VUYA_32f, kPixelFormat_VUYA_8u}) {
        MixedRequest request;
        request.kind = MixedRequest::Kind::kFrame;
        request.shape = {.width = 96, .height = 54, .pixelFormat = format};
        requests.push_back(request);
    }
    return requests;
}

struct Asked {
    MixedRequest request;
    Answer answer;
};

std::vector<Asked> AskAll(Examination& examination) {
    std::vector<Asked> asked;
    for (const MixedRequest& request : DrawRequests(examination)) {
        asked.push_back({.request = request, .answer = Ask(examination.Plugin(), request)});
    }
    return asked;
}

void RequireSame(const RawImporter& plugin, const Asked& asked, const char* when) {
    Require(Ask(plugin, asked.request) == asked.answer, "{} is not the same {}", Text(asked.request), when);
}

void Shuffle(std::vector<Asked>& asked, Examination& examination) {
    for (std::size_t i = asked.size(); i > 1; --i) {
        std::swap(asked[i - 1], asked[examination.Below(i)]);
    }
}

// What went wrong on one of several threads; empty when nothing did.
template <class Work>
std::string Complaint(Work work) {
    try {
        work();
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace

void CheckAnyOrder(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    std::vector<Asked> asked = AskAll(examination);
    std::ranges::reverse(asked);
    for (const Asked& each : asked) {
        RequireSame(plugin, each, "when the requests before it are others");
    }
    Shuffle(asked, examination);
    for (const Asked& each : asked) {
        RequireSame(plugin, each, "when the requests before it are others");
        RequireSame(plugin, each, "when it is asked for again");
    }
}

void CheckConcurrentRequests(Examination& examination) {
    constexpr std::size_t kThreads = 8;
    constexpr std::size_t kRounds = 4;
    const RawImporter& plugin = examination.Plugin();
    const std::vector<Asked> asked = AskAll(examination);

    // Each thread begins elsewhere, and all begin at once.
    std::latch start(kThreads);
    std::vector<std::string> complaints(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            complaints[t] = Complaint([&] {
                for (std::size_t i = 0; i < kRounds * asked.size(); ++i) {
                    RequireSame(plugin, asked[(i + t * 5) % asked.size()], "when others are asked for at once");
                }
            });
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& complaint : complaints) {
        Require(complaint.empty(), "{}", complaint);
    }
}

}  // namespace lineup::validation
