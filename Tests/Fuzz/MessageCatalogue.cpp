// The catalogues of the localiser: any bytes in the place of one give texts, never an exception. The first
// byte chooses the language, the second the key that is asked for; the rest is the file.
#include <lineup/services/LocalizerSetup.h>
#include "Host/Interface/Core/Localizer.h"
#include "Host/Services/Text/UnicodeText.h"
#include "Tests/Fuzz/Support/Bytes.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Fuzz/Support/Scratch.h"

#include <array>
#include <string>

namespace {

constexpr std::array<const char*, 6> kLanguages = {"de",      "de_DE.UTF-8",        "de_CH",
                                                   "de@euro", "de_AT.ISO-8859-1@x", "../de"};

constexpr std::array<std::string_view, 5> kKeys = {
    "$$$/Test/Greeting=Hello", "$$$/a=b", "$$$/",
    "$$$/Corvane/Importers/BarsAndTone/ToneSettingsDialog/EBUStereo1000=EBU Stereo (1000 Hz)", "Hello"};

std::string TextOf(std::string_view key) {
    return zelcore::ToUtf8(zelcore::config::Localizer::Get().GetLocalizedString(key));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Scratch scratch("de/LC_MESSAGES/BarsAndTone.mo");
    fuzz::Bytes bytes(data, size);
    const char* const language = bytes.Pick(kLanguages);
    const std::string_view key = bytes.Pick(kKeys);
    scratch.Write(bytes.RestAsText());
    zelcore::config::SetLanguage(language);
    zelcore::config::AddCatalogues(scratch.Folder());
    const std::string text = TextOf(key);
    fuzz::Require(TextOf(key) == text, "a text stays the same");
    fuzz::Require(TextOf("Level=0") == "Level=0", "a text that is no key gives itself");
    zelcore::config::SetLanguage("C");
    fuzz::Require(TextOf("$$$/Test/Greeting=Hello") == "Hello", "no language gives the default text");
    return 0;
}
