#include "Bridges/GStreamer/Playback.h"

#include <algorithm>

namespace gstreamer {

void Playback::SetPlugin(const char* path) {
    const std::scoped_lock lock(mMutex);
    mPlugin = path == nullptr ? "" : path;
}

std::string Playback::Plugin() const {
    const std::scoped_lock lock(mMutex);
    return mPlugin;
}

void Playback::SetDuration(GstClockTime duration) {
    const std::scoped_lock lock(mMutex);
    mDuration = duration;
}

GstClockTime Playback::Duration() const {
    const std::scoped_lock lock(mMutex);
    return mDuration;
}

void Playback::Open() {
    const std::scoped_lock lock(mMutex);
    mHasCaps = false;
    mIsFresh = true;
    mIsContinuous = false;
    mTime = 0;
    mSource->Open(mPlugin);
}

void Playback::Close() noexcept {
    const std::scoped_lock lock(mMutex);
    mHasCaps = false;
    mSource->Close();
}

void Playback::Take(const GstCaps& caps) {
    const std::scoped_lock lock(mMutex);
    if (mHasCaps) {
        mTime = mSource->Units().TimeOf(mNext);
    }
    mHasCaps = false;
    mSource->Take(caps);
    mHasCaps = true;
    mNext = mSource->Units().At(mTime);
}

void Playback::Seek(GstClockTime time) {
    const std::scoped_lock lock(mMutex);
    mTime = time;
    mIsFresh = mIsFresh && time == 0;  // the base class begins with a seek to there
    mIsContinuous = false;
    if (mHasCaps) {
        mNext = mSource->Units().At(time);
    }
}

bool Playback::IsFresh() const {
    const std::scoped_lock lock(mMutex);
    return mIsFresh;
}

void Playback::JoinAt(GstClockTime time) {
    const std::scoped_lock lock(mMutex);
    const std::int64_t perBuffer = mSource->UnitsPerBuffer();
    mNext = mSource->Units().At(time) / perBuffer * perBuffer;
}

Buffer Playback::Next(GstClockTime stop) {
    const std::scoped_lock lock(mMutex);
    mIsFresh = false;
    const Grid units = mSource->Units();
    const GstClockTime end = std::min(stop, mDuration);  // none is the greatest
    const std::int64_t endNumber = end == kEndless ? G_MAXINT64 : units.From(end);
    const std::int64_t count = std::min(mSource->UnitsPerBuffer(), endNumber - mNext);
    if (count <= 0) {
        return nullptr;
    }
    Buffer buffer = mSource->Make(mNext, count);
    GST_BUFFER_PTS(buffer.get()) = units.TimeOf(mNext);
    GST_BUFFER_DURATION(buffer.get()) = units.TimeOf(mNext + count) - units.TimeOf(mNext);
    GST_BUFFER_OFFSET(buffer.get()) = static_cast<guint64>(mNext);
    GST_BUFFER_OFFSET_END(buffer.get()) = static_cast<guint64>(mNext + count);
    if (!mIsContinuous) {
        GST_BUFFER_FLAG_SET(buffer.get(), GST_BUFFER_FLAG_DISCONT);
    }
    mIsContinuous = true;
    mNext += count;
    return buffer;
}

GstClockTime Playback::BufferTime() const {
    const std::scoped_lock lock(mMutex);
    return mHasCaps ? mSource->Units().TimeOf(mSource->UnitsPerBuffer()) : 0;
}

}  // namespace gstreamer
