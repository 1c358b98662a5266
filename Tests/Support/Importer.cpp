#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

namespace test {

namespace {

std::int32_t SendRecord(ImportSelector selector, RequestRecord& record) {
    const std::int32_t result = Request(selector, nullptr, record.Data());
    EXPECT_TRUE(record.IsUntouched()) << "selector " << selector << " wrote to its request record";
    return result;
}

}  // namespace

std::int32_t Send(const FrameRequest& request) {
    RequestRecord record(kImageRecordSize, request.placement);
    record.Put(4, request.width).Put(8, request.height).Put(60, request.pixelFormat).Put(228, request.frame);
    return SendRecord(kImportImage, record);
}

std::int32_t Send(const AudioRequest& request) {
    RequestRecord record(kAudioRecordSize, request.placement);
    record.Put(0, request.position).Put(8, request.count).Put(12, request.buffers);
    record.Put(20, request.privateData).Put(28, request.prefs);
    return SendRecord(kImportAudio, record);
}

std::int32_t Send(const PeakRequest& request) {
    RequestRecord record(kPeakRecordSize, request.placement);
    record.Put(0, request.privateData).Put(8, request.prefs);
    record.Put(16, request.position).Put(24, request.peakRate).Put(28, request.count);
    record.Put(32, request.maxima).Put(40, request.minima);
    return SendRecord(kImportPeakAudio, record);
}

}  // namespace test
