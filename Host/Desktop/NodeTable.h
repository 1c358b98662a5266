#pragma once

#include "Host/Interface/UI/UI_DialogView.h"

#include <QWidget>
#include <map>
#include <memory>
#include <string_view>

namespace zelui::qt {

/// The nodes of one dialog's widgets. A node is made when it is first looked up and kept as long as the
/// table; whoever keeps it longer holds a node without a widget.
class NodeTable : public std::enable_shared_from_this<NodeTable> {
public:
    /// The node of the widget called `name` among the children of `root`, and theirs when `recursive`, or
    /// null. No reference is taken.
    [[nodiscard]] ui::UI_Node* Find(const QWidget& root, std::string_view name, bool recursive);

    [[nodiscard]] const ui::Lookups& LookedUp() const noexcept { return mLookups; }

private:
    [[nodiscard]] ui::NodeRef<ui::UI_Node> MakeNode(QWidget& widget);

    std::map<const QWidget*, ui::NodeRef<ui::UI_Node>> mNodes;
    ui::Lookups mLookups;
};

}  // namespace zelui::qt
