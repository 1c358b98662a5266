#include "Host/Lineup/Values/RethrowAsError.h"

#include <lineup/Error.h>

#include <fmt/format.h>

#include <new>

namespace lineup {
inline namespace parts {

void RethrowAsError(std::string_view act) {
    try {
        throw;
    } catch (const Error&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw Error(fmt::format("{}: there is not enough memory", act));
    } catch (const std::exception& error) {
        throw Error(fmt::format("{}: {}", act, error.what()));
    } catch (...) {
        throw Error(fmt::format("{}: for a reason that has no text", act));
    }
}

}  // namespace parts
}  // namespace lineup
