#pragma once

#include <cstdint>
#include <string_view>

#include "../Brio/InterfaceRef.h"
#include "../Core/Export.h"

namespace zelui::ui {

class UI_Node;

/// A counted reference to a node of type T, or empty.
template <class T>
using NodeRef = Brio::InterfaceRef<T, UI_Node>;

/// A piece of a user interface: a control, a view, a window. Nodes are counted and delete themselves.
/// All nodes live on the host's UI thread.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): only Release deletes a node
class ZEL_API UI_Node {
public:
    virtual std::int32_t AddRef() = 0;
    virtual std::int32_t Release() = 0;

    /// The node called `name` among this node's children, and theirs when `recursive`; null when there is
    /// none. No reference is taken.
    [[nodiscard]] virtual UI_Node* GetUINodePtr(std::string_view name, bool recursive) = 0;

protected:
    UI_Node() = default;
    UI_Node(const UI_Node&) = default;
    UI_Node& operator=(const UI_Node&) = default;
    virtual ~UI_Node();
};

}  // namespace zelui::ui
