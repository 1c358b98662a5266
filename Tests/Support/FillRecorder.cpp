#include "Tests/Support/FillRecorder.h"

#include "Host/Interface/Frame/PixelFormats.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>

namespace test {

namespace {

int gRowBytes = 0;
std::vector<ServiceCall> gCalls;

}  // namespace

std::ostream& operator<<(std::ostream& out, const ServiceCall& call) {
    if (call.frame != nullptr) {
        return out << "row bytes of " << call.frame;
    }
    out << "fill at " << call.destination << " stride " << call.rowBytes << ": " << call.width << " x " << call.height
        << " as " << call.destinationFormat << " with" << std::hex;
    for (const std::uint32_t word : call.colour) {
        out << ' ' << word;
    }
    return out << std::dec << " as " << call.colourFormat;
}

std::array<std::uint32_t, 4> KeptColour(const void* colour, std::uint32_t colourFormat) {
    if (colourFormat != kFillFormat_VUYA_32f) {
        std::uint32_t bytes = 0;
        std::memcpy(&bytes, colour, sizeof bytes);
        return {bytes};
    }
    std::array<float, 4> components{};
    std::memcpy(components.data(), colour, sizeof components);
    for (float& component : components) {
        // The sign of a not-a-number is the processor's own affair.
        component = std::isnan(component) ? std::numeric_limits<float>::quiet_NaN() : component;
    }
    return std::bit_cast<std::array<std::uint32_t, 4>>(components);
}

void StartRecording(int rowBytes) {
    gRowBytes = rowBytes;
    gCalls.clear();
}

const std::vector<ServiceCall>& RecordedCalls() {
    return gCalls;
}

}  // namespace test

int vexelGetRowbytes(vexel frame) {
    test::gCalls.push_back({.frame = frame});
    return test::gRowBytes;
}

void IR_FillWithColor(void* destination, int rowBytes, int width, int height, std::uint32_t destinationFormat,
                      const void* colour, std::uint32_t colourFormat) {
    test::gCalls.push_back({.destination = reinterpret_cast<std::intptr_t>(destination),
                            .rowBytes = rowBytes,
                            .width = width,
                            .height = height,
                            .destinationFormat = destinationFormat,
                            .colour = test::KeptColour(colour, colourFormat),
                            .colourFormat = colourFormat});
}
