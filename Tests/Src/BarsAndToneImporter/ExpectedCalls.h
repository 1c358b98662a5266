#pragma once

#include "Host/Interface/Frame/FrameServices.h"
#include "Tests/Src/BarsAndToneImporter/ExpectedCard.h"
#include "Tests/Support/FillRecorder.h"

#include <array>
#include <cstdint>
#include <vector>

/// The calls of the frame services that a card comes to.
namespace test {

inline constexpr std::uint32_t kFloatFormat = 0x37785556;
inline constexpr std::uint32_t k8BitFormat = 0x78797576;

/// A frame whose pixels are never there: only addresses are worked out.
struct PretendFrame {
    vexelFrame frame;
    int rowBytes;

    explicit PretendFrame(int rowBytesIn = 32768, std::intptr_t pixels = 0x100000000)
        : frame{nullptr, nullptr, reinterpret_cast<std::uint8_t*>(pixels)}, rowBytes(rowBytesIn) {}
};

/// The calls that a card comes to, worked out from the rectangles.
class ExpectedCalls {
public:
    ExpectedCalls(const PretendFrame& frame, int width, int height, int bytesPerPixel)
        : mFrame(frame), mWidth(width), mHeight(height), mBytesPerPixel(bytesPerPixel) {}

    void Bar(const ExpectedBar& bar, std::uint32_t destinationFormat) {
        Fill(Column(bar.left), Row(bar.bottom), Column(bar.right) - Column(bar.left), Row(bar.bottom) - Row(bar.top),
             destinationFormat, bar.vuya.data(), 2061);
    }

    void Ramp(const ExpectedBar& bar) {
        const int left = Column(bar.left);
        const int columns = Column(bar.right) - left;
        if (columns < 0) {
            return;
        }
        const auto step = static_cast<float>(1.0 / static_cast<double>(columns));
        for (float c = 0.0F; c <= static_cast<float>(columns); c += 1.0F) {
            const std::array<float, 4> vuya = {0.0F, 0.0F, c * step, 1.0F};
            const int x = static_cast<int>(static_cast<float>(left) + c);
            const int columnWidth = mWidth > 0 ? 1 : 0;  // a frame of no width has no column to draw in
            Fill(x, Row(bar.bottom), columnWidth, Row(bar.bottom) - Row(bar.top), 2829, vuya.data(), 2829);
        }
    }

    [[nodiscard]] const std::vector<ServiceCall>& Calls() const { return mCalls; }

private:
    [[nodiscard]] int Column(double fraction) const { return static_cast<int>(fraction * static_cast<double>(mWidth)); }
    [[nodiscard]] int Row(double fraction) const { return static_cast<int>(fraction * static_cast<double>(mHeight)); }

    void Fill(int column, int bottomLine, int columns, int rows, std::uint32_t destinationFormat, const void* colour,
              std::uint32_t colourFormat) {
        mCalls.push_back({.frame = &mFrame.frame});
        mCalls.push_back({.frame = &mFrame.frame});
        mCalls.push_back({.destination = reinterpret_cast<std::intptr_t>(mFrame.frame.pixels) +
                                         std::intptr_t{mHeight - bottomLine} * mFrame.rowBytes +
                                         std::intptr_t{column} * mBytesPerPixel,
                          .rowBytes = mFrame.rowBytes,
                          .width = columns,
                          .height = rows,
                          .destinationFormat = destinationFormat,
                          .colour = KeptColour(colour, colourFormat),
                          .colourFormat = colourFormat});
    }

    const PretendFrame& mFrame;
    int mWidth;
    int mHeight;
    int mBytesPerPixel;
    std::vector<ServiceCall> mCalls;
};

/// The calls that a request for such a frame is to make.
inline std::vector<ServiceCall> ExpectedFor(const PretendFrame& frame, int width, int height,
                                            std::uint32_t pixelFormat) {
    const bool isFloat = pixelFormat == kFloatFormat;
    ExpectedCalls calls(frame, width, height, isFloat ? 16 : 4);
    if (isFloat) {
        for (const ExpectedBar& bar : kHighDefinitionCard) {
            if (bar.vuya == kRampBytes) {
                calls.Ramp(bar);
            } else {
                calls.Bar(bar, 2829);
            }
        }
    } else {
        for (const ExpectedBar& bar : kStandardDefinitionCard) {
            calls.Bar(bar, 2061);
        }
    }
    return calls.Calls();
}

}  // namespace test
