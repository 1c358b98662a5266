#include "Host/Desktop/FormTexts.h"

#include "Host/Desktop/Text.h"
#include "Host/Interface/Core/Localizer.h"

#include <QComboBox>
#include <QMetaProperty>

namespace zelui::qt {

namespace {

bool IsKey(const QString& text) {
    return text.startsWith("$$$/");
}

QString Localized(const QString& key) {
    const QByteArray utf8 = key.toUtf8();
    return ToQString(
        zelcore::config::Localizer::Get().GetLocalizedString({utf8.data(), static_cast<std::size_t>(utf8.size())}));
}

void LocalizeProperties(QObject& object) {
    const QMetaObject& meta = *object.metaObject();
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        if (property.metaType().id() != QMetaType::QString || !property.isWritable()) {
            continue;
        }
        const QString text = property.read(&object).toString();
        if (IsKey(text)) {
            property.write(&object, Localized(text));
        }
    }
}

void LocalizeItems(QComboBox& list) {
    for (int i = 0; i < list.count(); ++i) {
        if (IsKey(list.itemText(i))) {
            list.setItemText(i, Localized(list.itemText(i)));
        }
    }
}

}  // namespace

void LocalizeTexts(QWidget& form) {
    LocalizeProperties(form);
    const auto widgets = form.findChildren<QWidget*>();
    for (QWidget* const widget : widgets) {
        LocalizeProperties(*widget);
        if (auto* const list = qobject_cast<QComboBox*>(widget)) {
            LocalizeItems(*list);
        }
    }
}

}  // namespace zelui::qt
