#include "Host/Lineup/Validation/Examination/RawImporter.h"

#include "Host/Lineup/Validation/Examination/Examination.h"

#include <exception>

namespace lineup::validation {

RawImporter::RawImporter(const std::filesystem::path& executable)
    : mLibrary(executable), mEntry(reinterpret_cast<ImportEntryFunction*>(mLibrary.Find(kImportEntryName))) {
    Require(mEntry != nullptr, "{} does not export {}", executable.string(), kImportEntryName);
}

// What was thrown may live in the plug-in, which is gone before the text is read: it is copied here.
std::int32_t RawImporter::Call(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms) const {
    try {
        return mEntry(selector, stdParms, param1, param2);
    } catch (const std::exception& error) {
        throw Failure(fmt::format("the request with selector {} threw an exception: {}", selector, error.what()));
    } catch (...) {
        throw Failure(fmt::format("the request with selector {} threw an exception of an unknown kind", selector));
    }
}

}  // namespace lineup::validation
