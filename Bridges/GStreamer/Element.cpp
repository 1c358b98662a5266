#include "Bridges/GStreamer/Element.h"

#include "Bridges/GStreamer/Playback.h"
#include "Bridges/GStreamer/Properties.h"

#include <exception>
#include <gst/base/gstpushsrc.h>

namespace gstreamer {

namespace {

struct ElementObject {
    GstPushSrc parent;
    Playback* playback;
};
struct ElementClass {
    GstPushSrcClass parent;
    const ElementKind* kind;
};

enum CommonProperty : guint { kIsLive = 1, kDuration, kPlugin };

const GstBaseSrcClass& ParentClass() {
    return *static_cast<const GstBaseSrcClass*>(g_type_class_peek(GST_TYPE_PUSH_SRC));
}

Playback& PlaybackOf(gpointer element) {
    return *static_cast<ElementObject*>(element)->playback;
}

GstBaseSrc* BaseOf(gpointer element) {
    return static_cast<GstBaseSrc*>(element);
}

/// Runs `action`. No exception may reach the framework, which is C: the application hears of it.
template <class Action>
bool Guarded(GstBaseSrc* element, Action action) noexcept {
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        GST_ELEMENT_ERROR(element, RESOURCE, SETTINGS, ("%s", error.what()), (nullptr));
    }
    return false;
}

// --- states and caps --------------------------------------------------------------------------------

gboolean Start(GstBaseSrc* element) {
    return Guarded(element, [element] { PlaybackOf(element).Open(); }) ? TRUE : FALSE;
}

gboolean Stop(GstBaseSrc* element) {
    PlaybackOf(element).Close();
    return TRUE;
}

GstCaps* GetCaps(GstBaseSrc* element, GstCaps* filter) {
    Caps offered = PlaybackOf(element).With([](const Source& source) { return source.Offered(); });
    if (filter != nullptr) {
        offered.reset(gst_caps_intersect_full(filter, offered.get(), GST_CAPS_INTERSECT_FIRST));
    }
    return offered.release();
}

GstCaps* Fixate(GstBaseSrc* element, GstCaps* caps) {
    Caps first(gst_caps_truncate(caps));
    first.reset(gst_caps_make_writable(first.release()));
    Caps chosen = PlaybackOf(element).With([&](const Source& source) { return source.Chosen(std::move(first)); });
    return ParentClass().fixate(element, chosen.release());
}

gboolean SetCaps(GstBaseSrc* element, GstCaps* caps) {
    return Guarded(element, [&] { PlaybackOf(element).Take(*caps); }) ? TRUE : FALSE;
}

// --- times ------------------------------------------------------------------------------------------

gboolean IsSeekable(GstBaseSrc*) {
    return TRUE;
}

// Backwards it does not play. A seek that DoSeek refuses would have thrown away what is on its way by then.
gboolean OnEvent(GstBaseSrc* element, GstEvent* event) {
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK) {
        gdouble rate = 0;
        gst_event_parse_seek(event, &rate, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        if (rate <= 0) {
            return FALSE;
        }
    }
    return ParentClass().event(element, event);
}

gboolean DoSeek(GstBaseSrc* element, GstSegment* segment) {
    if (segment->format != GST_FORMAT_TIME) {
        return FALSE;
    }
    segment->time = segment->start;
    PlaybackOf(element).Seek(segment->position);
    return TRUE;
}

gboolean Query(GstBaseSrc* element, GstQuery* query) {
    const Playback& playback = PlaybackOf(element);
    if (GST_QUERY_TYPE(query) == GST_QUERY_DURATION) {
        GstFormat format = GST_FORMAT_UNDEFINED;
        gst_query_parse_duration(query, &format, nullptr);
        const GstClockTime duration = playback.Duration();
        if (format == GST_FORMAT_TIME && duration != Playback::kEndless) {
            gst_query_set_duration(query, format, static_cast<gint64>(duration));
            return TRUE;
        }
        return FALSE;
    }
    if (GST_QUERY_TYPE(query) == GST_QUERY_LATENCY && playback.BufferTime() > 0) {
        gst_query_set_latency(query, gst_base_src_is_live(element), playback.BufferTime(), GST_CLOCK_TIME_NONE);
        return TRUE;
    }
    return ParentClass().query(element, query);
}

// A live source gives a buffer when it begins. The base class waits for that, but measures a first buffer that is to be
// waited for against the clock and shifts all times by what it finds: so the first one, which has begun, goes at once.
void GetTimes(GstBaseSrc* element, GstBuffer* buffer, GstClockTime* start, GstClockTime* end) {
    *start = GST_CLOCK_TIME_NONE;
    *end = GST_CLOCK_TIME_NONE;
    const bool isFirst = GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DISCONT) != 0;
    if (gst_base_src_is_live(element) != FALSE && !isFirst) {
        *start = gst_segment_to_running_time(&element->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
        *end = *start + GST_BUFFER_DURATION(buffer);
    }
}

/// Stream time by the clock.
GstClockTime StreamTimeNow(GstBaseSrc* element) {
    GstClock* const clock = gst_element_get_clock(&element->element);
    if (clock == nullptr) {
        return 0;
    }
    const GstClockTime now = gst_clock_get_time(clock);
    gst_object_unref(clock);
    const GstClockTime begin = gst_element_get_base_time(&element->element);
    const GstClockTime running = now > begin ? now - begin : 0;
    const auto position = gst_segment_position_from_running_time(&element->segment, GST_FORMAT_TIME, running);
    return position == GST_CLOCK_TIME_NONE ? 0 : position;
}

GstFlowReturn Create(GstPushSrc* source, GstBuffer** buffer) {
    GstBaseSrc* const element = BaseOf(source);
    Buffer next;
    const bool done = Guarded(element, [&] {
        Playback& playback = PlaybackOf(source);
        // Who joins a pipeline that plays joins its time too, and does not hand out what is past.
        if (gst_base_src_is_live(element) != FALSE && playback.IsFresh()) {
            playback.JoinAt(StreamTimeNow(element));
        }
        next = playback.Next(element->segment.stop);
    });
    if (!done) {
        return GST_FLOW_ERROR;
    }
    if (!next) {
        return GST_FLOW_EOS;
    }
    *buffer = next.release();
    return GST_FLOW_OK;
}

// --- the objects ------------------------------------------------------------------------------------

void SetProperty(GObject* object, guint property, const GValue* value, GParamSpec* spec) {
    switch (property) {
        case kIsLive:
            gst_base_src_set_live(BaseOf(object), g_value_get_boolean(value));
            break;
        case kDuration:
            PlaybackOf(object).SetDuration(g_value_get_uint64(value));
            gst_element_post_message(&BaseOf(object)->element, gst_message_new_duration_changed(GST_OBJECT(object)));
            break;
        case kPlugin:
            PlaybackOf(object).SetPlugin(g_value_get_string(value));
            break;
        default:
            G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
    }
}

void GetProperty(GObject* object, guint property, GValue* value, GParamSpec* spec) {
    switch (property) {
        case kIsLive:
            g_value_set_boolean(value, gst_base_src_is_live(BaseOf(object)));
            break;
        case kDuration:
            g_value_set_uint64(value, PlaybackOf(object).Duration());
            break;
        case kPlugin:
            g_value_set_string(value, PlaybackOf(object).Plugin().c_str());
            break;
        default:
            G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
    }
}

void Finalize(GObject* object) {
    delete static_cast<ElementObject*>(static_cast<gpointer>(object))->playback;
    ParentClass().parent_class.parent_class.parent_class.finalize(object);
}

void InitCommonClass(gpointer type, gpointer) {
    auto& object = *static_cast<GObjectClass*>(type);
    object.set_property = SetProperty;
    object.get_property = GetProperty;
    object.finalize = Finalize;
    InstallProperty(object, kIsLive,
                    g_param_spec_boolean("is-live", "Is live", "Give each buffer when its time has come, not before",
                                         FALSE, kReadWrite));
    InstallProperty(object, kDuration,
                    g_param_spec_uint64("duration", "Duration",
                                        "Nanoseconds until the end of the stream; the greatest number: endless", 1,
                                        G_MAXUINT64, Playback::kEndless, kWhilePlaying));
    InstallProperty(object, kPlugin,
                    g_param_spec_string("plugin", "Plug-in",
                                        "The bundle to use instead of the one that was installed with this element",
                                        nullptr, kReadWrite));
    auto& base = *static_cast<GstBaseSrcClass*>(type);
    base.start = Start;
    base.stop = Stop;
    base.get_caps = GetCaps;
    base.fixate = Fixate;
    base.set_caps = SetCaps;
    base.is_seekable = IsSeekable;
    base.event = OnEvent;
    base.do_seek = DoSeek;
    base.query = Query;
    base.get_times = GetTimes;
    static_cast<GstPushSrcClass*>(type)->create = Create;
}

void InitCommonInstance(GTypeInstance* instance, gpointer type) {
    auto* const element = reinterpret_cast<ElementObject*>(instance);
    element->playback = new Playback(static_cast<ElementClass*>(type)->kind->newSource());
    gst_base_src_set_format(BaseOf(instance), GST_FORMAT_TIME);
}

GType CommonType() {
    static const GType type = [] {
        GTypeInfo info{};
        info.class_size = sizeof(ElementClass);
        info.class_init = InitCommonClass;
        info.instance_size = sizeof(ElementObject);
        info.instance_init = InitCommonInstance;
        return g_type_register_static(GST_TYPE_PUSH_SRC, "LineupBaseSrc", &info, G_TYPE_FLAG_ABSTRACT);
    }();
    return type;
}

// The source's own properties, by the numbers that `describe` gave them.
void SetSourceProperty(GObject* object, guint property, const GValue* value, GParamSpec*) {
    PlaybackOf(object).With([&](Source& source) { source.Set(property, *value); });
}

void GetSourceProperty(GObject* object, guint property, GValue* value, GParamSpec*) {
    PlaybackOf(object).With([&](const Source& source) { source.Get(property, *value); });
}

void InitClass(gpointer type, gpointer data) {
    const auto& kind = *static_cast<const ElementKind*>(data);
    static_cast<ElementClass*>(type)->kind = &kind;
    auto& object = *static_cast<GObjectClass*>(type);
    object.set_property = SetSourceProperty;
    object.get_property = GetSourceProperty;
    kind.describe(*static_cast<GstElementClass*>(type));
}

}  // namespace

GType RegisterElement(const ElementKind& kind) {
    GTypeInfo info{};
    info.class_size = sizeof(ElementClass);
    info.class_init = InitClass;
    info.class_data = &kind;  // which is only read
    info.instance_size = sizeof(ElementObject);
    return g_type_register_static(CommonType(), kind.typeName, &info, GTypeFlags{});
}

}  // namespace gstreamer
