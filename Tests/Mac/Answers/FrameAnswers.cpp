#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Tests/Mac/Answers/Answers.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace test {

namespace {

constexpr int kFiller = 0xCC;

void AskFrame(ImportEntryFunction* entry, AnswerWriter& answers, int width, int height, std::uint32_t pixelFormat,
              std::uint32_t asked) {
    const zelcore::FrameBuffer frame(width, height, pixelFormat);
    const auto bytes = static_cast<std::size_t>(frame.RowBytes()) * static_cast<std::size_t>(height);
    std::memset(frame.Handle()->pixels, kFiller, bytes);
    imImportImageRecEx record;
    std::memset(&record, kFiller, sizeof record);
    record.width = static_cast<std::int16_t>(width);
    record.height = static_cast<std::int16_t>(height);
    record.pixelFormat = asked;
    record.frame = frame.Handle();
    const std::int32_t result = entry(kImportImage, nullptr, nullptr, &record);
    record.frame = nullptr;

    const std::string question =
        "frame " + std::to_string(width) + " x " + std::to_string(height) + " in " + std::to_string(asked);
    answers.Add(question + ": result", &result, sizeof result);
    answers.Add(question + ": record", &record, sizeof record);
    answers.Add(question, frame.Handle()->pixels, bytes);
}

std::vector<std::pair<int, int>> Sizes() {
    std::vector<std::pair<int, int>> sizes = {
        {640, 480},   {704, 480},   {720, 486}, {720, 576}, {960, 540}, {1280, 720}, {1440, 1080}, {1920, 1080},
        {1998, 1080}, {3840, 2160}, {1, 1080},  {1920, 1},  {32767, 3}, {3, 32767},  {1021, 719},  {333, 777}};
    constexpr int kSmall = 20;  // smaller than the bars there are
    for (int width = 1; width <= kSmall; ++width) {
        for (int height = 1; height <= kSmall; ++height) {
            sizes.emplace_back(width, height);
        }
    }
    return sizes;
}

}  // namespace

void AskFrames(ImportEntryFunction* entry, AnswerWriter& answers) {
    for (const auto& [width, height] : Sizes()) {
        for (const std::uint32_t format : {kPixelFormat_VUYA_8u, kPixelFormat_VUYA_32f}) {
            AskFrame(entry, answers, width, height, format, format);
        }
    }
    for (const std::uint32_t format : {0U, 1U, 0x41524742U, 0xFFFFFFFFU}) {  // that no card is drawn in
        AskFrame(entry, answers, 16, 9, kPixelFormat_VUYA_32f, format);
    }
}

}  // namespace test
