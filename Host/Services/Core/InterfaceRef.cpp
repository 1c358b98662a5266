#include "Host/Interface/Brio/InterfaceRef.h"

namespace Brio {

NullInterfaceException::NullInterfaceException()
    : std::runtime_error("A NULL interface pointer has been dereferenced.") {}

NullInterfaceException::~NullInterfaceException() = default;

}  // namespace Brio
