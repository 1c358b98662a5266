#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"
#include "Host/Lineup/Values/PictureShape.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kMostSqueezed = 0.035;  // of a shape: 704 and 720 pixels make the same picture
constexpr double kErrors = 2;            // times what is left of the edges
constexpr double kOthersEdges = 0.015;   // of the width: other generators round their edges another way

std::string PlaceText(const Place& place) {
    return fmt::format("{:.1f} by {:.1f} pixels at {:.1f}, {:.1f}", place.width, place.height, place.x, place.y);
}

void DecideTurns(const Place& place, PictureFindings& findings) {
    if (place.mirrored) {
        findings.faults.push_back(MakePictureFault("mirrored", {}, {}, "Left and right are reversed."));
    }
    if (place.flipped) {
        findings.faults.push_back(MakePictureFault("flipped", {}, {}, "Top and bottom are reversed."));
    }
}

std::string TurnText(double clockwise, bool isMirrored) {
    if (clockwise == 0) {
        return "The file says to mirror its pictures where they are shown; the card is described as it is stored.";
    }
    if (isMirrored) {
        return fmt::format(
            "The file says to turn its pictures by {:.4g} degrees clockwise and to mirror them where they "
            "are shown; the card is described as it is stored.",
            clockwise);
    }
    return fmt::format(
        "The file says to turn its pictures by {:.4g} degrees clockwise where they are shown; the card is "
        "described as it is stored.",
        clockwise);
}

void TellTurn(const decoding::Frame& head, PictureFindings& findings) {
    const auto clockwise = static_cast<double>(head.turnTag);
    const bool isMirrored = (head.flags & decoding::kMirrorTag) != 0;
    if (clockwise != 0 || isMirrored) {
        findings.notes.push_back(
            {.id = "turned-where-shown", .part = CheckPart::Picture, .text = TurnText(clockwise, isMirrored)});
    }
}

// The shapes that a card has on a screen, width to height: HD's is 16:9 wide, SD's that or 4:3.
bool HasShape(Card card, double shape) {
    constexpr double kWide = 16.0 / 9;
    constexpr double kNarrow = 4.0 / 3;
    const auto is = [shape](double due) { return std::abs(shape / due - 1) < kMostSqueezed; };
    return is(kWide) || (card == Card::SD && is(kNarrow));
}

// A card of a shape of its own, which fills its frame by the pixels that frames of that size have, is as it was sent.
void TellShape(const PictureCase& known, PictureFindings& findings) {
    const PictureReport& report = *findings.picture;
    const Rational usual = ShapeOf(report.width, report.height, PictureAspect::Auto).sampleAspect;
    const double usualAspect = static_cast<double>(usual.num) / static_cast<double>(usual.den);
    const double aspect = report.pixelAspect.value_or(usualAspect);
    const Place& place = known.seen->geometry.place;
    const double shape = place.width / place.height * aspect;
    const double asSent = usualAspect * report.width / report.height;
    if (HasShape(known.seen->model->card, shape) || std::abs(shape / asSent - 1) < kMostSqueezed) {
        return;
    }
    findings.notes.push_back(
        {.id = "card-squeezed",
         .part = CheckPart::Picture,
         .text =
             fmt::format("The card is {:.3f} times as wide as high where it is shown with pixels of {:.3f} to 1: it is "
                         "squeezed or stretched.",
                         shape, aspect)});
}

}  // namespace

void DecideCard(const PictureCase& known, PictureFindings& findings) {
    PictureReport& report = *findings.picture;
    const bool isHd = known.seen->model->card == Card::HD;
    report.card = isHd ? "hd" : "sd";
    if (known.settings->card != "auto" && known.settings->card != report.card) {
        findings.faults.push_back(MakePictureFault(
            "card-other", {}, {},
            fmt::format("This is the {} card, where the {} card is due.", isHd ? "HD" : "SD", isHd ? "SD" : "HD")));
    }
}

void DecidePlace(const PictureCase& known, bool isOtherMakers, PictureFindings& findings) {
    const Place& place = known.seen->geometry.place;
    PictureReport& report = *findings.picture;
    report.place = CardPlace{place.x, place.y, place.width, place.height, place.mirrored, place.flipped};
    DecideTurns(place, findings);
    TellTurn(known.seen->head, findings);
    TellShape(known, findings);
    const double width = report.width;
    const double height = report.height;
    const double tolerance =
        ToleranceOf(*known.settings, "place") +
        (isOtherMakers ? kOthersEdges * width : kErrors * std::max(0.0, known.seen->geometry.error - 0.1));
    // By how much each edge of the card lies within the frame's; below 0 it lies outside.
    const double left = place.x;
    const double top = place.y;
    const double right = width - place.x - place.width;
    const double bottom = height - place.y - place.height;
    const double most = std::max({std::abs(left), std::abs(top), std::abs(right), std::abs(bottom)});
    if (most <= tolerance) {
        if (isOtherMakers) {
            report.place = CardPlace{0, 0, width, height, place.mirrored, place.flipped};
        }
        return;
    }
    const double gone = -std::min({left, top, right, bottom});
    const bool isWhole = std::abs(left + right) <= tolerance && std::abs(top + bottom) <= tolerance;
    if (isWhole) {
        const double off = std::hypot(place.x, place.y);
        findings.faults.push_back(MakePictureFault(
            "shifted", off, 0,
            fmt::format("The card lies {:.1f} pixels to the {} of its place and {:.1f} {} it.", std::abs(place.x),
                        place.x < 0 ? "left" : "right", std::abs(place.y), place.y < 0 ? "above" : "below")));
    } else if (gone > tolerance) {
        findings.faults.push_back(MakePictureFault(
            "cropped", gone, 0,
            fmt::format(
                "Up to {:.1f} pixels of the card's edges lie outside of the frame: it is {}, in a frame of {} by {}.",
                gone, PlaceText(place), width, height)));
    } else {
        findings.faults.push_back(MakePictureFault(
            "scaled", place.width, width,
            fmt::format("The card does not fill the frame of {} by {}: it is {}.", width, height, PlaceText(place))));
    }
}

}  // namespace lineup::picture
