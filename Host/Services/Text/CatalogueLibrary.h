#pragma once

#include "Host/Services/Text/CatalogueEntry.h"

namespace zelcore {

/// The reader of message catalogues, loaded when first asked for and kept until the process ends; null when
/// its library is not installed. Any thread.
ReadCatalogueFunction* CatalogueReader();

}  // namespace zelcore
