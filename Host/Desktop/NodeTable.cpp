#include "Host/Desktop/NodeTable.h"

#include "Host/Desktop/QtButton.h"
#include "Host/Desktop/QtHotTextNumber.h"
#include "Host/Desktop/QtPopup.h"
#include "Host/Desktop/QtRadioButton.h"

namespace zelui::qt {

ui::UI_Node* NodeTable::Find(const QWidget& root, std::string_view name, bool recursive) {
    auto* const widget = root.findChild<QWidget*>(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                                                  recursive ? Qt::FindChildrenRecursively : Qt::FindDirectChildrenOnly);
    if (widget == nullptr || name.empty()) {
        mLookups.missing.emplace_back(name);
        mLookups.lastFound.clear();
        return nullptr;
    }
    mLookups.lastFound = name;
    mLookups.lastKind = widget->metaObject()->className();
    ui::NodeRef<ui::UI_Node>& node = mNodes[widget];
    if (!node) {
        node = MakeNode(*widget);
    }
    return node.Get();
}

ui::NodeRef<ui::UI_Node> NodeTable::MakeNode(QWidget& widget) {
    using Ref = ui::NodeRef<ui::UI_Node>;
    if (auto* const button = qobject_cast<QPushButton*>(&widget)) {
        return Ref(new QtButton(*button, weak_from_this()));
    }
    if (auto* const radio = qobject_cast<QRadioButton*>(&widget)) {
        return Ref(new QtRadioButton(*radio, weak_from_this()));
    }
    if (auto* const popup = qobject_cast<QComboBox*>(&widget)) {
        return Ref(new QtPopup(*popup, weak_from_this()));
    }
    if (auto* const number = qobject_cast<HotTextNumber*>(&widget)) {
        return Ref(new QtHotTextNumber(*number, weak_from_this()));
    }
    return Ref(new QtNode<ui::UI_Node>(widget, weak_from_this()));
}

}  // namespace zelui::qt
