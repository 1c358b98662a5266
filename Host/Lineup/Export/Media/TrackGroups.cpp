#include "Host/Lineup/Export/Media/TrackGroups.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace lineup {

namespace {

constexpr std::int64_t kHeadBytes = 8;
constexpr std::int64_t kLargeHeadBytes = 16;

/// An atom's content within the file.
struct Atom {
    std::int64_t first = 0;
    std::int64_t end = 0;
};

template <std::size_t kCount>
std::int64_t BigEndian(const std::array<std::uint8_t, kCount>& bytes, std::size_t first, std::size_t count) {
    std::int64_t value = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        value = value * 256 + bytes.at(i);
    }
    return value;
}

// Calls visit(atom) for each of the atoms called `name` that lie side by side in `where`.
template <class Visit>
void ForEach(TargetFile& file, const Atom& where, std::string_view name, Visit visit) {
    for (std::int64_t at = where.first; at + kHeadBytes <= where.end;) {
        std::array<std::uint8_t, kLargeHeadBytes> head{};
        file.ReadAt(at, head);
        std::int64_t size = BigEndian(head, 0, 4);
        const std::int64_t headBytes = size == 1 ? kLargeHeadBytes : kHeadBytes;
        size = size == 1 ? BigEndian(head, 8, 8) : size;
        if (size < headBytes || size > where.end - at) {
            return;
        }
        if (std::string_view(reinterpret_cast<const char*>(head.data()) + 4, 4) == name) {
            visit(Atom{at + headBytes, at + size});
        }
        at += size;
    }
}

// Behind the version and flags, two dates, the track's number, four bytes, its duration, eight bytes and its layer.
std::int64_t GroupAt(TargetFile& file, const Atom& trackHeader) {
    std::array<std::uint8_t, 1> version{};
    file.ReadAt(trackHeader.first, version);
    return trackHeader.first + (version.front() == 0 ? 4 + 5 * 4 : 4 + 3 * 8 + 2 * 4) + 8 + 2;
}

}  // namespace

void LeaveTrackGroups(TargetFile& file) {
    constexpr std::array<std::uint8_t, 2> kNoGroup = {};
    const std::int64_t size = file.Size();
    ForEach(file, {0, size}, "moov", [&](const Atom& movie) {
        ForEach(file, movie, "trak", [&](const Atom& track) {
            ForEach(file, track, "tkhd", [&](const Atom& header) {
                file.Seek(GroupAt(file, header));
                file.Write(kNoGroup);
            });
        });
    });
    file.ThrowIfFailed();
}

}  // namespace lineup
