#include "Host/Lineup/Validation/Examination/RawImporter.h"

#include "Host/Lineup/Validation/Examination/Failure.h"
#include "Host/Lineup/Validation/Examination/RequestBoard.h"
#include "Host/Lineup/Validation/Examination/RequestText.h"

#include <exception>

namespace lineup::validation {

RawImporter::RawImporter(const std::filesystem::path& executable) {
    const OnBoard loading("loading the executable");
    mLibrary.emplace(executable);
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): what loads stands on the board first
    mEntry = reinterpret_cast<ImportEntryFunction*>(mLibrary->Find(kImportEntryName));
    Require(mEntry != nullptr, "{} does not export {}", executable.string(), kImportEntryName);
}

RawImporter::~RawImporter() {
    const OnBoard unloading("unloading the executable");
    mLibrary.reset();
}

// What was thrown may live in the plug-in, which is gone before the text is read: it is copied here.
std::int32_t RawImporter::Call(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms) const {
    const auto text = [&] { return RequestText(selector, param1, param2, mSettingsBytes); };
    try {
        const OnBoard asking(selector, text);
        return mEntry(selector, stdParms, param1, param2);
    } catch (const std::exception& error) {
        Fail("{} threw an exception: {}", text(), error.what());
    } catch (...) {
        Fail("{} threw an exception of an unknown kind", text());
    }
}

}  // namespace lineup::validation
