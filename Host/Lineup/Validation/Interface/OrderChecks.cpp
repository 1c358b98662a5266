#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <exception>
#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lineup::validation {

namespace {

// All that was written, as bits.
using Answer = std::vector<std::uint32_t>;

void Append(Answer& answer, const Samples& samples) {
    for (const std::vector<float>& channel : samples) {
        for (const float sample : channel) {
            answer.push_back(std::bit_cast<std::uint32_t>(sample));
        }
    }
}

// One of the requests that a host may make at any time.
struct MixedRequest {
    std::string name;
    std::function<Answer(const RawImporter&)> ask;
};

MixedRequest AudioRequest(const TestClip& clip, const Stretch& stretch) {
    return {.name = fmt::format("{} of {}", Text(stretch), clip.name), .ask = [=](const RawImporter& plugin) {
                Answer answer;
                Append(answer, ReadAudio(plugin, clip, stretch));
                return answer;
            }};
}

MixedRequest PeakRequest(const TestClip& clip, const PeakStretch& stretch) {
    return {.name = fmt::format("{} of {}", Text(stretch), clip.name), .ask = [=](const RawImporter& plugin) {
                const Peaks peaks = ReadPeaks(plugin, clip, stretch);
                Answer answer;
                Append(answer, peaks.maxima);
                Append(answer, peaks.minima);
                return answer;
            }};
}

MixedRequest FrameRequest(const FrameShape& shape) {
    return {.name = Text(shape), .ask = [=](const RawImporter& plugin) {
                const GuardedFrame frame(shape);
                DrawFrame(plugin, frame);
                Answer answer;
                for (int row = 0; row < shape.height; ++row) {
                    const auto bytes = frame.Row(row);
                    answer.insert(answer.end(), bytes.begin(), bytes.end());
                }
                return answer;
            }};
}

// Requests of every kind for every clip, at random places.
std::vector<MixedRequest> DrawRequests(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    const auto position = [&] { return static_cast<std::int64_t>(examination.Below(2000000)) - 1000000; };
    const auto count = [&] { return 1 + static_cast<std::int32_t>(examination.Below(2000)); };
    const std::vector<TestClip> clips = AllClips(examination);
    std::vector<MixedRequest> requests;
    for (const TestClip& clip : clips) {
        for (int i = 0; clip.hasAudio && i < 2; ++i) {
            const auto samples = static_cast<std::uint32_t>(count());
            requests.push_back(AudioRequest(clip, {.position = position(), .count = samples}));
        }
        if (clip.hasAudio && ServesPeaks(plugin, clip)) {
            const float rateHz = examination.Below(2) == 0 ? 100.0F : 4000.0F;
            requests.push_back(PeakRequest(clip, {.position = position(), .rateHz = rateHz, .count = count()}));
        }
    }
    if (clips.front().hasVideo) {
        for (const std::uint32_t format : DrawnFormats(plugin)) {
            requests.push_back(FrameRequest({.width = 96, .height = 54, .pixelFormat = format}));
        }
    }
    return requests;
}

struct Asked {
    MixedRequest request;
    Answer answer;
};

std::vector<Asked> AskAll(Examination& examination) {
    std::vector<Asked> asked;
    for (MixedRequest& request : DrawRequests(examination)) {
        Answer answer = request.ask(examination.Plugin());
        asked.push_back({.request = std::move(request), .answer = std::move(answer)});
    }
    return asked;
}

void RequireSame(const RawImporter& plugin, const Asked& asked, const char* when) {
    Require(asked.request.ask(plugin) == asked.answer, "{} is not the same {}", asked.request.name, when);
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

}  // namespace

std::span<const Promise> OrderPromises() {
    static constexpr std::array kRows = {
        Promise{"any-order", "What a request gives does not depend on the requests before it.", CheckAnyOrder},
        Promise{"concurrent-requests", "Requests from eight threads at once give what they give one by one.",
                CheckConcurrentRequests},
    };
    return kRows;
}

}  // namespace lineup::validation
