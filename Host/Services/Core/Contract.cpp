#include "Host/Interface/Core/Contract.h"

#include <lineup/services/ContractReporter.h>

#include <cstdio>
#include <mutex>
#include <utility>

namespace zelcore::debug {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): one reporter serves the process
std::mutex gReporterMutex;
ContractReporter gReporter;  // empty: PrintReport
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

bool PrintReport(const ContractReport& report) {
    std::fprintf(stderr, "contract violated: %s\n  in %s\n  at %s, line %d\n", report.condition, report.function,
                 report.file, report.line);
    return false;
}

ContractReporter ReporterInUse() {
    const std::lock_guard lock(gReporterMutex);
    return gReporter;
}

}  // namespace

ContractReporter SetContractReporter(ContractReporter reporter) {
    const std::lock_guard lock(gReporterMutex);
    return std::exchange(gReporter, std::move(reporter));
}

bool BreakAfterContractDialog(const char* condition, const char* file, const char* function, int line) {
    const ContractReport report{condition, file, function, line};
    // Called outside the lock: a reporter may show a window and run for as long as it likes.
    const ContractReporter reporter = ReporterInUse();
    return reporter ? reporter(report) : PrintReport(report);
}

}  // namespace zelcore::debug
