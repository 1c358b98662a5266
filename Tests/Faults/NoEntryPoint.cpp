// Exports a function, but not the one that hosts look for.
#include "Host/Interface/Core/Export.h"

// NOLINTNEXTLINE(readability-identifier-naming): the wrong name is the fault
extern "C" ZEL_API int importEntry() {
    return 400;
}
