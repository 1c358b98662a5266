#include "Apps/studio/Views/Probes.h"

#include <QRect>
#include <algorithm>

namespace studio {

void Probes::Toggle(QPoint pixel, int reach) {
    const auto near = [&](QPoint probe) { return (probe - pixel).manhattanLength() <= reach; };
    const auto found = std::ranges::find_if(mPixels, near);
    if (found != mPixels.end()) {
        mPixels.erase(found);
    } else {
        if (mPixels.size() == kMost) {
            mPixels.erase(mPixels.begin());
        }
        mPixels.push_back(pixel);
    }
    Q_EMIT Changed();
}

void Probes::Clear() {
    mPixels.clear();
    Q_EMIT Changed();
}

void Probes::KeepWithin(QSize picture) {
    if (std::erase_if(mPixels, [&](QPoint probe) { return !QRect(QPoint(), picture).contains(probe); }) > 0) {
        Q_EMIT Changed();
    }
}

}  // namespace studio
