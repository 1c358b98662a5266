#pragma once

#include <QByteArray>

namespace zelui::qt {

/// The largest layout script that is read, and how deep its elements may lie in one another: many times
/// what a dialog needs, and little enough to build in a moment.
inline constexpr qsizetype kLargestFormBytes = 1 << 20;
inline constexpr int kDeepestFormElement = 64;
inline constexpr int kMostFormElements = 20000;

/// The most rows or columns that a layout or a table may have: memory is taken for each, used or not.
inline constexpr int kMostFormCells = 1000;

/// Throws std::runtime_error, saying where, when `script` is not a form within these limits: not
/// well-formed XML, another root than <ui>, a document type, which no form has, or a widget that reads
/// other files.
void CheckForm(const QByteArray& script);

}  // namespace zelui::qt
