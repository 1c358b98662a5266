#include "Tests/Bridges/MLT/FillCounter.h"

#include "Host/Interface/Frame/FrameServices.h"

#include <dlfcn.h>

namespace {

int count = 0;

}  // namespace

void IR_FillWithColor(void* destination, int rowBytes, int width, int height, std::uint32_t destinationFormat,
                      const void* colour, std::uint32_t colourFormat) {
    static auto* const hosts = reinterpret_cast<decltype(&IR_FillWithColor)>(dlsym(RTLD_NEXT, "IR_FillWithColor"));
    ++count;
    hosts(destination, rowBytes, width, height, destinationFormat, colour, colourFormat);
}

namespace test {

int FillCount() {
    return count;
}

}  // namespace test
