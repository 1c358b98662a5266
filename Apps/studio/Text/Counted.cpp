#include "Apps/studio/Text/Counted.h"

#include <QCoreApplication>

namespace studio {

QString FormFor(double count, const char* one, const char* many) {
    const QString rule = QCoreApplication::translate("Counted", kNumbersOfOne);
    const double limit = rule.mid(1).toDouble();
    const bool isOne = rule.startsWith('<') ? count < limit : count == limit;
    return QCoreApplication::translate("Counted", isOne ? one : many);
}

}  // namespace studio
