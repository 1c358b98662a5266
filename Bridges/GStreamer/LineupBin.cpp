#include "Bridges/GStreamer/LineupBin.h"

#include "Bridges/GStreamer/AudioSource.h"
#include "Bridges/GStreamer/Properties.h"
#include "Bridges/GStreamer/UriKeys.h"
#include "Bridges/GStreamer/VideoSource.h"

#include <exception>
#include <mutex>
#include <string>
#include <utility>

namespace gstreamer {

namespace {

constexpr const char* kEmptyAddress = "lineup://";

/// One of the two sources with what its address asks of its caps behind it; both belong to the bin.
struct Branch {
    const char* name = nullptr;  // of its pad too
    GstElement* source = nullptr;
    GstElement* filter = nullptr;
    GstPad* pad = nullptr;  // while there is one
};

struct BinState {
    Branch picture;
    Branch sound;
    std::mutex mutex;  // for what follows
    std::string address = kEmptyAddress;
    Wanted wanted;        // of it
    std::string mistake;  // in an address that was set as a property, which cannot refuse it
};

struct BinObject {
    GstBin parent;
    BinState* state;
};

enum BinProperty : guint { kUri = 1 };

const GstElementClass& BinParent() {
    return *static_cast<const GstElementClass*>(g_type_class_peek(GST_TYPE_BIN));
}

BinState& StateOf(gpointer bin) {
    return *static_cast<BinObject*>(bin)->state;
}

Branch AddBranch(GstBin* bin, const char* factory, const char* name) {
    Branch branch{name, gst_element_factory_make(factory, name), gst_element_factory_make("capsfilter", nullptr)};
    gst_bin_add_many(bin, branch.source, branch.filter, nullptr);
    gst_element_link(branch.source, branch.filter);
    return branch;
}

// Pads come when it is started: players link several of an address's only if they come while they watch.
void Expose(GstElement* bin, Branch& branch) {
    GstPad* const inner = gst_element_get_static_pad(branch.filter, "src");
    GstPadTemplate* const pad = gst_element_class_get_pad_template(GST_ELEMENT_GET_CLASS(bin), branch.name);
    branch.pad = gst_ghost_pad_new_from_template(branch.name, inner, pad);
    gst_element_add_pad(bin, branch.pad);
    gst_object_unref(inner);
}

void Withdraw(GstElement* bin, Branch& branch) {
    if (branch.pad != nullptr) {
        gst_element_remove_pad(bin, branch.pad);
        branch.pad = nullptr;
    }
}

void Apply(BinState& state, const std::string& address) {
    Wanted wanted = ParseAddress(address);
    ResetProperties(*state.sound.source, state.wanted.sound);
    ResetProperties(*state.picture.source, state.wanted.picture);
    SetProperties(*state.sound.source, wanted.sound);
    SetProperties(*state.picture.source, wanted.picture);
    g_object_set(state.sound.filter, "caps", wanted.soundCaps.get(), nullptr);
    g_object_set(state.picture.filter, "caps", wanted.pictureCaps.get(), nullptr);
    state.wanted = std::move(wanted);
}

// --- the address ------------------------------------------------------------------------------------

GstURIType UriType(GType) {
    return GST_URI_SRC;
}

const gchar* const* Protocols(GType) {
    static constexpr const gchar* kProtocols[] = {kProtocol, nullptr};
    return kProtocols;
}

gchar* GetUri(GstURIHandler* bin) {
    BinState& state = StateOf(bin);
    const std::scoped_lock lock(state.mutex);
    return g_strdup(state.address.c_str());
}

gboolean SetUri(GstURIHandler* bin, const gchar* address, GError** error) {
    BinState& state = StateOf(bin);
    try {
        const std::scoped_lock lock(state.mutex);
        Apply(state, address);
        state.address = address;
        state.mistake.clear();
        return TRUE;
    } catch (const std::exception& mistake) {
        g_set_error(error, GST_URI_ERROR, GST_URI_ERROR_BAD_REFERENCE, "%s", mistake.what());
        return FALSE;
    }
}

void InitHandler(gpointer handler, gpointer) {
    auto& interface = *static_cast<GstURIHandlerInterface*>(handler);
    interface.get_type = UriType;
    interface.get_protocols = Protocols;
    interface.get_uri = GetUri;
    interface.set_uri = SetUri;
}

void SetBinProperty(GObject* object, guint, const GValue* value, GParamSpec*) {
    const gchar* const address = g_value_get_string(value);
    GError* error = nullptr;
    auto* const handler = reinterpret_cast<GstURIHandler*>(object);
    if (gst_uri_handler_set_uri(handler, address == nullptr ? kEmptyAddress : address, &error) == FALSE) {
        BinState& state = StateOf(object);
        const std::scoped_lock lock(state.mutex);
        state.mistake = error->message;
        g_error_free(error);
    }
}

void GetBinProperty(GObject* object, guint, GValue* value, GParamSpec*) {
    g_value_take_string(value, GetUri(reinterpret_cast<GstURIHandler*>(object)));
}

/// Whether the address is right; says what is wrong with it.
bool HasAddress(GstElement* element) {
    BinState& state = StateOf(element);
    std::string mistake;
    {
        const std::scoped_lock lock(state.mutex);
        mistake = state.mistake;
    }
    if (!mistake.empty()) {
        GST_ELEMENT_ERROR(element, RESOURCE, SETTINGS, ("%s", mistake.c_str()), (nullptr));
    }
    return mistake.empty();
}

GstStateChangeReturn ChangeState(GstElement* element, GstStateChange change) {
    BinState& state = StateOf(element);
    const bool starts = change == GST_STATE_CHANGE_READY_TO_PAUSED;
    if (starts) {
        if (!HasAddress(element)) {
            return GST_STATE_CHANGE_FAILURE;
        }
        Expose(element, state.picture);
        Expose(element, state.sound);
        gst_element_no_more_pads(element);
    }
    const GstStateChangeReturn result = BinParent().change_state(element, change);
    if (change == GST_STATE_CHANGE_PAUSED_TO_READY || (starts && result == GST_STATE_CHANGE_FAILURE)) {
        Withdraw(element, state.picture);
        Withdraw(element, state.sound);
    }
    return result;
}

// --- the object -------------------------------------------------------------------------------------

void FinalizeBin(GObject* object) {
    delete &StateOf(object);
    BinParent().parent_class.parent_class.finalize(object);
}

void AddPad(GstElementClass& element, const char* name, const Caps& caps) {
    gst_element_class_add_pad_template(&element,
                                       gst_pad_template_new(name, GST_PAD_SRC, GST_PAD_SOMETIMES, caps.get()));
}

void InitBinClass(gpointer type, gpointer) {
    auto& object = *static_cast<GObjectClass*>(type);
    object.set_property = SetBinProperty;
    object.get_property = GetBinProperty;
    object.finalize = FinalizeBin;
    auto& element = *static_cast<GstElementClass*>(type);
    element.change_state = ChangeState;
    gst_element_class_set_static_metadata(&element, "Line-up clip", "Source/Audio/Video",
                                          "Colour bars with line-up tone or a channel ident, from an address "
                                          "lineup://?KEY=VALUE&KEY=VALUE...",
                                          "Bars and Tone");
    AddPad(element, "video", VideoSource::Possible());
    AddPad(element, "audio", AudioSource::Possible());
    static const std::string text = "lineup://?KEY=VALUE&KEY=VALUE... Keys: " + KeysText();
    InstallProperty(object, kUri, g_param_spec_string("uri", "Address", text.c_str(), kEmptyAddress, kReadWrite));
}

void InitBin(GTypeInstance* instance, gpointer) {
    auto* const bin = reinterpret_cast<BinObject*>(instance);
    bin->state = new BinState;
    bin->state->picture = AddBranch(&bin->parent, "lineupvideosrc", "video");
    bin->state->sound = AddBranch(&bin->parent, "lineupaudiosrc", "audio");
    GST_OBJECT_FLAG_SET(bin, GST_ELEMENT_FLAG_SOURCE);
}

}  // namespace

GType LineupBinType() {
    static const GType type = [] {
        GTypeInfo info{};
        info.class_size = sizeof(GstBinClass);
        info.class_init = InitBinClass;
        info.instance_size = sizeof(BinObject);
        info.instance_init = InitBin;
        const GType bin = g_type_register_static(GST_TYPE_BIN, "LineupSrc", &info, GTypeFlags{});
        const GInterfaceInfo handler{InitHandler, nullptr, nullptr};
        g_type_add_interface_static(bin, GST_TYPE_URI_HANDLER, &handler);
        return bin;
    }();
    return type;
}

}  // namespace gstreamer
