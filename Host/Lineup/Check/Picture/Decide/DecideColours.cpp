#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/Decide/ChainFaults.h"
#include "Host/Lineup/Check/Picture/Decide/Coefficients.h"
#include "Host/Lineup/Check/Picture/Decide/DecideEnds.h"
#include "Host/Lineup/Check/Picture/Decide/FitChain.h"
#include "Host/Lineup/Check/Picture/Decide/Verdict.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr double kOtherMakers = 4;    // codes that -I or +Q may be elsewhere on the clip's own card
constexpr double kBeyondEnds = 3;     // codes that a black may be darker than black, or a white brighter than white
constexpr double kSureShare = 0.2;    // of the patches' tolerance, that a cause without doubt must move one by
constexpr double kUnexplained = 3;    // codes r.m.s. that are left of the best explanation
constexpr double kArithmetic = 1e-3;  // codes that a colour is off by after its way through R'G'B'
constexpr double kAsSimple = 0.15;    // of the cost of a chain
constexpr std::size_t kCovered = 10;  // one patch in so many may be covered by something

bool IsSmallOrOdd(const CardPatch& patch) {
    return patch.name.starts_with("below") || patch.name.starts_with("above") || patch.name.starts_with("-I") ||
           patch.name.starts_with("+Q") || patch.name.starts_with("colour");
}

bool IsOdd(const CardPatch& patch) {
    return patch.name.starts_with("-I") || patch.name.starts_with("+Q");
}

// A card that was cut keeps the matrix of the size in which it was sent.
int LinesSent(const Examination& seen) {
    const auto lines = static_cast<int>(seen.head.height);
    const bool isAsSent = seen.geometry.place.height == seen.model->height;
    return isAsSent ? std::max(lines, seen.model->height) : lines;
}

class Colours {
public:
    Colours(const PictureCase& known, PictureFindings& findings)
        : mKnown(&known),
          mFindings(&findings),
          mReport(&*findings.picture),
          mDue(LinesSent(*known.seen) < kFewestHdLines ? "bt601" : "bt709") {
        mScale.isRgb = (known.seen->head.flags & decoding::kRgbFrame) != 0;
        mScale.isRangeFull = !mScale.isRgb && mReport->tags.range == "full";
        mScale.top = mScale.isRgb ? 255 : 256 - std::ldexp(1.0, 8 - mReport->bits);
        mScale.due = MatrixOf(mDue);
        for (const MeasuredPatch& patch : known.seen->patches) {
            if (!IsSmallOrOdd(*patch.patch)) {
                mPairs.push_back({patch.patch->rgb, patch.codes});
            }
        }
    }

    bool Work() {
        mBest = Choose();
        TellCodes();
        TellPatches();
        if (!mIsWithin) {
            mFindings->faults = Joined(std::move(mFindings->faults), FaultsOf(Unplanned(), mScale, mDue));
            TellOthers();
        }
        TellCoefficients();
        TellTags();
        const bool isOther = IsOtherMakers();
        if (isOther) {
            mFindings->notes.push_back(
                {.id = "other-bars",
                 .part = CheckPart::Picture,
                 .text = "The bars are laid out like the card, and come from another generator."});
        } else if (!mScale.isRgb) {
            DecideEnds(*mKnown, mBest.chain, mScale, *mFindings);
        }
        return isOther;
    }

private:
    static std::vector<CheckFault> Joined(std::vector<CheckFault> all, std::vector<CheckFault> more) {
        std::ranges::move(more, std::back_inserter(all));
        return all;
    }

    [[nodiscard]] bool IsWithinTolerance(const Chain& chain) const {
        const double tolerance = ToleranceOf(*mKnown->settings, "patches");
        std::size_t off = 0;
        for (const ColourPair& pair : mPairs) {
            const Triple codes = chain.Codes(mScale, pair.sent);
            double most = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                most = std::max(most, std::abs(codes.at(i) - pair.found.at(i)));
            }
            off += most > tolerance ? 1 : 0;
        }
        return off * kCovered <= mPairs.size();
    }

    // The tags name a matrix that a report can hold the numbers against.
    [[nodiscard]] bool IsTagKnown() const {
        return !mScale.isRgb && std::ranges::any_of(NamedMatrices(), [&](const auto& named) {
            return named.name == mReport->tags.matrix;
        });
    }

    // FCC's matrix is that of BT.601, with a digit less.
    [[nodiscard]] bool IsTagAlike() const { return mReport->tags.matrix == "fcc" && mDue == "bt601"; }

    [[nodiscard]] FittedChain Choose() {
        std::vector<Chain> plain{Chain{}};
        if (IsTagKnown() && mReport->tags.matrix != mDue) {
            plain.insert(plain.begin(), {.matrix = MatrixStep::NotConverted, .other = mReport->tags.matrix});
        }
        for (const Chain& chain : plain) {
            if (IsWithinTolerance(chain)) {
                mIsWithin = true;
                return {chain, ChainError(mScale, chain, mPairs)};
            }
        }
        mChains = FitAllChains(mScale, mPairs);
        return WithoutTrifles(Simplest(mChains));
    }

    // Beside a cause that moves a patch by more than that, one that does not is left out.
    [[nodiscard]] FittedChain WithoutTrifles(FittedChain best) const {
        for (const bool isTone : {true, false}) {
            const Chain less = isTone ? best.chain.WithoutTone() : best.chain.WithoutColour();
            if (less.Cost() == 0 || less.Cost() >= best.chain.Cost()) {
                continue;
            }
            const FittedChain fitted = FitChain(mScale, less, mPairs);
            best = MostApart(best.chain, fitted.chain) <= TrifleOf(*mKnown) ? fitted : best;
        }
        return best;
    }

    // By how much a code differs that two chains make of a patch.
    [[nodiscard]] double MostApart(const Chain& one, const Chain& other) const {
        double most = 0;
        for (const ColourPair& pair : mPairs) {
            const Triple codes = one.Codes(mScale, pair.sent);
            const Triple others = other.Codes(mScale, pair.sent);
            for (std::size_t i = 0; i < codes.size(); ++i) {
                most = std::max(most, std::abs(codes.at(i) - others.at(i)));
            }
        }
        return most;
    }

    [[nodiscard]] bool IsNumbersOfTags() const {
        return mBest.chain.matrix == MatrixStep::NotConverted && mBest.chain.other == mReport->tags.matrix;
    }

    // Without the matrix where the file says that it has that one.
    [[nodiscard]] Chain Unplanned() const {
        Chain chain = mBest.chain;
        if (IsNumbersOfTags()) {
            chain.matrix = MatrixStep::None;
        }
        return chain;
    }

    void TellCodes() {
        PictureCodes& codes = mReport->codes;
        codes.matrix = mScale.isRgb ? "rgb" : mBest.chain.matrix == MatrixStep::NotConverted ? mBest.chain.other : mDue;
        const bool isStretched =
            mBest.chain.range == RangeStep::Stretched || mBest.chain.range == RangeStep::StretchedTwice;
        const bool isSqueezed =
            mBest.chain.range == RangeStep::Squeezed || mBest.chain.range == RangeStep::SqueezedTwice;
        const bool isMeantFull = mScale.isRgb || mScale.isRangeFull;
        codes.range = (isMeantFull && !isSqueezed) || (!isMeantFull && isStretched) ? "full" : "limited";
    }

    [[nodiscard]] Chain PlainChain() const {
        Chain chain;
        if (IsNumbersOfTags()) {
            chain.matrix = MatrixStep::NotConverted;
            chain.other = mReport->tags.matrix;
        }
        return chain;
    }

    // Of R'G'B' too as codes of Y'CbCr, by the matrix that is due.
    void TellPatches() {
        const auto told = [this](const Triple& codes) {
            if (!mScale.isRgb) {
                return std::vector<double>(codes.begin(), codes.end());
            }
            const Triple value = mScale.FromCodes(codes);
            return std::vector{16 + 219 * value[0], 128 + 224 * value[1], 128 + 224 * value[2]};
        };
        const double tolerance = ToleranceOf(*mKnown->settings, "patches");
        for (const MeasuredPatch& patch : mKnown->seen->patches) {
            const std::vector<double> expected = told(PlainChain().Codes(mScale, patch.patch->rgb));
            const std::vector<double> measured = told(patch.codes);
            double off = 0;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                off = std::max(off, std::abs(measured[i] - expected[i]));
            }
            mReport->patches.push_back({.name = patch.patch->name,
                                        .expected = expected,
                                        .measured = measured,
                                        .off = off,
                                        .isOff = off > tolerance + kArithmetic,
                                        .left = patch.patch->box.left,
                                        .top = patch.patch->box.top,
                                        .right = patch.patch->box.right,
                                        .bottom = patch.patch->box.bottom});
        }
    }

    // How far the next best lies behind.
    void TellNext() {
        PictureExplanation& told = mReport->explanation.emplace();
        told.error = mBest.error;
        std::vector<const FittedChain*> byError;
        byError.reserve(mChains.size());
        for (const FittedChain& one : mChains) {
            byError.push_back(&one);
        }
        std::ranges::sort(byError, {}, &FittedChain::error);
        const std::string own = WordsFor(mBest.chain, mDue);
        for (const FittedChain* const other : byError) {
            const bool isAsSimple = other->chain.Cost() <= mBest.chain.Cost() + kAsSimple;
            const std::string theirs = isAsSimple ? WordsFor(other->chain, mDue) : "";
            if (!theirs.empty() && theirs != own) {
                told.next = theirs;
                told.nextError = other->error;
                return;
            }
        }
    }

    void TellOthers() {
        TellNext();
        if (mBest.error > kUnexplained) {
            mFindings->notes.push_back(
                {.id = "colours-unexplained",
                 .part = CheckPart::Picture,
                 .text = fmt::format("Patches are off by {:.1f} codes more, r.m.s., than what is "
                                     "named explains.",
                                     mBest.error)});
        }
        if (mBest.chain.Cost() == 0) {
            return;
        }
        const std::string own = WordsFor(mBest.chain, mDue);
        for (const FittedChain* const other : AsGood(mChains, mBest)) {
            const std::string words = WordsFor(other->chain, mDue);
            if (!words.empty() && words != own) {
                mFindings->notes.push_back(
                    {.id = "other-explanation",
                     .part = CheckPart::Picture,
                     .text = fmt::format("Another explanation fits the patches as well: {}.", words)});
                return;
            }
        }
    }

    void TellCoefficients() {
        const double least = kSureShare * ToleranceOf(*mKnown->settings, "patches");
        const bool isPlain = mBest.chain.Cost() == 0 && !mScale.isRgb;
        const auto shares = isPlain ? OddCoefficients(mScale, mPairs, least) : std::nullopt;
        if (shares) {
            mFindings->faults.push_back(
                MakePictureFault("matrix-wrong", {}, {},
                                 fmt::format("Luma has {:.4f}, {:.4f} and {:.4f} of red, green and blue, where {} has "
                                             "{:.4f}, {:.4f} and {:.4f}.",
                                             (*shares)[0], (*shares)[1], (*shares)[2], mDue, mScale.due[0][0],
                                             mScale.due[0][1], mScale.due[0][2])));
        }
    }

    void TellTags() {
        const PictureCodes& tags = mReport->tags;
        const bool isAsDue = mBest.chain.matrix == MatrixStep::None;
        // JPEG has BT.601 by its own rules, whatever its maker put in; nobody wrote that into the file.
        const bool isJpeg = std::string_view(mKnown->facts->codec.data()) == "mjpeg";
        if (!isJpeg && !mScale.isRgb && isAsDue && !tags.matrix.empty() && tags.matrix != mDue && !IsTagAlike()) {
            mFindings->faults.push_back(
                MakePictureFault("tags-wrong", {}, {},
                                 fmt::format("The numbers are those of {}, and the file says {}.", mDue, tags.matrix)));
        }
    }

    [[nodiscard]] bool IsOtherMakers() const {
        return std::ranges::any_of(mKnown->seen->patches, [this](const MeasuredPatch& patch) {
            const Triple codes = mBest.chain.Codes(mScale, patch.patch->rgb);
            double most = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                most = std::max(most, std::abs(codes.at(i) - patch.codes.at(i)));
            }
            return (IsOdd(*patch.patch) && most > kOtherMakers + 2 * mBest.error) || IsBeyondEnds(patch, codes);
        });
    }

    // Where black is right elsewhere, no path makes one black darker than that, nor one white brighter.
    [[nodiscard]] bool IsBeyondEnds(const MeasuredPatch& patch, const Triple& codes) const {
        const double brighter = patch.codes[0] - codes[0];
        const double most = kBeyondEnds + 2 * mBest.error;
        return !mScale.isRgb && ((patch.patch->name.starts_with("black") && brighter < -most) ||
                                 (patch.patch->name.starts_with("100 % white") && brighter > most));
    }

    const PictureCase* mKnown;
    PictureFindings* mFindings;
    PictureReport* mReport;
    std::string mDue;
    CodeScale mScale;
    std::vector<ColourPair> mPairs;
    std::vector<FittedChain> mChains;
    FittedChain mBest;
    bool mIsWithin = false;
};

}  // namespace

bool DecideColours(const PictureCase& known, PictureFindings& findings) {
    return Colours(known, findings).Work();
}

}  // namespace lineup::picture
