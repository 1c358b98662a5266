#pragma once

#include <lineup/Clip.h>
#include <lineup/ExportSettings.h>

#include <cstdint>
#include <list>
#include <memory>
#include <vector>

namespace bridge {

/// How a picture is stored. Both are Y'CbCr in legal range, 4:2:2, below-black and above-white kept,
/// top line first.
enum class Packing {
    Yuyv8,     ///< bytes Y, Cb, Y, Cr for each pair of pixels
    Planar16,  ///< all of Y, then Cb, then Cr, 16 bits each: the 8-bit codes times 256, and what lies between
};

/// What a picture is drawn for.
struct PictureKey {
    int width = 0;
    int height = 0;
    lineup::Card card = lineup::Card::Auto;
    Packing packing = Packing::Yuyv8;
    bool bt709 = false;  ///< converted to BT.709 from the card's own BT.601
    int bits = 8;        ///< of each value; Planar16 holds 9 to 16, in its upper bits

    bool operator==(const PictureKey&) const = default;
};

using PictureBytes = std::vector<std::uint8_t>;

/// Draws the clip's picture. Throws for a size that a frame cannot have.
[[nodiscard]] PictureBytes DrawPicture(const lineup::Clip& clip, const PictureKey& key);

/// The pictures of a clip, each drawn once and kept while it is among the last few asked for. Not thread safe.
class PictureStore {
public:
    [[nodiscard]] std::shared_ptr<const PictureBytes> Get(const lineup::Clip& clip, const PictureKey& key);

private:
    struct Entry {
        PictureKey key;
        std::shared_ptr<const PictureBytes> bytes;
    };

    // A monitor, a thumbnail and a render, each with a size of its own.
    static constexpr std::size_t kMost = 4;

    std::list<Entry> mNewestFirst;
};

}  // namespace bridge
