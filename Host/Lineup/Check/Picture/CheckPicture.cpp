#include "Host/Lineup/Check/Picture/CheckPicture.h"

#include "Host/Lineup/Check/Picture/Decide/Verdict.h"
#include "Host/Lineup/Check/Picture/Find/SentSize.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr std::size_t kCards = 2;
constexpr double kPlain = 0.98;     // of the patches explained: no other card does it as well
constexpr int kThoroughTries = 6;   // frames that are searched everywhere, one after the other
constexpr int kCarefulTries = 1;    // and with great care
constexpr int kThoroughEvery = 40;  // and then one in so many
constexpr int kLeastSide = 64;      // pixels of a frame
constexpr double kReach = 3;        // pixels of the small picture that was searched
constexpr int kSearchedWidth = 320;
constexpr double kWhole = 0.25;          // pixels that a card may lie beside the frame it fills
constexpr double kUnscaledMayErr = 0.1;  // pixels that edges of a card in its own size may be farther off
constexpr double kLessUsual = 0.05;      // pixels that edges must fit better in a size that is less usual
constexpr double kWellPlaced = 0.08;     // pixels that edges are off by in a place that needs no other explanation
constexpr double kFirstReach = 8;        // pixels that edges rounded at another size may have moved a place by
constexpr double kWholePixel = 0.2;      // pixels that a card in its own size is measured beside whole ones
constexpr double kKeptEdges = 0.75;      // of the edges that explain its place in another size
constexpr double kMostCut = 1.5;         // times the frame, that a card was before it was cut

std::string TextOf(const decoding::TextField<16>& field) {
    return {field.begin(), std::ranges::find(field, '\0')};
}

// As reports name them.
std::string MatrixTag(const std::string& name) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kNames = {
        {{"smpte170m", "bt601"}, {"bt470bg", "bt601"}, {"bt2020nc", "bt2020"}, {"gbr", "rgb"}, {"reserved", ""}}};
    const auto* const found = std::ranges::find(kNames, name, &std::pair<std::string_view, std::string_view>::first);
    return found == kNames.end() ? name : std::string(found->second);
}

bool IsAsWide(const Place& place, const Raster& raster) {
    return std::max(std::abs(place.x), std::abs(place.width - raster.width)) < kWhole;
}

bool IsAsHigh(const Place& place, const Raster& raster) {
    return std::max(std::abs(place.y), std::abs(place.height - raster.height)) < kWhole;
}

PictureReport Facts(const decoding::Frame& head) {
    PictureReport report;
    report.width = static_cast<int>(head.width);
    report.height = static_cast<int>(head.height);
    report.bits = static_cast<int>(head.bits);
    if (head.pixelAspect > 0) {
        report.pixelAspect = static_cast<double>(head.pixelAspect);
    }
    report.tags = {.matrix = MatrixTag(TextOf(head.matrix)),
                   .primaries = TextOf(head.primaries),
                   .transfer = TextOf(head.transfer),
                   .range = TextOf(head.range)};
    return report;
}

// Nobody sends a card between pixels. And lines that run across it are few: those that lie elsewhere are not to be left
// out until the rest fits.
bool MayBeUnscaled(const Geometry& unscaled, const Geometry& found) {
    const auto isWhole = [](double at) { return std::abs(at - std::round(at)) < kWholePixel; };
    const auto areKept = [](int edges, int all) { return edges >= kKeptEdges * all; };
    return unscaled.isExact && isWhole(unscaled.place.x) && isWhole(unscaled.place.y) &&
           areKept(unscaled.edgesAcross, found.edgesAcross) && areKept(unscaled.edgesDown, found.edgesDown);
}

}  // namespace

PictureExaminer::PictureExaminer(const Clip& clip, const CheckSettings& settings)
    : mClip(&clip), mSettings(&settings) {}

void PictureExaminer::OnFacts(const decoding::Picture& facts) {
    mFacts = facts;
}

void PictureExaminer::OnEnd(const decoding::PictureEnd& end) {
    mLength = end;
}

// Where there was no card, looking everywhere for it stays as rare as it was.
void PictureExaminer::Restart() {
    mTries = mFound ? 0 : mTries;
    mFirst.reset();
    mLength.reset();
    mFound.reset();
    mSeries = FrameSeries();
    mIsUnreadable = false;
}

void PictureExaminer::TakeSize(int width, int height) {
    if (width != mWidth || height != mHeight) {
        mModels.clear();
        mModels.reserve(kCards);
    }
    mWidth = width;
    mHeight = height;
}

// Both cards, whichever is asked for: another one is a fault. Drawn for the size of the frame, the likelier one first.
std::span<const CardModel> PictureExaminer::Models(std::size_t count) {
    const Card due = mHeight < kFewestHdLines ? Card::SD : Card::HD;
    const Card other = due == Card::HD ? Card::SD : Card::HD;
    while (mModels.size() < count) {
        mModels.push_back(ReadCardModel(*mClip, mModels.empty() ? due : other, mWidth, mHeight));
    }
    return std::span(mModels).first(count);
}

// A card that was drawn for another size than the frame's, and cut out of it, has its edges on whole pixels of that
// size: the card of the frame's has them elsewhere by up to a pixel.
void PictureExaminer::TakeSentSize(const Raster& raster, Geometry& geometry) {
    const Geometry found = geometry;
    const Place place = found.place;
    const bool isAsWide = IsAsWide(place, raster);
    const bool isAsHigh = IsAsHigh(place, raster);
    if (!geometry.isExact || (isAsWide && isAsHigh)) {
        return;
    }
    // Of a card that was scaled, edges lie between pixels: nobody sent it in the size that it has here.
    const double ofUnusual = geometry.error - kLessUsual;
    double least = geometry.error + kUnscaledMayErr;
    for (const CardSize& size : LikelySentSizes(mFoundModel.card, place)) {
        const bool isCut = size.width <= raster.width * kMostCut && size.height <= raster.height * kMostCut;
        const bool isFilling = (!isAsWide || size.width == raster.width) && (!isAsHigh || size.height == raster.height);
        if (!isCut || !isFilling) {
            continue;
        }
        CardModel model = ReadCardModel(*mClip, mFoundModel.card, size.width, size.height);
        const Geometry unscaled = PlaceUnscaled(raster, model, place);
        if (MayBeUnscaled(unscaled, found) && unscaled.error < (IsUsual(size) ? least : std::min(least, ofUnusual))) {
            least = unscaled.error - kLessUsual;
            geometry = unscaled;
            mFoundModel = std::move(model);
        }
    }
}

// One that was scaled has its edges where those of its first size came to lie.
void PictureExaminer::TakeFirstSize(const Raster& raster, Geometry& geometry) {
    const Place place = geometry.place;
    const bool isFilling = IsAsWide(place, raster) && IsAsHigh(place, raster);
    if (!geometry.isExact || geometry.error < kWellPlaced || isFilling) {
        return;
    }
    for (const CardSize& size : LikelyFirstSizes(place)) {
        CardModel model = ReadCardModel(*mClip, mFoundModel.card, size.width, size.height);
        const Geometry scaled = RefinePlace(raster, model, place, kFirstReach);
        if (scaled.isExact && scaled.error < geometry.error - kLessUsual) {
            geometry = scaled;
            mFoundModel = std::move(model);
        }
    }
}

void PictureExaminer::Look(const DecodedPicture& picture) {
    const Raster raster = MakeRaster(picture);
    TakeSize(raster.width, raster.height);
    const CardSearch search(raster);
    const double reach = kReach * std::max(1.0, static_cast<double>(raster.width) / kSearchedWidth);
    const auto take = [&](const std::optional<FoundCard>& found) {
        if (found) {
            mFoundModel = *found->model;
            Geometry geometry = RefinePlace(raster, mFoundModel, found->place, reach);
            TakeSentSize(raster, geometry);
            TakeFirstSize(raster, geometry);
            mFound = Examine(picture, raster, mFoundModel, geometry);
        }
    };
    const auto likely = search.InWholeFrame(Models(1));
    const bool isPlain = likely && likely->explained > kPlain;
    take(isPlain ? likely : search.InWholeFrame(Models(kCards)));
    if (!mFound && (mTries <= kThoroughTries || mTries % kThoroughEvery == 0)) {
        take(search.Anywhere(Models(kCards)));
    }
    if (!mFound && mTries <= kCarefulTries) {  // small cards
        take(search.Anywhere(Models(kCards), CardSearch::Care::Great));
    }
    if (mFound) {
        mSeries.SetReference(picture);
    }
}

bool PictureExaminer::OnPicture(const DecodedPicture& picture) {
    const double seconds = picture.head.seconds;
    const double from = mSettings->fromSeconds.value_or(0);
    const bool isStill = mFacts.isStill != 0;
    if (!isStill && mSettings->fromSeconds && seconds < from) {
        return true;
    }
    if (!isStill && mSettings->forSeconds && seconds >= from + *mSettings->forSeconds) {
        return false;
    }
    if (!mFirst) {
        mFirst = picture.head;
    }
    mIsUnreadable = mIsUnreadable || picture.head.planes == 0;
    if (picture.head.planes == 0 || std::min(picture.head.width, picture.head.height) < kLeastSide) {
        return true;
    }
    if (mFound) {
        mSeries.Add(picture);
    } else {
        ++mTries;
        Look(picture);
    }
    return true;
}

PictureFindings PictureExaminer::Findings() const {
    PictureFindings findings;
    findings.length = mLength;
    findings.frameRate = mFacts.frameRate;
    findings.isStill = mFacts.isStill != 0;
    if (!mFirst) {
        if (mSettings->card != "auto") {
            findings.faults.push_back(
                MakePictureFault("card-missing", {}, {}, "There are no pictures to find a card in."));
        }
        return findings;
    }
    findings.picture = Facts(mFound ? mFound->head : *mFirst);
    if (mFound) {
        findings.isCardFound = true;
        Decide({&*mFound, &mSeries, &mFacts, mSettings}, findings);
    } else if (mSettings->card != "auto") {
        findings.faults.push_back(
            MakePictureFault("card-missing", {}, {},
                             fmt::format("There is no card in the picture, where the {} card is due.",
                                         mSettings->card == "hd" ? "HD" : "SD")));
    } else if (mIsUnreadable) {
        findings.notes.push_back(
            {.id = "picture-not-read",
             .part = CheckPart::Picture,
             .text = "The pictures are of a kind whose codes cannot be read: " + TextOf(mFirst->format) + "."});
    } else {
        findings.notes.push_back({.id = "no-card", .part = CheckPart::Picture, .text = "The picture shows no card."});
    }
    return findings;
}

}  // namespace lineup::picture
