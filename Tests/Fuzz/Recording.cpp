// The files of strangers, read as `lineup check` reads them: by a process of its own that has no rights. Any bytes give
// samples that are numbers, or a sentence; and neither the process comes to grief nor the one that started it.
#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Fuzz/Support/Scratch.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using fuzz::Require;

constexpr std::size_t kMost = 4096;
constexpr std::size_t kEnough = 100 * kMost;

void RequireInGoodOrder(const std::string& reason) {
    for (const std::string_view word : {"crashed", "exit code", "nonsense", "no right", "has said nothing"}) {
        Require(reason.find(word) == std::string::npos, "the decoder ends in good order");
    }
}

void Read(lineup::RecordingReader& reader) {
    std::vector<std::vector<float>> samples(static_cast<std::size_t>(reader.Inputs()), std::vector<float>(kMost));
    std::vector<float*> pointers;
    for (auto& input : samples) {
        pointers.push_back(input.data());
    }
    std::size_t total = 0;
    while (const std::size_t count = total < kEnough ? reader.Read(pointers, kMost) : 0) {
        for (const auto& input : samples) {
            Require(std::all_of(input.begin(), input.end(), [](float value) { return std::isfinite(value); }),
                    "samples are numbers");
        }
        total += count;
    }
    RequireInGoodOrder(reader.EndedBecause().value_or(""));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Scratch scratch("recording");
    scratch.Write({reinterpret_cast<const char*>(data), size});
    try {
        Read(*lineup::RecordingReader::Open(scratch.File().string()));
    } catch (const lineup::Unreadable& unreadable) {
        RequireInGoodOrder(unreadable.what());
    }
    return 0;
}
