#pragma once

#include <QLocale>
#include <QString>
#include <optional>

namespace zelui::qt {

/// What a number may be.
struct NumberRange {
    double lowest = 0;
    double highest = 0;
    [[nodiscard]] bool Has(double number) const noexcept { return number >= lowest && number <= highest; }
};

/// The number that `text` says, whether or not it is within `range`: with a comma or a point before its decimals, a
/// minus sign of either kind, groups of three digits as `locale` has them, an exponent, a "k" for thousands, and `unit`
/// in either case. Empty when it says none. A mark that may stand before decimals or a group, as in "1,000", is read as
/// the one that gives a number within `range`; when both do, it says none.
[[nodiscard]] std::optional<double> ReadNumber(const QString& text, const QString& unit, const QLocale& locale,
                                               const NumberRange& range);

}  // namespace zelui::qt
