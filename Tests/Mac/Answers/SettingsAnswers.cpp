#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Mac/Answers/Answers.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <limits>
#include <optional>
#include <string>

namespace test {

namespace {

constexpr int kFiller = 0xCC;

// Sends a request over `prefs`; adds its answer, the record and the settings, or the text of the exception.
void AskRequest(ImportEntryFunction* entry, AnswerWriter& answers, const std::string& question,
                std::optional<BarsAndToneInfo> prefs, bool defaults, float hostRate) {
    imGetPrefsRec record;
    std::memset(&record, kFiller, sizeof record);
    record.prefs = prefs ? &*prefs : nullptr;
    record.useDefaults = defaults ? 1 : 0;
    record.hostSampleRate = hostRate;
    try {
        const std::int32_t result = entry(kImportGetPrefs, nullptr, nullptr, &record);
        answers.Add(question + ": result", &result, sizeof result);
    } catch (const std::exception& error) {
        answers.Add(question + ": error", error.what());
    }
    record.prefs = nullptr;
    answers.Add(question + ": record", &record, sizeof record);
    if (prefs) {
        answers.Add(question, &*prefs, sizeof *prefs);
    }
}

BarsAndToneInfo SettingsOf(std::uint32_t channels) {
    BarsAndToneInfo settings;
    settings.numChannels = channels;
    settings.channelType = ChannelTypeFor(channels);
    return settings;
}

// The dialog over `settings`, and every call that it made to the toolkit.
void AskDialog(ImportEntryFunction* entry, AnswerWriter& answers, const std::string& question, FakeToolkit& toolkit,
               const BarsAndToneInfo& settings) {
    toolkit.Calls().clear();
    AskRequest(entry, answers, question, settings, false, 1.0F);
    std::string calls;
    for (const std::string& call : toolkit.Calls()) {
        calls += call + '\n';
    }
    answers.Add(question + ": calls", calls);
    const int nodes = toolkit.LiveNodes();
    answers.Add(question + ": nodes left", &nodes, sizeof nodes);
}

void PressOk(FakeDialog& dialog) {
    dialog.Button("okButton").Press();
}

// A person who types a frequency and a level.
Person Typing(double frequency, double levelDb) {
    return [frequency, levelDb](FakeDialog& dialog) {
        dialog.Number("frequencyHotTextNumber").Type(frequency);
        dialog.Number("amplitudeHotTextNumber").Type(levelDb);
        PressOk(dialog);
    };
}

// A person who chooses an ident.
Person Choosing(std::int64_t item) {
    return [item](FakeDialog& dialog) {
        dialog.Click("identifyChannelsBtn");
        dialog.Popup("identifierFormatPopup").Choose(item);
        PressOk(dialog);
    };
}

void AskPeople(ImportEntryFunction* entry, AnswerWriter& answers, FakeToolkit& toolkit) {
    for (const std::uint32_t channels : {1U, 2U, 6U, 3U}) {
        const std::string clip = "dialog of " + std::to_string(channels) + " channels";
        const BarsAndToneInfo settings = SettingsOf(channels);
        toolkit.person = PressOk;
        AskDialog(entry, answers, clip + ", OK", toolkit, settings);
        toolkit.person = [](FakeDialog& dialog) { dialog.Button("cancelButton").Press(); };
        AskDialog(entry, answers, clip + ", Cancel", toolkit, settings);
        toolkit.person = nullptr;
        AskDialog(entry, answers, clip + ", closed", toolkit, settings);
        for (double level = -60.0; level <= 12.0; level += 0.37) {
            toolkit.person = Typing(20.0 + level * 331.7, level);
            AskDialog(entry, answers, clip + ", level " + std::to_string(level), toolkit, settings);
        }
        for (int format = 0; format <= 4; ++format) {
            BarsAndToneInfo stored = settings;
            stored.identifierFormat = static_cast<IdentifierFormat>(format);
            stored.identifyChannels = 1;
            toolkit.person = PressOk;
            AskDialog(entry, answers, clip + ", stored ident " + std::to_string(format), toolkit, stored);
        }
    }
    for (const std::uint32_t channels : {2U, 6U}) {
        for (const std::int64_t item : {0, 1, 2, -1}) {
            toolkit.person = Choosing(item);
            AskDialog(entry, answers, "ident " + std::to_string(item) + " of " + std::to_string(channels) + " channels",
                      toolkit, SettingsOf(channels));
        }
    }
    for (const float gain : {0.0F, 1e-15F, 1e-16F, 0.1F, 1.0F, 3e38F, -1.0F}) {
        BarsAndToneInfo stored;
        stored.amplitude = gain;
        toolkit.person = PressOk;
        AskDialog(entry, answers, "gain " + std::to_string(gain), toolkit, stored);
    }
}

// Exceptions that pass through the importer, or come from it: the answer is their text, and what is left.
void AskFailures(ImportEntryFunction* entry, AnswerWriter& answers, FakeToolkit& toolkit) {
    toolkit.person = PressOk;
    for (const ControlSpec& control : IdentifiersLayout()) {
        toolkit.layout = Without(IdentifiersLayout(), control.name);
        AskDialog(entry, answers, "a layout without " + control.name, toolkit, {});
        toolkit.layout = WithWrongType(IdentifiersLayout(), control.name);
        AskDialog(entry, answers, "a layout with another " + control.name, toolkit, {});
    }
    toolkit.layout = IdentifiersLayout();
    toolkit.buildsNothing = true;
    AskDialog(entry, answers, "no dialog", toolkit, {});
    toolkit.buildsNothing = false;
    toolkit.person = [](FakeDialog& /*dialog*/) { throw std::runtime_error("the person has left"); };
    AskDialog(entry, answers, "an error in the dialog", toolkit, {});
    toolkit.person = [](FakeDialog& dialog) {
        zelui::ui::Message other;
        dialog.Button("okButton").Report(&other);
    };
    AskDialog(entry, answers, "a message of another type", toolkit, {});
}

}  // namespace

void AskSettings(ImportEntryFunction* entry, AnswerWriter& answers) {
    AskRequest(entry, answers, "size of the settings", std::nullopt, false, 48000.0F);
    AskRequest(entry, answers, "size of the settings, with defaults", std::nullopt, true, 48000.0F);
    for (const float rate : {48000.0F, 44100.0F, 0.0F, -8000.0F, std::numeric_limits<float>::infinity()}) {
        AskRequest(entry, answers, "defaults at " + std::to_string(rate), SettingsOf(6), true, rate);
    }
    AskRequest(entry, answers, "a dialog without a toolkit", SettingsOf(2), false, 48000.0F);
    FakeToolkit toolkit;
    toolkit.layout = IdentifiersLayout();
    AskPeople(entry, answers, toolkit);
    AskFailures(entry, answers, toolkit);
}

void AskEverything(ImportEntryFunction* entry, AnswerWriter& answers) {
    AskDescriptions(entry, answers);
    AskSettings(entry, answers);
    AskFrames(entry, answers);
    AskSound(entry, answers);
}

}  // namespace test
