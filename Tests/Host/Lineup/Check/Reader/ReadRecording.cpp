// read_recording RECORDING [STALL MILLISECONDS]: reads it whole and prints what it found, a fact a line.
#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <vector>

namespace {

long PeakKilobytes(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    return usage.ru_maxrss;
}

void Read(lineup::RecordingReader& reader) {
    constexpr std::size_t kBlock = 4096;
    const auto inputs = static_cast<std::size_t>(reader.Inputs());
    std::vector<std::vector<float>> samples(inputs, std::vector<float>(kBlock));
    std::vector<float*> pointers;
    for (auto& input : samples) {
        pointers.push_back(input.data());
    }
    std::vector<double> peaks(inputs, 0);
    std::size_t total = 0;
    while (const std::size_t count = reader.Read(pointers, kBlock)) {
        for (std::size_t i = 0; i < inputs; ++i) {
            const auto [least, most] =
                std::minmax_element(samples[i].begin(), samples[i].begin() + static_cast<std::ptrdiff_t>(count));
            peaks[i] = std::max({peaks[i], static_cast<double>(*most), -static_cast<double>(*least)});
        }
        total += count;
    }
    std::printf("samples %zu\npeaks", total);
    for (const double peak : peaks) {
        std::printf(" %.6f", peak);
    }
    std::puts("");
}

void PrintFacts(const lineup::RecordingReader& reader) {
    std::printf("rate %g\ninputs %d\nbits %d\nlossy %d\nseconds %.3f\n", reader.SampleRate(), reader.Inputs(),
                reader.Bits().value_or(0), reader.Lossy() ? static_cast<int>(*reader.Lossy()) : -1,
                reader.Seconds().value_or(-1));
}

}  // namespace

int main(int argc, char** argv) {
    lineup::DecoderSettings settings;
    if (argc > 2) {
        settings.stall = std::chrono::milliseconds(std::atoi(argv[2]));
    }
    try {
        const auto reader = lineup::RecordingReader::Open(argv[1], settings);
        PrintFacts(*reader);
        Read(*reader);
        for (const auto& damage : reader->Damage()) {
            std::printf("damage %lld %lld %s\n", static_cast<long long>(damage.position),
                        static_cast<long long>(damage.count), damage.reason.c_str());
        }
        for (const auto& note : reader->Notes()) {
            std::printf("note %s: %s\n", note.id.c_str(), note.text.c_str());
        }
        std::printf("ended %s\n", reader->EndedBecause().value_or("whole").c_str());
    } catch (const lineup::Error& error) {
        std::printf("unreadable %s\n", error.what());
    }
    std::printf("kilobytes %ld\ndecoder kilobytes %ld\n", PeakKilobytes(RUSAGE_SELF), PeakKilobytes(RUSAGE_CHILDREN));
    return 0;
}
