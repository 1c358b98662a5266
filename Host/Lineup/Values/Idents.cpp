#include <lineup/Idents.h>
#include "Host/Interface/Media/TickTime.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace lineup {

namespace {

constexpr std::int64_t Tenths(std::int64_t tenths) {
    return tenths * (zelmediatypes::kTicksPerSecond / 10);
}

constexpr std::array<Ident, 4> kIdents = {{
    {"ebu-stereo-1000", "EBU stereo ident, 1000 Hz", EBUStereo1000, 2, Tenths(30)},
    {"ebu-stereo-400", "EBU stereo ident, 400 Hz", EBUStereo400, 2, Tenths(30)},
    {"ebu-5.1", "EBU multichannel ident, 5.1", EBUMultichannel, 6, Tenths(120)},
    {"blits", "BLITS ident, 5.1", BLITS5_1, 6, Tenths(134)},
}};

bool AsksForIdent(const BarsAndToneInfo& settings) {
    return settings.identifyChannels == 1;
}

template <class Predicate>
const Ident* IdentWhere(Predicate predicate) {
    const auto* const found = std::ranges::find_if(kIdents, predicate);
    return found == kIdents.end() ? nullptr : found;
}

}  // namespace

std::span<const Ident> Idents() {
    return kIdents;
}

const Ident* FindIdent(std::string_view name) {
    return IdentWhere([name](const Ident& ident) { return ident.name == name; });
}

const Ident* FindIdent(const BarsAndToneInfo& settings) {
    if (!AsksForIdent(settings)) {
        return nullptr;
    }
    return IdentWhere([&](const Ident& ident) { return ident.format == settings.identifierFormat; });
}

bool AsksForUnknownIdent(const BarsAndToneInfo& settings) {
    return AsksForIdent(settings) && FindIdent(settings) == nullptr;
}

std::string UnknownIdentText(const BarsAndToneInfo& settings) {
    return fmt::format("unknown ident {}: silent", static_cast<std::uint32_t>(settings.identifierFormat));
}

}  // namespace lineup
