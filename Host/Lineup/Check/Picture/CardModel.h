#pragma once

#include <lineup/Api.h>
#include <lineup/Card.h>
#include <lineup/Clip.h>

#include <array>
#include <string>
#include <vector>

namespace lineup::picture {

using Triple = std::array<double, 3>;

/// A rectangle in fractions of a card; right and bottom are exclusive.
struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// A rectangle of one colour.
struct CardPatch {
    std::string name;  ///< "75 % yellow", "-I", "below black"
    Box box;
    Triple rgb{};  ///< R'G'B', black is 0 and white 1; may lie outside of that
};

/// Where two colours meet.
struct CardEdge {
    bool isUpright = true;
    double at = 0;    ///< across
    double from = 0;  ///< along, where it begins and ends
    double to = 0;
    double room = 0;  ///< how far it is to the next edge at either side
    Triple before{};  ///< R'G'B' to its left or above; outside of the card both are the same
    Triple after{};
    bool isBorder = false;  ///< of the card as a whole: what lies outside is not known
};

/// What the plug-in draws, taken apart into what can be measured. Nothing of it is written down here: it is found in
/// the picture, so it is right for whatever card the plug-in gives.
struct CardModel {
    Card card = Card::HD;
    int width = 0;  ///< pixels, of the picture that it was found in
    int height = 0;
    std::vector<CardPatch> patches;
    std::vector<CardEdge> edges;
    std::vector<Box> ramps;  ///< from black at the left to white at the right
};

/// Draws the card and takes it apart.
[[nodiscard]] LINEUP_API CardModel ReadCardModel(const Clip& clip, Card card, int width, int height);

}  // namespace lineup::picture
