// Opens the default clip, reads a second of its sound and its picture, and writes a Wave file.
#include <lineup/AudioReader.h>
#include <lineup/BundleSearch.h>
#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include <lineup/interface/Frame/PixelFormats.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <vector>

int main(int argc, char** argv) {
    try {
        // The plug-in that was installed with the library, unless a bundle is named.
        const auto importer = std::make_shared<lineup::Importer>(argc > 2 ? argv[2] : lineup::FindBundle());
        const lineup::Clip clip(importer, importer->DefaultSettings(48000));

        std::vector<float> left(48000);
        std::vector<float> right(48000);
        float* const buffers[] = {left.data(), right.data()};
        lineup::AudioReader(clip).Read(0, 48000, buffers);
        std::printf("%d channels at %.0f Hz, peak %.2f\n", clip.NumChannels(), static_cast<double>(clip.SampleRate()),
                    static_cast<double>(*std::ranges::max_element(left)));

        const auto frame = clip.ReadFrame(1920, 1080, kPixelFormat_VUYA_32f);
        const auto* const yellow = reinterpret_cast<const float*>(frame.Line(10)) + std::size_t{4} * 540;
        std::printf("%dx%d, luma of yellow %.0f\n", frame.Width(), frame.Height(),
                    16 + 219 * static_cast<double>(yellow[2]));

        lineup::ExportSettings settings;
        settings.target = argc > 1 ? argv[1] : "tone.wav";
        settings.samples = 48000;
        settings.overwrite = true;
        const lineup::ExportReport report = lineup::Export(clip, settings);
        std::printf("%s: %lld samples\n", report.target.c_str(), static_cast<long long>(report.samples));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "embed: %s\n", error.what());
        return 1;
    }
}
