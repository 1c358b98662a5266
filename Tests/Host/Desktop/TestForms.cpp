#include "Tests/Host/Desktop/TestForms.h"

#include "Host/Desktop/QtToolkit.h"

#include <exception>

namespace test {

std::string Form(const std::string& widgets) {
    return R"(<ui version="4.0"><class>Test</class><widget class="QDialog" name="Test">)" + widgets + "</widget></ui>";
}

std::string FormWithOneOfEach() {
    return Form(R"(<layout class="QVBoxLayout" name="rows">
        <item><widget class="HotTextNumber" name="number">
            <property name="minimum"><double>0.0</double></property>
            <property name="maximum"><double>100.0</double></property>
        </widget></item>
        <item><widget class="QRadioButton" name="first"/></item>
        <item><widget class="QRadioButton" name="second"/></item>
        <item><widget class="QComboBox" name="list"/></item>
        <item><widget class="QPushButton" name="button"/></item>
    </layout>)");
}

zelui::ui::NodeRef<zelui::ui::UI_DialogView> Build(const std::string& form) {
    zelui::qt::QtToolkit toolkit;
    return toolkit.BuildDialog(form, u"Test", nullptr, nullptr);
}

std::string BuildError(const std::string& form) {
    try {
        (void)Build(form);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace test
