// Services in front of the host's own, each under its name in the plans. What they do when they do not fail is
// left to the host's.
#include "Host/Interface/Core/Contract.h"
#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Core/Localizer.h"
#include "Host/Interface/Core/ModuleResources.h"
#include "Host/Interface/Core/TextConversion.h"
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Tarn/UI_Tarn.h"
#include "Host/Interface/UI/UI_NodeManager.h"
#include "Host/Interface/UI/Workspace.h"
#include "Host/Services/Bundles/LoadedBundles.h"
#include "Tests/Support/FailingHost/FaultPlan.h"

#include <cstdlib>
#include <dlfcn.h>
#include <stdexcept>

using test::Answer;
using test::FaultPlan;

namespace {

std::ptrdiff_t gSmallBlocks = 0;
std::ptrdiff_t gBlocks = 0;

// The host's own function behind the one of this name here.
template <class Function>
Function* Hosts(const char* symbol) {
    void* const found = dlsym(RTLD_NEXT, symbol);
    if (found == nullptr) {
        throw std::logic_error(std::string("the host has no ") + symbol);
    }
    return reinterpret_cast<Function*>(found);
}

// The localiser as the host has it, but for the calls that fail.
class FailingLocalizer : public zelcore::config::Localizer {
public:
    [[nodiscard]] Brio::String GetLocalizedString(std::string_view key) const override {
        switch (FaultPlan::Called("GetLocalizedString")) {
            case Answer::Nothing:
                return {};
            case Answer::Nonsense:
                return Brio::String(100'000, char16_t{0xDC00});  // halves of pairs
            case Answer::Right:
                break;
        }
        using HostsGet = zelcore::config::Localizer&();
        static auto* const get = Hosts<HostsGet>("_ZN7zelcore6config9Localizer3GetEv");
        return get().GetLocalizedString(key);
    }
};

}  // namespace

std::ptrdiff_t test::SmallBlocksTaken() {
    return gSmallBlocks;
}
std::ptrdiff_t test::BlocksTaken() {
    return gBlocks;
}

// --- memory -------------------------------------------------------------------------------------

// NOLINTBEGIN(cppcoreguidelines-no-malloc): this is what stands behind new
void* operator new(std::size_t bytes) {
    if (FaultPlan::Called("operator new") != Answer::Right) {
        throw test::HostFailure("operator new");
    }
    void* const block = std::malloc(bytes == 0 ? 1 : bytes);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++gBlocks;
    return block;
}

void operator delete(void* block) noexcept {
    gBlocks -= block != nullptr ? 1 : 0;
    std::free(block);
}

void operator delete(void* block, std::size_t /*bytes*/) noexcept {
    operator delete(block);
}

void* zelcore::utility::SmallBlockAllocator::Allocate(std::size_t bytes) {
    if (FaultPlan::Called("Allocate") != Answer::Right) {
        return nullptr;
    }
    void* const block = std::malloc(bytes == 0 ? 1 : bytes);
    ++gSmallBlocks;
    return block;
}

void zelcore::utility::SmallBlockAllocator::Deallocate(void* block, std::size_t /*bytes*/) noexcept {
    gSmallBlocks -= block != nullptr ? 1 : 0;
    std::free(block);
}
// NOLINTEND(cppcoreguidelines-no-malloc)

// --- bundles, resources, texts ------------------------------------------------------------------

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
    static __CFBundle elsewhere{"/nowhere/Other.bundle", "org.example.other"};
    switch (FaultPlan::Called("CFBundleGetBundleWithIdentifier")) {
        case Answer::Nothing:
            return nullptr;
        case Answer::Nonsense:
            return &elsewhere;
        case Answer::Right:
            break;
    }
    static auto* const hosts = Hosts<CFBundleRef(CFStringRef)>("CFBundleGetBundleWithIdentifier");
    return hosts(identifier);
}

bool zelcore::utility::GetBinaryFromModule(CFBundleRef bundle, const Brio::String& /*name*/, const Brio::String& type,
                                           ByteVector& bytes) {
    bytes.clear();
    switch (FaultPlan::Called("GetBinaryFromModule")) {
        case Answer::Nothing:
            return false;
        case Answer::Nonsense:
            return true;  // and no bytes
        case Answer::Right:
            break;
    }
    const bool found = bundle != nullptr && bundle->identifier != "org.example.other" && type == u"tarn";
    bytes.assign(found ? 6 : 0, 'x');
    return found;
}

Brio::String zelcore::utility::AsciiToUTF16(std::string_view ascii) {
    switch (FaultPlan::Called("AsciiToUTF16")) {
        case Answer::Nothing:
            return {};
        case Answer::Nonsense:
            return Brio::String(100, u'/');
        case Answer::Right:
            break;
    }
    return {ascii.begin(), ascii.end()};
}

zelcore::config::Localizer& zelcore::config::Localizer::Get() {
    static FailingLocalizer localizer;
    static_cast<void>(FaultPlan::Called("Localizer::Get"));
    return localizer;
}

// --- errors and contracts -----------------------------------------------------------------------

void zelcore::config::ThrowError(std::string_view key) {
    static_cast<void>(FaultPlan::Called("ThrowError"));
    throw Error(key);
}

bool zelcore::debug::BreakAfterContractDialog(const char* /*condition*/, const char* /*file*/, const char* /*function*/,
                                              int /*line*/) {
    return FaultPlan::Called("BreakAfterContractDialog") == Answer::Right;
}

bool zelcore::debug::IsDebuggerAttached() {
    static_cast<void>(FaultPlan::Called("IsDebuggerAttached"));
    return false;
}

// --- user interface -----------------------------------------------------------------------------

zelui::ui::UI_NodeManager* zelui::ui::UI_NodeManager::Get(bool create) {
    if (FaultPlan::Called("UI_NodeManager::Get") != Answer::Right) {
        return nullptr;
    }
    static auto* const hosts = Hosts<UI_NodeManager*(bool)>("_ZN5zelui2ui14UI_NodeManager3GetEb");
    return hosts(create);
}

zelworkspace::workspace::TopLevelWindow* zelworkspace::workspace::WorkspaceUtils::FindMainTopLevelWindow() {
    if (FaultPlan::Called("FindMainTopLevelWindow") != Answer::Right) {
        return nullptr;
    }
    static auto* const hosts =
        Hosts<TopLevelWindow*()>("_ZN12zelworkspace9workspace14WorkspaceUtils22FindMainTopLevelWindowEv");
    return hosts();
}

zeltarn::UI_Tarn::UI_Tarn(const Brio::String& layoutName, const zelui::drawbot::SupplierInterface* drawSupplier,
                          zelui::ui::UI_Node* parent)
    : mTarnLayoutName(layoutName), mDrawSupplier(drawSupplier), mParent(parent) {
    static_cast<void>(FaultPlan::Called("UI_Tarn"));
}

void zeltarn::UI_Tarn::ParseTarnScript(std::istream& script, bool modeless) {
    if (FaultPlan::Called("ParseTarnScript") != Answer::Right) {
        return;
    }
    using Member = void(UI_Tarn*, std::istream&, bool);  // called as members are
    static auto* const hosts = Hosts<Member>("_ZN7zeltarn7UI_Tarn15ParseTarnScriptERSib");
    hosts(this, script, modeless);
}

zelui::ui::NodeRef<zelui::ui::UI_DialogView> zeltarn::UI_Tarn::GetView() const {
    if (FaultPlan::Called("GetView") != Answer::Right) {
        return {};
    }
    return mView;
}

// --- frames -------------------------------------------------------------------------------------

int vexelGetRowbytes(vexel frame) {
    static_cast<void>(FaultPlan::Called("vexelGetRowbytes"));
    static auto* const hosts = Hosts<int(vexel)>("vexelGetRowbytes");
    return hosts(frame);
}

void IR_FillWithColor(void* destination, int rowBytes, int width, int height, std::uint32_t destinationFormat,
                      const void* colour, std::uint32_t colourFormat) {
    using Fill = void(void*, int, int, int, std::uint32_t, const void*, std::uint32_t);
    static auto* const hosts = Hosts<Fill>("IR_FillWithColor");
    if (FaultPlan::Called("IR_FillWithColor") == Answer::Right) {
        hosts(destination, rowBytes, width, height, destinationFormat, colour, colourFormat);
    }
}
