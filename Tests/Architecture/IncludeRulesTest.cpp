#include "Tests/Architecture/IncludeRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using test::BrokenIncludeRules;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(IncludeRules, HoldInTheWholeTree) {
    const auto files = test::ReadCppSources();
    ASSERT_THAT(files, testing::Not(IsEmpty()));
    for (const auto& file : files) {
        EXPECT_THAT(BrokenIncludeRules(file), IsEmpty());
    }
}

TEST(IncludeRules, LetThePlugInUseItsInterfaceBoostAndTheStandardLibrary) {
    EXPECT_THAT(
        BrokenIncludeRules({"Src/ToneGenerator/Tone.cpp",
                            {R"(#include "Src/ToneGenerator/Tone.h")", R"(#include "Host/Interface/Media/TickTime.h")",
                             "#include <boost/bind.hpp>", "#include <vector>", "#include <cstdint>  // std::int64_t"}}),
        IsEmpty());
}

TEST(IncludeRules, KeepTheHostsInsideOutOfThePlugIn) {
    EXPECT_THAT(BrokenIncludeRules(
                    {"Src/BarsAndToneImporter/FrameRequest.cpp", {"", R"(#include <lineup/services/FrameBuffer.h>)"}}),
                ElementsAre("Src/BarsAndToneImporter/FrameRequest.cpp:2: Src/BarsAndToneImporter/ may not include "
                            "lineup/services/FrameBuffer.h"));
}

TEST(IncludeRules, KeepSystemAndMediaHeadersOutOfThePlugIn) {
    EXPECT_THAT(BrokenIncludeRules({"Src/ToneGenerator/Tone.cpp",
                                    {"#include <unistd.h>", "#include <sys/mman.h>", "#include <QWidget>",
                                     "#  include <libavcodec/avcodec.h>"}}),
                SizeIs(4));
}

TEST(IncludeRules, KeepTheImporterOutOfTheToneGenerator) {
    EXPECT_THAT(BrokenIncludeRules({"Src/ToneGenerator/Tone.cpp",
                                    {R"(#include "Src/BarsAndToneImporter/BarsAndToneInfo.h")",
                                     R"(#include "Host/Interface/Importer/ImportSelectors.h")"}}),
                SizeIs(2));
}

TEST(IncludeRules, LetTheHostSeeNothingOfThePlugInButItsSettings) {
    EXPECT_THAT(
        BrokenIncludeRules({"include/lineup/Clip.h", {R"(#include "Src/BarsAndToneImporter/BarsAndToneInfo.h")"}}),
        IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"include/lineup/Clip.h", {R"(#include "Src/ToneGenerator/ToneGenerator.h")"}}),
                SizeIs(1));
    EXPECT_THAT(BrokenIncludeRules({"Apps/lineup/Main.cpp", {R"(#include "Src/ToneGenerator/ToneGenerator.h")"}}),
                SizeIs(1));
}

TEST(IncludeRules, LetNoRoomKnowOneThatStandsAboveIt) {
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Clip/Clip.cpp", {"#include <lineup/Importer.h>"}}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Plugin/Importer.cpp", {"#include <lineup/Clip.h>"}}), SizeIs(1));
    EXPECT_THAT(BrokenIncludeRules(
                    {"Host/Lineup/Files/TargetFile.cpp", {R"(#include "Host/Lineup/Export/Plan/ExportPlan.h")"}}),
                SizeIs(1));
}

TEST(IncludeRules, HoldTheHeadersOfTheDoorToTheRulesOfTheirRooms) {
    EXPECT_THAT(BrokenIncludeRules({"include/lineup/Clip.h", {"#include <lineup/Importer.h>"}}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"include/lineup/Importer.h", {"#include <lineup/Clip.h>"}}),
                ElementsAre("include/lineup/Importer.h:1: Host/Lineup/Plugin/ may not include lineup/Clip.h"));
    EXPECT_THAT(BrokenIncludeRules({"include/lineup/Unheard.h", {}}), SizeIs(1));
}

TEST(IncludeRules, LetTheInterfacesHeadersNameTheirNeighbours) {
    EXPECT_THAT(BrokenIncludeRules({"Host/Interface/UI/Controls.h", {R"(#include "../Brio/String.h")"}}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Interface/UI/Controls.h", {R"(#include "../../Services/Text/Catalogue.h")"}}),
                SizeIs(1));
}

TEST(IncludeRules, KeepMediaLibrariesInTheirPartOfTheExport) {
    const std::vector<std::string> lines = {"#include <libavcodec/avcodec.h>", "#include <zimg.h>"};
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Export/Media/Encoder.cpp", {lines[0]}}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Picture/Colours.cpp", {lines[1]}}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Export/Exporter.cpp", lines}), SizeIs(2));
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Clip/Clip.cpp", lines}), SizeIs(2));
    EXPECT_THAT(BrokenIncludeRules({"Apps/lineup/Render.cpp", lines}), SizeIs(2));
}

TEST(IncludeRules, KeepTheServicesFreeOfTheirUsers) {
    EXPECT_THAT(BrokenIncludeRules({"Host/Services/Bundles/Bundles/Bundle.cpp", {R"(#include <lineup/Error.h>)"}}),
                SizeIs(1));
    EXPECT_THAT(BrokenIncludeRules({"Host/Interface/Media/TickTime.h", {R"(#include <lineup/services/Bundle.h>)"}}),
                SizeIs(1));
}

TEST(IncludeRules, LetABridgeAndItsTestsAloneKnowTheFramework) {
    const std::vector<std::string> lines = {"#include <framework/mlt.h>"};
    EXPECT_THAT(BrokenIncludeRules({"Bridges/MLT/Producer.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Tests/Bridges/MLT/SoundTest.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Clip/Clip.cpp", lines}), SizeIs(1));
}

TEST(IncludeRules, KeepTheInsideOfThePlugInOutOfTheTestsOfABridge) {
    EXPECT_THAT(BrokenIncludeRules({"Tests/Bridges/MLT/SoundTest.cpp",
                                    {R"(#include "Src/ToneGenerator/ToneGenerator.h")",
                                     R"(#include "Host/Interface/Importer/ImportRecords.h")"}}),
                testing::Not(IsEmpty()));
}

TEST(IncludeRules, RefuseAnIncludeByNeighbourhood) {
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Clip/Clip.cpp", {R"(#include "Clip.h")"}}), SizeIs(1));
}

TEST(IncludeRules, LetTheImporterAndTheValidatorKnowTheRequestRecords) {
    const std::vector<std::string> lines = {R"(#include "Host/Interface/Importer/ImportRecords.h")"};
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Plugin/Importer.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Validation/Examination/Requests.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Src/BarsAndToneImporter/FrameRequest.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Clip/Clip.cpp", lines}), SizeIs(1));
    EXPECT_THAT(BrokenIncludeRules({"Src/ToneSettingsDialog/Dialog.cpp", lines}), SizeIs(1));
}

TEST(IncludeRules, KeepTheValidatorToItsOwnWayIntoABundle) {
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Validation/A.cpp", {R"(#include <lineup/Importer.h>)"}}), SizeIs(1));
    EXPECT_THAT(
        BrokenIncludeRules({"Host/Lineup/Validation/A.cpp", {R"(#include "Host/Lineup/Plugin/DynamicLibrary.h")"}}),
        IsEmpty());
    const std::vector<std::string> lines = {"auto* entry = library.Find(kImportEntryName);"};
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Validation/Examination/RawImporter.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Validation/Interface/FrameChecks.cpp", lines}), SizeIs(1));
}

TEST(IncludeRules, LetOneFileOnEachSideLoadSharedObjects) {
    const std::vector<std::string> lines = {"    void* handle = dlopen(file, RTLD_NOW);"};
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Plugin/DynamicLibrary.cpp", lines}), IsEmpty());
    EXPECT_THAT(BrokenIncludeRules({"Host/Lineup/Plugin/Importer.cpp", lines}), SizeIs(1));
}

}  // namespace
