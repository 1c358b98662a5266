#include "Apps/studio/Document/NumberWords.h"

#include <cmath>

namespace studio {

QString SignedNumber(double value, int decimals) {
    const QString text = QString::number(std::abs(value), 'f', decimals);
    return value < 0 && text.toDouble() != 0 ? "\u2212" + text : text;
}

QString Percent(float value) {
    return SignedNumber(static_cast<double>(value) * 100, 1) + " %";
}

}  // namespace studio
