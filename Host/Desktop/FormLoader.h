#pragma once

#include "Host/Desktop/FormDialog.h"

#include <QByteArray>
#include <QString>
#include <memory>

namespace zelui::qt {

/// Builds the dialog that a form of Qt's Designer describes, in the language in use. Beside Qt's own
/// widgets a form may hold HotTextNumber (promoted from QDoubleSpinBox) and RangeLabel (promoted from
/// QLabel). `name` is the form's name in messages. Throws std::runtime_error, saying what is wrong and
/// where, for a form that is broken, too large, no dialog, or holds a widget that does not exist.
[[nodiscard]] std::unique_ptr<FormDialog> LoadForm(const QByteArray& script, const QString& name, QWidget* parent);

}  // namespace zelui::qt
