#include "Src/ToneSettingsDialog/ContractViolation.h"

#include "Host/Interface/Core/Contract.h"
#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Platform/DebuggerBreak.h"

#include <string_view>

namespace {

constexpr const char* kSourceFile = "ToneSettingsDialog";
constexpr std::string_view kInputContractViolation =
    "$$$/zelcore/utility/Error/Contract/InputContractViolation=An input contract violation has occurred!";

}  // namespace

void RaiseContractViolation(const char* condition, const char* function, int line) {
    if (zelcore::debug::BreakAfterContractDialog(condition, kSourceFile, function, line) &&
        zelcore::debug::IsDebuggerAttached()) {
        DebuggerBreak();
    }
    zelcore::config::ThrowError(kInputContractViolation);
}
