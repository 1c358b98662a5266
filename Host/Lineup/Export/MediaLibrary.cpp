#include "Host/Lineup/Export/MediaLibrary.h"

#include <lineup/Error.h>

#include <string>

namespace lineup {

namespace {

template <class Function>
Function* Find(const DynamicLibrary& library, const char* name) {
    void* const symbol = library.Find(name);
    if (symbol == nullptr) {
        throw Error(std::string("cannot write media files: ") + kMediaLibraryName + " has no " + name);
    }
    return reinterpret_cast<Function*>(symbol);
}

}  // namespace

MediaLibrary::MediaLibrary(const DynamicLibrary& library)
    : mWriteMovie(Find<WriteFunction>(library, kWriteMovieName)),
      mWriteStill(Find<WriteFunction>(library, kWriteStillName)) {}

const MediaLibrary& MediaLibrary::Get() {
    // Never unloaded: exceptions it threw may still be on their way when the process ends.
    static const auto* const library = new DynamicLibrary(DynamicLibrary::Beside(kMediaLibraryName));
    static const MediaLibrary functions(*library);
    return functions;
}

}  // namespace lineup
