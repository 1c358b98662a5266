// Exports a function, but not the one that hosts look for.
#include "Host/Interface/Core/Export.h"

extern "C" ZEL_API int importEntry() {
    return 400;
}
