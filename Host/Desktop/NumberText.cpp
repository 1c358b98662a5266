#include "Host/Desktop/NumberText.h"

#include <cmath>

namespace zelui::qt {

namespace {

constexpr double kThousand = 1000;

std::optional<double> Convert(const QLocale& locale, const QString& digits, double factor) {
    bool isNumber = false;
    const double number = locale.toDouble(digits, &isNumber) * factor;
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// Takes `ending` off the end of `text`, and the space before it.
bool Strip(QString& text, const QString& ending) {
    if (ending.isEmpty() || !text.endsWith(ending, Qt::CaseInsensitive)) {
        return false;
    }
    text.chop(ending.size());
    text = text.trimmed();
    return true;
}

}  // namespace

std::optional<double> ReadNumber(const QString& text, const QString& unit, const QLocale& locale,
                                 const NumberRange& range) {
    QString digits = text.trimmed();
    digits.replace(QChar(0x2212), '-');
    while (Strip(digits, unit.trimmed())) {  // one typed, and the field's own behind it
    }
    const double factor = Strip(digits, "k") ? kThousand : 1;

    QLocale plain = locale;
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    if (const auto number = Convert(plain, digits, factor)) {
        return number;
    }
    QLocale grouping = locale;
    grouping.setNumberOptions(QLocale::DefaultNumberOptions);
    const auto grouped = Convert(grouping, digits, factor);
    plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    const auto decimal = Convert(plain, QString(digits).replace(',', '.'), factor);
    if (!grouped || !decimal) {
        return grouped ? grouped : decimal;
    }
    if (range.Has(*grouped) && range.Has(*decimal)) {
        return std::nullopt;
    }
    return range.Has(*grouped) ? grouped : decimal;
}

}  // namespace zelui::qt
