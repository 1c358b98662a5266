#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/Transport/TsPacket.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace lineup {
inline namespace parts {

/// How a programme's tables say what a stream of it is.
struct TableEntry {
    std::uint8_t type = 0;            ///< stream_type
    std::string_view registration{};  ///< four letters where the type alone does not say it
};

/// The tables of a transport stream with one programme, a packet each, counters still 0.
struct ProgrammeTables {
    TsPacket pat;  ///< which programmes there are
    TsPacket pmt;  ///< which streams the programme has
    TsPacket sdt;  ///< what it is called
};

/// The clock runs with the picture, or with the sound where there is no picture.
[[nodiscard]] LINEUP_API ProgrammeTables MakeTables(const std::optional<TableEntry>& picture,
                                                    const std::optional<TableEntry>& sound);

}  // namespace parts
}  // namespace lineup
