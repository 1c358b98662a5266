// The files that a person keeps: any bytes give what was stored, or a sentence. Another kind of document is
// another row of kReaders.
#include <lineup/Error.h>
#include <lineup/SettingsFile.h>
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Fuzz/Support/Scratch.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

struct Document {
    const std::filesystem::path& file;
    std::string_view bytes;
};

// A settings file holds the record, byte for byte, and nothing else.
void ReadSettingsFile(const Document& document) {
    const bool isRecord = document.bytes.size() == sizeof(lineup::BarsAndToneInfo);
    try {
        const lineup::BarsAndToneInfo settings = lineup::ReadSettings(document.file);
        fuzz::Require(isRecord, "settings have their size");
        fuzz::Require(std::memcmp(&settings, document.bytes.data(), sizeof settings) == 0,
                      "settings are read byte for byte");
    } catch (const lineup::Error&) {
        fuzz::Require(!isRecord, "a file of the right size is read");
    }
}

using Reader = void(const Document&);
constexpr Reader* kReaders[] = {ReadSettingsFile};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Scratch scratch("document");
    const Document document{scratch.File(), {reinterpret_cast<const char*>(data), size}};
    scratch.Write(document.bytes);
    for (Reader* const read : kReaders) {
        read(document);
    }
    return 0;
}
