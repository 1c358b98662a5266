// The window of Lineup Studio on an hour of clip, on a screen of SCALE pixels a point: what each frame takes
// while it plays, scrolls and zooms, and what the peaks of its lanes take. At 60 frames a second a frame has
// 16.7 ms; `late` counts those that took longer on the clock, `cpu_late` those that did on the processor.
#include <lineup/ToneChoice.h>
#include <lineup/WaveformOverview.h>
#include "Apps/studio/Window/StudioWindow.h"
#include "Benchmarks/Race.h"
#include "Benchmarks/Studio/FrameMeter.h"

#include <benchmark/benchmark.h>

#include <QSettings>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using bench::FrameTime;

constexpr double kFrameMs = 1000.0 / 60;
constexpr QSize kWindow{1920, 1040};  // points: a whole screen
constexpr std::int64_t kHourFrames = 90000;
constexpr int kNotch = 120;
constexpr int kPlayedFrames = 600;
constexpr int kMovedFrames = 240;

struct Sound {
    const char* name;
    const char* channels;
    const char* ident;  // null: a steady tone
};
constexpr std::array<Sound, 3> kSounds = {
    {{"stereo_tone", "stereo", nullptr}, {"5.1_tone", "5.1", nullptr}, {"5.1_blits", "5.1", "blits"}}};

std::shared_ptr<const lineup::Importer> ThePlugin() {
    static const auto plugin = std::make_shared<const lineup::Importer>(BENCHMARK_BUNDLE);
    return plugin;
}

bench::FrameMeter& Meter() {
    return *dynamic_cast<bench::FrameMeter*>(QCoreApplication::instance());
}

/// The window with an hour of a sound, its picture there, and the playhead in the middle.
class HourWindow {
public:
    explicit HourWindow(const Sound& sound) : mWindow(ThePlugin()) {
        lineup::ToneChoice tone;
        tone.channels = sound.channels;
        if (sound.ident != nullptr) {
            tone.ident = sound.ident;
        }
        lineup::ClipDocument hour;
        hour.settings = lineup::MakeSettings(*ThePlugin(), tone);
        hour.lengthFrames = kHourFrames;
        mWindow.Document().New(hour);
        mWindow.resize(kWindow);
        mWindow.show();
        while (mWindow.findChild<studio::PictureView*>()->Frame().isEmpty()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        mWindow.Sound().Seek(mWindow.Sound().Length() / 2);
        Meter().NextFrame();
    }

    [[nodiscard]] studio::StudioWindow& Window() { return mWindow; }
    [[nodiscard]] studio::LanesView& Lanes() { return *mWindow.findChild<studio::LanesView*>(); }

    /// Turns the wheel over the playhead.
    void TurnWheel(int notches, Qt::KeyboardModifiers modifiers) {
        const QPointF place(Lanes().X(mWindow.Sound().Position()), Lanes().height() / 2.0);
        QWheelEvent event(place, Lanes().mapToGlobal(place), {}, {0, notches * kNotch}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&Lanes(), &event);
    }

private:
    studio::StudioWindow mWindow;
};

void Report(benchmark::State& state, const std::vector<FrameTime>& frames) {
    const auto report = [&](const std::string& prefix, double FrameTime::*part) {
        std::vector<double> times(frames.size());
        std::ranges::transform(frames, times.begin(), [part](const FrameTime& frame) { return frame.*part; });
        state.counters[prefix + "median_ms"] = bench::Quantile(times, 0.5);
        state.counters[prefix + "p99_ms"] = bench::Quantile(times, 0.99);
        state.counters[prefix + "worst_ms"] = bench::Quantile(times, 1);
        state.counters[prefix + "late"] =
            static_cast<double>(std::ranges::count_if(times, [](double ms) { return ms > kFrameMs; }));
    };
    report("", &FrameTime::wallMs);
    report("cpu_", &FrameTime::cpuMs);
}

/// Makes frames, `act` before each being what a person does.
void MeasureFrames(benchmark::State& state, const std::function<void(std::size_t frame)>& act) {
    std::vector<FrameTime> frames;
    Meter().Forget();
    for (auto unused : state) {
        static_cast<void>(unused);
        act(frames.size());
        frames.push_back(Meter().NextFrame());
        state.SetIterationTime(frames.back().wallMs / 1000);
    }
    Report(state, frames);
}

void Play(benchmark::State& state, const Sound& sound, int notches) {
    HourWindow hour(sound);
    hour.TurnWheel(notches, Qt::NoModifier);
    hour.Window().Sound().Play();
    Meter().NextFrame();
    MeasureFrames(state, [](std::size_t /*frame*/) {});
}

// Back and forth over the clip, a tenth of what is visible each time, while it plays.
void Scroll(benchmark::State& state, const Sound& sound) {
    HourWindow hour(sound);
    hour.TurnWheel(20, Qt::NoModifier);
    hour.Window().Sound().Play();
    MeasureFrames(state, [&](std::size_t frame) { hour.TurnWheel(frame / 40 % 2 == 0 ? 1 : -1, Qt::ShiftModifier); });
}

// From the whole hour to single samples and back.
void Zoom(benchmark::State& state, const Sound& sound) {
    HourWindow hour(sound);
    hour.Window().Sound().Play();
    MeasureFrames(state, [&](std::size_t frame) { hour.TurnWheel(frame / 80 % 2 == 0 ? 1 : -1, Qt::NoModifier); });
}

// The peaks alone, of each width that zooming shows, as the lanes ask for them.
void Peaks(benchmark::State& state, const Sound& sound) {
    HourWindow hour(sound);
    const lineup::Clip& clip = *hour.Window().Document().Clip();
    const int columns = hour.Lanes().Span().Width() * SCALE;
    std::vector<FrameTime> requests;
    double seconds = 3600;
    for (auto unused : state) {
        static_cast<void>(unused);
        const zelmediatypes::TickTime length(
            static_cast<std::int64_t>(seconds * static_cast<double>(zelmediatypes::kTicksPerSecond)));
        requests.push_back(bench::Measured([&] {
            const auto overview = lineup::ReadOverview(clip, {.startSample = 0, .length = length, .columns = columns});
            benchmark::DoNotOptimize(overview.channels.data());
        }));
        state.SetIterationTime(requests.back().wallMs / 1000);
        seconds = seconds > 0.02 ? seconds / 1.25 : 3600;
    }
    Report(state, requests);
}

void RegisterAll() {
    for (const Sound& sound : kSounds) {
        const auto add = [&](const std::string& act, int iterations, auto run) {
            benchmark::RegisterBenchmark((act + "/" + sound.name + "/" + std::to_string(SCALE) + "x").c_str(),
                                         [run](benchmark::State& state) { run(state); })
                ->Iterations(iterations)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        };
        add("play_all", kPlayedFrames, [&sound](benchmark::State& state) { Play(state, sound, 0); });
        add("play_zoomed", kPlayedFrames, [&sound](benchmark::State& state) { Play(state, sound, 30); });
        add("scroll", kMovedFrames, [&sound](benchmark::State& state) { Scroll(state, sound); });
        add("zoom", kMovedFrames, [&sound](benchmark::State& state) { Zoom(state, sound); });
        add("peaks", kMovedFrames, [&sound](benchmark::State& state) { Peaks(state, sound); });
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qputenv("QT_SCALE_FACTOR", QByteArray::number(SCALE));
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    const bench::FrameMeter application(argc, argv);
    QApplication::setOrganizationName("BarsAndTone");
    QApplication::setApplicationName("studio-benchmarks");
    return bench::RunAll(argc, argv, RegisterAll);
}
