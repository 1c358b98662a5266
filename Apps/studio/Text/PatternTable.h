#pragma once

#include <QRegularExpression>
#include <QString>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace studio {

/// Sentences of the library's, with %1, %2, ... for what differs, and what a window says for each.
class PatternTable {
public:
    /// As many `words`, texts of `context`, as sentences that are `said`.
    PatternTable(const char* context, std::span<const char* const> said, std::span<const char* const> words);

    /// What a window says for `text`, with what `part` makes of what differs; empty where no sentence fits.
    [[nodiscard]] std::optional<QString> Words(const QString& text,
                                               const std::function<QString(const QString&)>& part) const;

private:
    const char* mContext;
    std::vector<QRegularExpression> mMatchers;
    std::vector<const char*> mWords;
};

}  // namespace studio
