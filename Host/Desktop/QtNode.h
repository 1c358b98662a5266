#pragma once

#include "Host/Desktop/NodeTable.h"

#include <QPointer>
#include <QWidget>
#include <memory>
#include <utility>

namespace zelui::qt {

/// What has a widget behind it.
class HasWidget {
public:
    explicit HasWidget(QWidget& widget) : mWidget(&widget) {}
    virtual ~HasWidget() = default;
    HasWidget(const HasWidget&) = delete;
    HasWidget& operator=(const HasWidget&) = delete;

    /// Null once the widget is gone.
    [[nodiscard]] QWidget* Widget() const { return mWidget; }

private:
    QPointer<QWidget> mWidget;
};

/// A node on a widget; its children are those of the widget. Counted, and deletes itself. It may outlive
/// the widget: what it is told then goes nowhere.
template <class Interface>
class QtNode : public Interface, public HasWidget {
public:
    QtNode(QWidget& widget, std::weak_ptr<NodeTable> nodes) : HasWidget(widget), mNodes(std::move(nodes)) {}

    std::int32_t AddRef() override { return ++mReferences; }
    std::int32_t Release() override {
        const std::int32_t left = --mReferences;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    [[nodiscard]] ui::UI_Node* GetUINodePtr(std::string_view name, bool recursive) override {
        const auto nodes = mNodes.lock();
        return nodes && Widget() != nullptr ? nodes->Find(*Widget(), name, recursive) : nullptr;
    }

private:
    std::weak_ptr<NodeTable> mNodes;
    std::int32_t mReferences = 0;
};

}  // namespace zelui::qt
