#include "Host/Desktop/FormLoader.h"

#include "Host/Desktop/FormCheck.h"
#include "Host/Desktop/FormTexts.h"
#include "Host/Desktop/HotTextNumber.h"
#include "Host/Desktop/RangeLabel.h"

#include <QBuffer>
#include <QUiLoader>
#include <stdexcept>

namespace zelui::qt {

namespace {

// Makes the widgets of a form, and remembers those that it could not make.
class Loader : public QUiLoader {
public:
    Loader() { clearPluginPaths(); }

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        QWidget* const widget = Create(className, parent, name);
        if (widget == nullptr && mUnknown.isEmpty()) {
            mUnknown = QString("%1 is a %2, which does not exist").arg(name, className);
        }
        return widget;
    }

    [[nodiscard]] QString Problem() const { return mUnknown.isEmpty() ? errorString() : mUnknown; }

private:
    QWidget* Create(const QString& className, QWidget* parent, const QString& name) {
        if (className == "QDialog") {
            return Named(new FormDialog(parent), name);
        }
        if (className == "HotTextNumber") {
            return Named(new HotTextNumber(parent), name);
        }
        if (className == "RangeLabel") {
            return Named(new RangeLabel(parent), name);
        }
        const bool known = availableWidgets().contains(className);
        return known ? QUiLoader::createWidget(className, parent, name) : nullptr;
    }

    static QWidget* Named(QWidget* widget, const QString& name) {
        widget->setObjectName(name);
        return widget;
    }

    QString mUnknown;
};

std::unique_ptr<FormDialog> Load(const QByteArray& script, QWidget* parent) {
    CheckForm(script);
    Loader loader;
    QBuffer buffer;
    buffer.setData(script);
    buffer.open(QIODevice::ReadOnly);
    std::unique_ptr<QWidget> form(loader.load(&buffer, parent));
    if (!form || !loader.Problem().isEmpty()) {
        throw std::runtime_error(loader.Problem().toStdString());
    }
    auto* const dialog = qobject_cast<FormDialog*>(form.get());
    if (dialog == nullptr) {
        throw std::runtime_error(
            QString("the outermost widget is a %1, not a QDialog").arg(form->metaObject()->className()).toStdString());
    }
    (void)form.release();
    return std::unique_ptr<FormDialog>(dialog);
}

}  // namespace

std::unique_ptr<FormDialog> LoadForm(const QByteArray& script, const QString& name, QWidget* parent) {
    try {
        auto dialog = Load(script, parent);
        LocalizeTexts(*dialog);
        const auto ranges = dialog->findChildren<RangeLabel*>();
        for (RangeLabel* const range : ranges) {
            range->Follow();
        }
        dialog->Prepare();
        return dialog;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("cannot build the dialog " + name.toStdString() + ": " + error.what());
    }
}

}  // namespace zelui::qt
