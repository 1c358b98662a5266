#pragma once

#include "Host/Lineup/Check/Picture/Decide/Chain.h"

#include <span>
#include <vector>

namespace lineup::picture {

/// A colour that was sent, and the codes it came as.
struct ColourPair {
    Triple sent{};   ///< R'G'B'
    Triple found{};  ///< codes
};

/// A chain, and how far what it predicts is from what was found.
struct FittedChain {
    Chain chain;
    double error = 0;  ///< r.m.s. over components of all but the worst patches, codes
};

/// How far `found` is from what the chain makes of `sent`, without the worst tenth of the patches.
[[nodiscard]] double ChainError(const CodeScale& scale, const Chain& chain, std::span<const ColourPair> pairs);

/// The numbers of the chain's tone and colour steps that bring it nearest.
[[nodiscard]] FittedChain FitChain(const CodeScale& scale, Chain chain, std::span<const ColourPair> pairs);

/// What all chains there are make of it. The first is the one that does nothing.
[[nodiscard]] std::vector<FittedChain> FitAllChains(const CodeScale& scale, std::span<const ColourPair> pairs);

/// The simplest of them that explains what was found as well as any more complicated one, nearly.
[[nodiscard]] const FittedChain& Simplest(std::span<const FittedChain> chains);

/// The others that are as simple and explain it as well.
[[nodiscard]] std::vector<const FittedChain*> AsGood(std::span<const FittedChain> chains, const FittedChain& best);

}  // namespace lineup::picture
