#pragma once

#include <QWidget>

namespace zelui::qt {

/// Puts the texts of the language in use in place of every text of `form` and of what is inside it that
/// is a localisation key: labels, titles, tool tips, suffixes, accessible names, items of lists.
void LocalizeTexts(QWidget& form);

}  // namespace zelui::qt
