#include "Apps/studio/Export/TimeLeft.h"

#include <QCoreApplication>
#include <cmath>

namespace studio {

namespace {

constexpr double kFirstGuess = 0.5;  // seconds
constexpr double kLeastShare = 0.005;
constexpr int kMinute = 60;

}  // namespace

QString TimeLeftWords(double share, double seconds) {
    if (share < kLeastShare || seconds < kFirstGuess) {
        return {};
    }
    const auto left = static_cast<qint64>(std::ceil(seconds * (1 - share) / share));
    if (left < kMinute) {
        return QCoreApplication::translate("TimeLeft", "About %1 s left").arg(left);
    }
    return QCoreApplication::translate("TimeLeft", "About %1 min %2 s left").arg(left / kMinute).arg(left % kMinute);
}

}  // namespace studio
