#include "Host/Lineup/Export/Media/MovieHead.h"

#include <lineup/Error.h>

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <string_view>

namespace lineup {

namespace {

using namespace std::string_view_literals;

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kNumberBytes = 4;
constexpr std::size_t kHeaderBytes = 8;                            // size and type
constexpr std::size_t kHandlerType = kHeaderBytes + 8;             // of "hdlr"
constexpr std::size_t kFirstDescription = kHeaderBytes + 8;        // of "stsd"
constexpr std::size_t kFirstPictureExtension = kHeaderBytes + 78;  // of a picture's description

// Of "chan": a tag, which may say that channels are named by a bitmap in the order of its bits.
constexpr std::size_t kLayoutTag = kHeaderBytes + 4;
constexpr std::size_t kLayoutBitmap = kLayoutTag + 4;
constexpr std::uint32_t kTagOfBitmap = 1U << 16U;
constexpr int kSurroundChannels = 6;

/// One atom's place among the bytes.
struct Atom {
    std::size_t begin = 0;
    std::size_t end = 0;
};

std::uint32_t NumberAt(const Bytes& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < kNumberBytes; ++i) {
        number = number << 8 | bytes.at(at + i);
    }
    return number;
}

void SetNumber(Bytes& bytes, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < kNumberBytes; ++i) {
        bytes.at(at + i) = static_cast<std::uint8_t>(number >> (8 * (kNumberBytes - 1 - i)));
    }
}

bool IsText(const Bytes& bytes, std::size_t at, std::string_view text) {
    return at + text.size() <= bytes.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

/// The atoms from `begin` to `end`, in their order.
std::vector<Atom> AtomsIn(const Bytes& bytes, std::size_t begin, std::size_t end) {
    std::vector<Atom> atoms;
    while (begin + kHeaderBytes <= end) {
        const std::size_t size = NumberAt(bytes, begin);
        if (size < kHeaderBytes || size > end - begin) {
            break;
        }
        atoms.push_back({begin, begin + size});
        begin += size;
    }
    return atoms;
}

std::optional<Atom> FindAtom(const Bytes& bytes, std::size_t begin, std::size_t end, std::string_view type) {
    for (const Atom& atom : AtomsIn(bytes, begin, end)) {
        if (IsText(bytes, atom.begin + kNumberBytes, type)) {
            return atom;
        }
    }
    return std::nullopt;
}

std::optional<Atom> FindIn(const Bytes& bytes, const Atom& parent, std::string_view type) {
    return FindAtom(bytes, parent.begin + kHeaderBytes, parent.end, type);
}

/// The atoms on the way from a track to one of the tables of its samples, outermost first; empty: it has none.
std::vector<Atom> WayToTable(const Bytes& bytes, const Atom& track, std::string_view table) {
    std::vector<Atom> way = {track};
    for (const std::string_view type : {"mdia"sv, "minf"sv, "stbl"sv, table}) {
        const std::optional<Atom> next = FindIn(bytes, way.back(), type);
        if (!next) {
            return {};
        }
        way.push_back(*next);
    }
    return way;
}

/// The same, and the description of its pictures, "vide", or its sound, "soun".
std::vector<Atom> WayToDescription(const Bytes& bytes, const Atom& track, std::string_view kind) {
    std::vector<Atom> way = WayToTable(bytes, track, "stsd");
    if (way.empty()) {
        return {};
    }
    const std::optional<Atom> handler = FindIn(bytes, way.at(1), "hdlr");
    const auto descriptions = AtomsIn(bytes, way.back().begin + kFirstDescription, way.back().end);
    if (!handler || !IsText(bytes, handler->begin + kHandlerType, kind) || descriptions.empty()) {
        return {};
    }
    way.push_back(descriptions.front());
    return way;
}

bool IsCodedInItsOwnOrder(const Bytes& bytes, const Atom& description) {
    return IsText(bytes, description.begin + kNumberBytes, "mp4a") ||
           IsText(bytes, description.begin + kNumberBytes, "alac");
}

/// Where a description of sound has its first atom, which its version says; its end, if that is unknown.
std::size_t FirstSoundExtension(const Bytes& bytes, const Atom& description) {
    constexpr std::array<std::size_t, 3> kBytes = {36, 52, 72};
    const std::size_t version = NumberAt(bytes, description.begin + kHeaderBytes + 8) >> 16U;
    return version < kBytes.size() ? description.begin + kBytes.at(version) : description.end;
}

/// Where a track's header, "tkhd", has its group of alternatives, in two bytes: behind the version and flags, two
/// dates, the track's number, four bytes, its duration, eight bytes and its layer.
std::size_t GroupAt(const Bytes& bytes, const Atom& header) {
    const std::size_t content = header.begin + kHeaderBytes;
    return content + (bytes.at(content) == 0 ? 4 + 5 * 4 : 4 + 3 * 8 + 2 * 4) + 8 + 2;
}

/// Puts `bytes` in place of those of `old`, which lies in the last atom of `way`.
void Replace(Bytes& head, const std::vector<Atom>& way, const Atom& old, const Bytes& bytes) {
    const auto begin = head.begin() + static_cast<std::ptrdiff_t>(old.begin);
    const auto after = head.erase(begin, begin + static_cast<std::ptrdiff_t>(old.end - old.begin));
    head.insert(after, bytes.begin(), bytes.end());
    for (const Atom& atom : way) {
        SetNumber(head, atom.begin,
                  static_cast<std::uint32_t>(atom.end - atom.begin + bytes.size() - (old.end - old.begin)));
    }
}

/// The ways to the descriptions of pictures, from the movie on; none without a picture track.
std::vector<Atom> WayToPicture(const Bytes& head) {
    const std::optional<Atom> movie = FindAtom(head, 0, head.size(), "moov");
    if (!movie) {
        return {};
    }
    for (const Atom& track : AtomsIn(head, movie->begin + kHeaderBytes, movie->end)) {
        std::vector<Atom> way = WayToDescription(head, track, "vide");
        if (!way.empty()) {
            way.insert(way.begin(), *movie);
            return way;
        }
    }
    return {};
}

/// The atom `type` of a picture's description; where it would go, if it is not there.
Atom ExtensionOf(const Bytes& head, const Atom& description, std::string_view type) {
    const std::size_t first = description.begin + kFirstPictureExtension;
    return FindAtom(head, first, description.end, type).value_or(Atom{first, first});
}

/// How many fields a frame has, and which is first.
Bytes FieldOrder(Scan scan) {
    constexpr std::array<std::uint8_t, 10> kProgressive = {0, 0, 0, 10, 'f', 'i', 'e', 'l', 1, 0};
    Bytes atom(kProgressive.begin(), kProgressive.end());
    if (scan != Scan::Progressive) {
        constexpr std::uint8_t kTopFirst = 1;
        constexpr std::uint8_t kBottomFirst = 6;
        atom.at(kHeaderBytes) = 2;
        atom.back() = scan == Scan::TopFieldFirst ? kTopFirst : kBottomFirst;
    }
    return atom;
}

/// Width, height and the centre's place, right and down of the middle, as fractions.
Bytes CleanAperture(int width, int height) {
    constexpr std::array<char, kNumberBytes> kType = {'c', 'l', 'a', 'p'};
    const std::array<std::uint32_t, 8> numbers = {
        static_cast<std::uint32_t>(width), 1, static_cast<std::uint32_t>(height), 1, 0, 1, 0, 1};
    Bytes atom(kHeaderBytes + numbers.size() * kNumberBytes);
    SetNumber(atom, 0, static_cast<std::uint32_t>(atom.size()));
    std::ranges::copy(kType, atom.begin() + kNumberBytes);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        SetNumber(atom, kHeaderBytes + i * kNumberBytes, numbers.at(i));
    }
    return atom;
}

}  // namespace

void LeaveTrackGroups(Bytes& head) {
    const std::optional<Atom> movie = FindAtom(head, 0, head.size(), "moov");
    if (!movie) {
        return;
    }
    for (const Atom& track : AtomsIn(head, movie->begin + kHeaderBytes, movie->end)) {
        if (const std::optional<Atom> header = FindIn(head, track, "tkhd")) {
            const std::size_t group = GroupAt(head, *header);
            head.at(group) = head.at(group + 1) = 0;
        }
    }
}

void SetCleanAperture(Bytes& head, int width, int height) {
    const std::vector<Atom> way = WayToPicture(head);
    if (way.empty()) {
        throw Error("cannot say which part of the picture is clean: the movie's head has no picture track");
    }
    Replace(head, way, ExtensionOf(head, way.back(), "clap"), CleanAperture(width, height));
}

void ForgetSampleTimes(Bytes& head) {
    constexpr std::array<std::uint8_t, 16> kNone = {0, 0, 0, 16, 's', 't', 't', 's'};
    const Bytes none(kNone.begin(), kNone.end());
    const std::size_t begin = FindAtom(head, 0, head.size(), "moov").value_or(Atom{}).begin;
    for (std::size_t i = 0;; ++i) {
        const Atom movie{begin, begin + NumberAt(head, begin)};  // which each table makes smaller
        const auto children = AtomsIn(head, movie.begin + kHeaderBytes, movie.end);
        if (i == children.size()) {
            return;
        }
        std::vector<Atom> way = WayToTable(head, children.at(i), "stts");
        if (!way.empty()) {
            const Atom table = way.back();
            way.back() = movie;
            Replace(head, way, table, none);
        }
    }
}

void NameCodedSurround(Bytes& head, std::uint32_t tag) {
    const Atom movie = FindAtom(head, 0, head.size(), "moov").value_or(Atom{});
    for (const Atom& track : AtomsIn(head, movie.begin + kHeaderBytes, movie.end)) {
        const std::vector<Atom> way = WayToDescription(head, track, "soun");
        if (way.empty() || !IsCodedInItsOwnOrder(head, way.back())) {
            continue;
        }
        const std::optional<Atom> names = FindAtom(head, FirstSoundExtension(head, way.back()), way.back().end, "chan");
        if (names && NumberAt(head, names->begin + kLayoutTag) == kTagOfBitmap &&
            std::popcount(NumberAt(head, names->begin + kLayoutBitmap)) == kSurroundChannels) {
            SetNumber(head, names->begin + kLayoutTag, tag);
            SetNumber(head, names->begin + kLayoutBitmap, 0);
        }
    }
}

void AddFieldOrder(Bytes& head, Scan scan) {
    const std::vector<Atom> way = WayToPicture(head);
    const Atom old = way.empty() ? Atom{} : ExtensionOf(head, way.back(), "fiel");
    if (!way.empty() && old.begin == old.end) {
        Replace(head, way, old, FieldOrder(scan));
    }
}

}  // namespace lineup
