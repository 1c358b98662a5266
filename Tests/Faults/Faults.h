#pragma once

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Tests/Faults/RightImporter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Importers that are wrong in one way each: a row is a bundle, what it gets wrong, and what lineup validate finds.
namespace faults {

/// A request as it came.
struct Request {
    std::int32_t selector = 0;
    imStdParms* stdParms = nullptr;
    void* param1 = nullptr;
    void* param2 = nullptr;

    /// Serves it as the plug-in does.
    [[nodiscard]] std::int32_t Rightly() const { return test::ServeRightly(selector, stdParms, param1, param2); }

    template <class Record>
    [[nodiscard]] Record& As() const {
        return *static_cast<Record*>(param2);
    }
};

/// What a check finds of the bundle.
struct Found {
    const char* check;  ///< its id
    const char* text;   ///< a part of what it finds
    const char* outcome = "failed";
    const char* arguments = "";  ///< of lineup validate, beside the check
};

/// Where a bundle's executable comes from.
enum class Executable : std::uint8_t {
    Table,  ///< it serves requests as its row says
    Own,    ///< it is built for itself
    None,   ///< there is no file
};

struct Fault {
    const char* bundle;
    const char* what;                      ///< one sentence
    std::optional<std::int32_t> selector;  ///< of the requests that it gets wrong; none: of all of them
    std::function<std::int32_t(const Request&)> serve;
    std::vector<Found> found;  ///< none for what only other tests use
    Executable executable = Executable::Table;
    bool abortsWhenUnloaded = false;
};

/// By subject, one source file each.
[[nodiscard]] std::vector<Fault> LoadingFaults();
[[nodiscard]] std::vector<Fault> SettingsFaults();
[[nodiscard]] std::vector<Fault> SoundFaults();
[[nodiscard]] std::vector<Fault> PictureFaults();

/// All of them.
[[nodiscard]] inline std::vector<Fault> Faults() {
    std::vector<Fault> faults;
    for (const auto& subject : {LoadingFaults(), SettingsFaults(), SoundFaults(), PictureFaults()}) {
        faults.insert(faults.end(), subject.begin(), subject.end());
    }
    return faults;
}

/// Serves a request that is changed first, in a record of the fault's own.
template <class Record, class Change>
auto Changed(Change change) {
    return [change](const Request& asked) {
        Record record = asked.As<Record>();
        change(record);
        return test::ServeRightly(asked.selector, &record);
    };
}

/// Changes the record first, and serves the request then.
template <class Record, class Change>
auto Before(Change change) {
    return [change](const Request& asked) {
        change(asked.As<Record>());
        return asked.Rightly();
    };
}

/// Serves the request, and changes the record then.
template <class Record, class Change>
auto After(Change change) {
    return [change](const Request& asked) {
        const std::int32_t result = asked.Rightly();
        if (result == kImportNoError) {
            change(asked.As<Record>());
        }
        return result;
    };
}

}  // namespace faults
