// Makes pictures of Lineup Studio: studio_screenshots FOLDER BUNDLE. QT_SCALE_FACTOR=2 makes them for a fine
// screen. Nothing plays, so they are the same every time: meters and transport are told what to show.
#include <lineup/AudioReader.h>
#include <lineup/ToneChoice.h>
#include "Apps/studio/Export/ExportDialog.h"
#include "Apps/studio/Sound/PeakBank.h"
#include "Apps/studio/Window/ClipDialog.h"
#include "Apps/studio/Window/StudioWindow.h"
#include "Tests/Apps/studio/Check/Recordings.h"

#include <QApplication>
#include <QPixmap>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <iterator>
#include <optional>
#include <vector>

namespace {

using studio::Act;

struct Scene {
    const char* name;
    const char* ident;  // null: a steady tone
    Act theme;
    std::vector<Act> scopes;
    double playedTo;  // seconds into the clip; 0: not playing
    std::int64_t lengthFrames;
    std::optional<QPoint> pointAt;  // in shares of a thousand of the picture
    QSize size = {1180, 740};
};

const Scene kStereo = {"stereo", nullptr, Act::ThemeLight, {}, 0, 125, QPoint(180, 300), {1180, 740}};
const std::array<Scene, 8> kScenes = {{
    {"narrow", "ebu-5.1", Act::ThemeDark, {Act::Scope}, 1.7, 300, QPoint(440, 300), {660, 450}},
    {"narrow-light", nullptr, Act::ThemeLight, {Act::Vectorscope, Act::Parade}, 1.7, 125, QPoint(440, 300), {660, 450}},
    {"middle",
     "blits",
     Act::ThemeLight,
     {Act::Scope, Act::Vectorscope, Act::Parade},
     1.7,
     300,
     QPoint(440, 300),
     {1000, 800}},
    kStereo,
    {"blits", "blits", Act::ThemeLight, {}, 2.4, 335, std::nullopt},
    {"scope", "ebu-stereo-1000", Act::ThemeLight, {Act::Scope, Act::Vectorscope}, 1.3, 150, QPoint(300, 400)},
    {"parade", nullptr, Act::ThemeDark, {Act::Parade, Act::Vectorscope}, 0, 125, QPoint(570, 400)},
    {"dark", "ebu-5.1", Act::ThemeDark, {Act::Scope}, 1.7, 300, QPoint(440, 300)},
}};

lineup::ClipDocument Values(const lineup::Importer& importer, const Scene& scene) {
    lineup::ToneChoice tone;
    if (scene.ident != nullptr) {
        tone.ident = scene.ident;
    } else {
        tone.levelDb = -18;
    }
    lineup::ClipDocument values;
    values.settings = lineup::MakeSettings(importer, tone);
    values.lengthFrames = scene.lengthFrames;
    return values;
}

// The window as it looks when the clip has played so far.
void ShowPlaying(studio::StudioWindow& window, double seconds) {
    const auto& clip = window.Document().Clip();
    const auto rateHz = static_cast<std::int64_t>(clip->SampleRate());
    const auto end = static_cast<std::int64_t>(seconds * static_cast<double>(rateHz));
    window.Sound().Seek(end);
    auto* const meters = window.findChild<studio::MeterView*>();
    const auto channels = static_cast<std::size_t>(clip->NumChannels());
    studio::PeakBank peaks(channels);
    lineup::AudioReader reader(*clip);
    const auto hear = [&](std::int64_t from, std::int64_t to) {
        std::vector<std::vector<float>> sound(channels, std::vector<float>(static_cast<std::size_t>(to - from)));
        std::vector<float*> buffers;
        std::ranges::transform(sound, std::back_inserter(buffers), [](auto& samples) { return samples.data(); });
        reader.Read(from, to - from, buffers);
        for (std::size_t channel = 0; channel < channels; ++channel) {
            peaks.Add(channel, sound[channel]);
        }
        meters->Advance(&peaks, static_cast<double>(to - from) / static_cast<double>(rateHz));
    };
    hear(end - rateHz, end - rateHz / 2);
    hear(end - rateHz / 2, end);
    window.findChild<studio::TransportBar*>()->ShowPlaying(true);
}

void Save(QWidget& widget, const QString& target) {
    if (!widget.grab().save(target)) {
        throw std::runtime_error("cannot write " + target.toStdString());
    }
}

void Take(const std::shared_ptr<const lineup::Importer>& importer, const Scene& scene, const QString& target) {
    studio::StudioWindow window(importer);
    window.Document().New(Values(*importer, scene));
    window.Commands()[scene.theme].trigger();
    for (const Act act : {Act::Scope, Act::Vectorscope, Act::Parade}) {
        window.Commands()[act].setChecked(std::ranges::find(scene.scopes, act) != scene.scopes.end());
    }
    window.resize(scene.size);
    window.show();
    auto* const picture = window.findChild<studio::PictureView*>();
    if (!QTest::qWaitFor([&] { return picture->Frame().width() > 0; }, 30000)) {
        throw std::runtime_error("the picture never came");
    }
    if (scene.pointAt) {
        const QRectF frame = picture->Frame();
        const QPointF share(scene.pointAt->x() / 1000.0, scene.pointAt->y() / 1000.0);
        QTest::mouseMove(
            picture, QPointF(frame.x() + share.x() * frame.width(), frame.y() + share.y() * frame.height()).toPoint());
        QApplication::processEvents();
        if (scene.scopes.size() > 1) {  // and, as in a session, pins on two bars
            Q_EMIT picture->PinWanted(QPoint(520, 300), 0);
            Q_EMIT picture->PinWanted(QPoint(1240, 300), 0);
            QApplication::processEvents();
        }
    }
    if (scene.playedTo > 0) {
        ShowPlaying(window, scene.playedTo);
    }
    window.findChild<studio::TransportBar*>()->ShowSound("Speakers", false);
    Save(window, target);
}

// The dialogs of the stereo scene, not shown on the way: nothing in them has the focus.
void TakeDialogs(const std::shared_ptr<const lineup::Importer>& importer, const QString& target) {
    studio::StudioWindow window(importer);
    window.Commands()[Act::ThemeLight].trigger();
    const auto values = Values(*importer, kStereo);
    window.Document().New(values);
    studio::ExportDialog exporting(window.Document(), {.file = "line-up.mov"}, "/home/me/Videos", nullptr);
    Save(exporting, target.arg("export"));
    studio::ClipDialog clip(*importer, values, "Clip Settings", nullptr);
    Save(clip, target.arg("clip"));
}

// A damaged recording in the window of checks, which has gone to one of its faults.
class CheckScene {
public:
    explicit CheckScene(std::shared_ptr<const lineup::Importer> importer) : mImporter(std::move(importer)) {
        constexpr QSize kSize(1280, 720);
        test::RecordLineup(mImporter, mFolder.filePath("sent.mov"), kSize);
        test::DamageRecording(mFolder.filePath("sent.mov"), mFolder.filePath("take-2.mkv"), kSize);
    }

    void Take(Act theme, const QString& target) const {
        studio::StudioWindow window(mImporter);
        window.Commands()[theme].trigger();
        studio::CheckWindow checks(mImporter, &window);
        checks.Check(mFolder.filePath("take-2.mkv"));
        auto* const faults = checks.findChild<studio::FaultList*>();
        auto* const picture = checks.findChild<studio::PictureView*>("foundPicture");
        auto* const expected = checks.findChild<studio::PictureView*>("expectedPicture");
        const auto isThere = [&] {
            return !checks.IsRunning() && !picture->Frame().isEmpty() && !expected->Frame().isEmpty();
        };
        if (!QTest::qWaitFor(isThere, 60000)) {
            throw std::runtime_error("the check never ended");
        }
        faults->setCurrentItem(faults->topLevelItem(kFault));
        picture->SetPicture(nullptr);
        if (!QTest::qWaitFor(isThere, 30000)) {
            throw std::runtime_error("the fault was never shown");
        }
        Save(checks, target);
    }

private:
    static constexpr int kFault = 2;  // the dropout
    std::shared_ptr<const lineup::Importer> mImporter;
    QTemporaryDir mFolder;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    if (argc != 3) {
        std::fputs("usage: studio_screenshots FOLDER BUNDLE\n", stderr);
        return 2;
    }
    try {
        const auto importer = std::make_shared<const lineup::Importer>(argv[2]);
        const QString target = QString(argv[1]) + "/studio-%1.png";
        for (const Scene& scene : kScenes) {
            Take(importer, scene, target.arg(scene.name));
        }
        TakeDialogs(importer, target);
        const CheckScene check(importer);
        check.Take(Act::ThemeLight, target.arg("check"));
        check.Take(Act::ThemeDark, target.arg("check-dark"));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "studio_screenshots: %s\n", error.what());
        return 1;
    }
}
