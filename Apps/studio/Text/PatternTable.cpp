#include "Apps/studio/Text/PatternTable.h"

#include <QCoreApplication>

namespace studio {

namespace {

QRegularExpression Matcher(const char* said) {
    static const QRegularExpression kPlace("%\\d");
    QString expression = QRegularExpression::escape(QString::fromUtf8(said)).replace("\\%", "%");
    return QRegularExpression("\\A" + expression.replace(kPlace, "(.+?)") + "\\z",
                              QRegularExpression::DotMatchesEverythingOption);
}

}  // namespace

PatternTable::PatternTable(const char* context, std::span<const char* const> said, std::span<const char* const> words)
    : mContext(context), mWords(words.begin(), words.end()) {
    mMatchers.reserve(said.size());
    for (const char* const sentence : said) {
        mMatchers.push_back(Matcher(sentence));
    }
}

std::optional<QString> PatternTable::Words(const QString& text,
                                           const std::function<QString(const QString&)>& part) const {
    for (std::size_t i = 0; i < mMatchers.size(); ++i) {
        const auto match = mMatchers[i].match(text);
        if (!match.hasMatch()) {
            continue;
        }
        QString words = QCoreApplication::translate(mContext, mWords[i]);
        for (int place = match.lastCapturedIndex(); place > 0; --place) {
            // Not by arg(), which would take a %2 in a file's name for a place.
            words.replace("%" + QString::number(place), part(match.captured(place)));
        }
        return words;
    }
    return std::nullopt;
}

}  // namespace studio
