#pragma once

#include <lineup/services/ContractReporter.h>
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"
#include "Tests/Support/RequestRecord.h"

#include <cstdint>
#include <vector>

namespace fuzz {

/// A host's session with the importer: requests of every kind, in the order and with the values that the
/// input says. After each one, what it may write is checked, and that it wrote nothing else.
class Session {
public:
    explicit Session(Bytes bytes) : mBytes(bytes) {}
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Run();

private:
    // A clip that GetInfo described, and what its private copy holds.
    struct Description {
        void* privateData;
        BarsAndToneInfo settings;
    };
    // The settings of an audio or peak request: which pointers it carries, and what it goes by.
    struct RequestSettings {
        const void* prefs = nullptr;
        const void* privateData = nullptr;
        BarsAndToneInfo used;
    };

    test::Placement TakePlacement();
    RequestSettings TakeRequestSettings();
    void Release(void* privateData);

    void Init();
    void ListFileFormats();
    void ListPixelFormats();
    void SendUnknownSelector();
    void Describe();
    void ReleaseOne();
    void ChooseSettings() { mSettings = mBytes.Settings(); }
    void ReadAudio();
    void ReadPeaks();
    void DrawFrame();
    void AskSettingsSize();
    void MakeDefaults();
    void EditSettings();

    Bytes mBytes;
    BarsAndToneInfo mSettings;  // the host's, handed over as prefs
    std::vector<Description> mDescriptions;
};

}  // namespace fuzz
