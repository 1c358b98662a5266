#pragma once

#include "Host/Interface/Frame/FrameServices.h"

#include <array>
#include <compare>
#include <cstdint>
#include <iosfwd>
#include <vector>

/// A program that links FillRecorder.cpp has its own vexelGetRowbytes and IR_FillWithColor in front of
/// the host's: they draw nothing and keep a list of their calls. One thread.
namespace test {

/// One call of a frame service. A call of vexelGetRowbytes has the frame it asked about; a fill has
/// everything else.
struct ServiceCall {
    const vexelFrame* frame = nullptr;
    std::intptr_t destination = 0;
    int rowBytes = 0;
    int width = 0;
    int height = 0;
    std::uint32_t destinationFormat = 0;
    std::array<std::uint32_t, 4> colour = {};  ///< float bits, not-a-number in one form; or the 8-bit colour, first
    std::uint32_t colourFormat = 0;

    bool operator==(const ServiceCall&) const = default;
};

std::ostream& operator<<(std::ostream& out, const ServiceCall& call);

/// The colour of a fill as ServiceCall keeps it; `colourFormat` is a kFillFormat_... code.
std::array<std::uint32_t, 4> KeptColour(const void* colour, std::uint32_t colourFormat);

/// Forgets the calls so far, and answers `rowBytes` from now on.
void StartRecording(int rowBytes);

const std::vector<ServiceCall>& RecordedCalls();

}  // namespace test
