#pragma once

#include <QTranslator>

namespace studio {

/// Turns the program's texts into the language in use by the catalogues that the plug-in's dialog has its texts from.
/// A text's key is kTextKey with the English text behind it, whichever part of the program asks.
class CatalogueTranslator : public QTranslator {
    Q_OBJECT

public:
    static constexpr const char* kTextKey = "$$$/Lineup/Studio/Text=";

    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation,
                                    int n) const override;
};

}  // namespace studio
