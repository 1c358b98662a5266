#pragma once

#include "Tests/Src/ToneGenerator/IdentModel.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <cstddef>

/// Runs the generator on guarded buffers and compares it with the model.
namespace model {

/// Buffers are larger than any sequence needs, so that writing to a channel too many shows.
inline constexpr std::size_t kBufferCount = 8;

/// The generator's answer, in `channels`: at least request.count samples each, kBufferCount of them.
void Generate(Ident ident, const Request& request, test::GuardedChannels& channels);

/// The generator's answer in fresh buffers.
[[nodiscard]] test::GuardedChannels Generate(Ident ident, const Request& request);

/// The generator's answer is Render's bit for bit, and nothing else is written.
[[nodiscard]] testing::AssertionResult GeneratesTheModel(Ident ident, const Request& request);

/// The channels from `firstUnused` on and all guards are as they were.
[[nodiscard]] testing::AssertionResult NothingElseIsWritten(test::GuardedChannels& channels, std::size_t firstUnused);

}  // namespace model
