#include "Tests/Host/Desktop/TestForms.h"

#include "Host/Desktop/QtToolkit.h"

#include <exception>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

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

namespace {

// While it lives, the process can take a gigabyte more: what asks for more ends it, and not the machine.
class LittleMemory {
public:
    LittleMemory() {
        constexpr rlim_t kMore = rlim_t{1} << 30;
        getrlimit(RLIMIT_AS, &mBefore);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit{pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kMore, mBefore.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    ~LittleMemory() { setrlimit(RLIMIT_AS, &mBefore); }
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;

private:
    rlimit mBefore{};
};

}  // namespace

std::string BuildError(const std::string& form) {
    const LittleMemory limit;
    try {
        (void)Build(form);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace test
