#include "Host/Desktop/QtToolkit.h"

#include "Host/Desktop/FormLoader.h"
#include "Host/Desktop/NodeTable.h"
#include "Host/Desktop/QtDialogView.h"
#include "Host/Desktop/QtNode.h"
#include "Host/Desktop/Text.h"

#include <QApplication>
#include <stdexcept>

using zelworkspace::workspace::TopLevelWindow;

namespace zelui::qt {

namespace {

class QtMainWindow : public QtNode<TopLevelWindow> {
public:
    using QtNode::QtNode;

    [[nodiscard]] zelworkspace::workspace::Workspace* GetWorkspace() override { return nullptr; }
};

QWidget* WindowOf(ui::UI_Node* node) {
    const auto* const hasWidget = dynamic_cast<HasWidget*>(node);
    return hasWidget == nullptr || hasWidget->Widget() == nullptr ? nullptr : hasWidget->Widget()->window();
}

}  // namespace

QtToolkit::QtToolkit(QWidget* mainWindow) : mLastOutcome(std::make_shared<ui::DialogOutcome>()) {
    if (mainWindow != nullptr) {
        mMainWindow = ui::NodeRef<TopLevelWindow>(new QtMainWindow(*mainWindow, std::weak_ptr<NodeTable>()));
    }
}

QtToolkit::~QtToolkit() = default;

const drawbot::SupplierInterface* QtToolkit::DefaultDrawSupplier() {
    return nullptr;
}

TopLevelWindow* QtToolkit::MainWindow() {
    return WindowOf(mMainWindow.Get()) == nullptr ? nullptr : mMainWindow.Get();
}

ui::NodeRef<ui::UI_DialogView> QtToolkit::BuildDialog(const std::string& script, const Brio::String& layoutName,
                                                      const drawbot::SupplierInterface* /*drawSupplier*/,
                                                      ui::UI_Node* parent) {
    const QString name = ToQString(layoutName);
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        throw std::runtime_error("cannot build the dialog " + name.toStdString() + ": the program has no QApplication");
    }
    *mLastOutcome = ui::DialogOutcome::NoDialog;
    auto dialog = LoadForm(QByteArray::fromStdString(script), name, WindowOf(parent));
    return ui::NodeRef<ui::UI_DialogView>(
        new QtDialogView(std::move(dialog), std::make_shared<NodeTable>(), mLastOutcome));
}

}  // namespace zelui::qt
