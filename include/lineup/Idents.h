#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace lineup {

/// A channel-identification sequence as a person picks it.
struct Ident {
    std::string_view name;  ///< on the command line: "ebu-stereo-1000"
    std::string_view title;
    IdentifierFormat format;
    std::uint32_t numChannels;  ///< of the only layout it is made for
    std::int64_t cycleTicks;    ///< the length of one cycle
};

/// The sequences, in the order of their formats.
LINEUP_API std::span<const Ident> Idents();

/// The sequence called `name`, or null.
LINEUP_API const Ident* FindIdent(std::string_view name);

/// The sequence that a clip with these settings plays, or null for a steady tone or an unknown format.
LINEUP_API const Ident* FindIdent(const BarsAndToneInfo& settings);

/// Whether a clip with these settings is to play a sequence that does not exist: it is silent.
LINEUP_API bool AsksForUnknownIdent(const BarsAndToneInfo& settings);

/// The same in words, "unknown ident 7: silent", for settings that do.
LINEUP_API std::string UnknownIdentText(const BarsAndToneInfo& settings);

}  // namespace lineup
