#include "Bridges/GStreamer/UriKeys.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Error.h>
#include <lineup/Limits.h>
#include <lineup/PictureAspect.h>
#include <lineup/PictureFormat.h>
#include <lineup/Scan.h>
#include "Bridges/GStreamer/AudioFormats.h"
#include "Bridges/GStreamer/Channels.h"
#include "Bridges/GStreamer/VideoFormats.h"
#include "Host/Lineup/Values/PictureShape.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

namespace gstreamer {

namespace {

template <class Number>
std::optional<Number> NumberIn(std::string_view text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// The two numbers around a mark.
std::optional<lineup::Rational> PairIn(std::string_view text, char mark) {
    const std::size_t middle = text.find(mark);
    if (middle == std::string_view::npos) {
        return std::nullopt;
    }
    const auto first = NumberIn<int>(text.substr(0, middle));
    const auto second = NumberIn<int>(text.substr(middle + 1));
    return first && second ? std::optional(lineup::Rational{*first, *second}) : std::nullopt;
}

/// "25", "30000/1001", or the usual short forms of such fractions, which are within half a hundredth of them.
std::optional<lineup::Rational> FrameRateIn(std::string_view text) {
    if (const auto fraction = PairIn(text, '/'); fraction) {
        return fraction;
    }
    if (const auto whole = NumberIn<int>(text); whole) {
        return lineup::Rational{*whole, 1};
    }
    const double rate = NumberIn<double>(text).value_or(0);
    const double near = std::round(rate);
    if (near > 1 && near < lineup::kHighestFrameRate && std::abs(near * 1000 / 1001 - rate) < 0.005) {
        return lineup::Rational{static_cast<int>(near) * 1000, 1001};
    }
    return std::nullopt;
}

[[noreturn]] void Refuse(std::string_view key, const std::string& value, const std::string& right) {
    throw lineup::Error(fmt::format("{} {}: must be {}", key, value, right));
}

template <class Rows>
std::string NamesOf(const Rows& rows) {
    std::vector<std::string_view> names;
    names.reserve(rows.size());
    for (const auto& row : rows) {
        names.push_back(row.name);
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

template <class... Values>
void SetField(const Caps& caps, const char* field, GType type, Values... values) {
    gst_caps_set_simple(caps.get(), field, type, values..., nullptr);
}

/// A key: its name, what it says, and what becomes of its value.
struct Key {
    std::string_view name;
    std::string_view text;
    void (*take)(Wanted& wanted, const std::string& value);
};

void TakeSize(Wanted& wanted, const std::string& value) {
    const auto size = PairIn(value, 'x');
    const auto isSide = [](int side) { return side >= 1 && side <= lineup::PictureFormat::kMostSize; };
    if (!size || !isSide(size->num) || !isSide(size->den)) {
        Refuse("size", value, fmt::format("WIDTHxHEIGHT, each 1 to {}", lineup::PictureFormat::kMostSize));
    }
    SetField(wanted.pictureCaps, "width", G_TYPE_INT, size->num);
    SetField(wanted.pictureCaps, "height", G_TYPE_INT, size->den);
}

void TakeRate(Wanted& wanted, const std::string& value) {
    const auto rate = FrameRateIn(value);
    if (!rate || !lineup::IsFrameRate(*rate)) {
        Refuse("rate", value,
               fmt::format("frames a second, whole (25) or a fraction (30000/1001), {} to {}", lineup::kLowestFrameRate,
                           lineup::kHighestFrameRate));
    }
    SetField(wanted.pictureCaps, "framerate", GST_TYPE_FRACTION, rate->num, rate->den);
}

void TakeScan(Wanted& wanted, const std::string& value) {
    const auto* const row = std::ranges::find(lineup::kScanNames, value, &lineup::ScanName::name);
    if (row == lineup::kScanNames.end()) {
        Refuse("scan", value, NamesOf(lineup::kScanNames));
    }
    const bool progressive = row->scan == lineup::Scan::Progressive;
    SetField(wanted.pictureCaps, "interlace-mode", G_TYPE_STRING, progressive ? "progressive" : "interleaved");
    if (!progressive) {
        SetField(wanted.pictureCaps, "field-order", G_TYPE_STRING,
                 row->scan == lineup::Scan::TopFieldFirst ? "top-field-first" : "bottom-field-first");
    }
}

// The shape of a pixel follows from it once all keys were read: the size may come after.
void TakeAspect(Wanted& wanted, const std::string& value) {
    if (std::ranges::find(lineup::kPictureAspectNames, value, &lineup::PictureAspectName::name) ==
        lineup::kPictureAspectNames.end()) {
        Refuse("aspect", value, NamesOf(lineup::kPictureAspectNames));
    }
    wanted.aspect = value;
}

void TakeFormat(Wanted& wanted, const std::string& value) {
    if (std::ranges::find(VideoFormats(), gst_video_format_from_string(value.c_str())) == VideoFormats().end()) {
        Refuse("format", value, "one of those that gst-inspect-1.0 lineupvideosrc shows");
    }
    SetField(wanted.pictureCaps, "format", G_TYPE_STRING, value.c_str());
}

void TakeSampleFormat(Wanted& wanted, const std::string& value) {
    if (FindAudioFormat(gst_audio_format_from_string(value.c_str())) == nullptr) {
        Refuse("sample-format", value, "one of those that gst-inspect-1.0 lineupaudiosrc shows");
    }
    SetField(wanted.soundCaps, "format", G_TYPE_STRING, value.c_str());
}

void TakeSampleRate(Wanted& wanted, const std::string& value) {
    const int rate = NumberIn<int>(value).value_or(0);
    if (rate < lineup::kLowestSampleRateHz || rate > lineup::kHighestSampleRateHz) {
        Refuse("sample-rate", value,
               fmt::format("{} to {} Hz", lineup::kLowestSampleRateHz, lineup::kHighestSampleRateHz));
    }
    SetField(wanted.soundCaps, "rate", G_TYPE_INT, rate);
}

void TakeChannels(Wanted& wanted, const std::string& value) {
    const auto* const layout = lineup::FindChannelLayout(value);
    const int channels =
        layout != nullptr ? static_cast<int>(layout->channels.size()) : NumberIn<int>(value).value_or(0);
    if (channels < 1 || channels > kMostChannels) {
        Refuse("channels", value, fmt::format("1 to {}, or {}", kMostChannels, NamesOf(lineup::ChannelLayouts())));
    }
    SetField(wanted.soundCaps, "channels", G_TYPE_INT, channels);
}

void TakeDuration(Wanted& wanted, const std::string& value) {
    constexpr double kMostSeconds = 1e9;
    const double seconds = NumberIn<double>(value).value_or(0);
    const bool isLength = seconds > 0 && seconds <= kMostSeconds;  // false for not-a-number
    if (!isLength) {
        Refuse("duration", value, "seconds, more than 0");
    }
    const std::string nanoseconds = std::to_string(std::llround(seconds * static_cast<double>(GST_SECOND)));
    wanted.sound.emplace_back("duration", nanoseconds);
    wanted.picture.emplace_back("duration", nanoseconds);
}

void TakeLive(Wanted& wanted, const std::string& value) {
    if (value != "true" && value != "false") {
        Refuse("live", value, "true or false");
    }
    wanted.sound.emplace_back("is-live", value);
    wanted.picture.emplace_back("is-live", value);
}

template <const char* kName>
void TakeOfSound(Wanted& wanted, const std::string& value) {
    wanted.sound.emplace_back(kName, value);
}

constexpr char kIdent[] = "ident";
constexpr char kFrequency[] = "frequency";
constexpr char kLevel[] = "level";
constexpr char kSettings[] = "settings";

void TakeCard(Wanted& wanted, const std::string& value) {
    wanted.picture.emplace_back("card", value);
}

// No key names the plug-in: an address may come from anybody, and a plug-in is a program.
constexpr std::array<Key, 15> kKeys = {{
    {"ident", "tone, ebu-stereo-1000, ebu-stereo-400, ebu-5.1 or blits", TakeOfSound<kIdent>},
    {"frequency", "of the steady tone, Hz", TakeOfSound<kFrequency>},
    {"level", "of the steady tone, dBFS", TakeOfSound<kLevel>},
    {"channels", "of the steady tone: mono, stereo, 5.1 or a number", TakeChannels},
    {"settings", "a settings file that says all of the sound", TakeOfSound<kSettings>},
    {"sample-rate", "Hz", TakeSampleRate},
    {"sample-format", "F32LE, S24BE and the like", TakeSampleFormat},
    {"size", "WIDTHxHEIGHT", TakeSize},
    {"rate", "frames a second: 25, 30000/1001, 29.97", TakeRate},
    {"card", "auto, hd or sd", TakeCard},
    {"scan", "progressive, tff or bff", TakeScan},
    {"aspect", "auto, 4:3, 16:9 or square; with a size", TakeAspect},
    {"format", "UYVY, v210, I420 and the like", TakeFormat},
    {"live", "true or false", TakeLive},
    {"duration", "seconds", TakeDuration},
}};

void SetPixelShape(Wanted& wanted) {
    const GstStructure* const picture = gst_caps_get_structure(wanted.pictureCaps.get(), 0);
    int width = 0;
    int height = 0;
    if (gst_structure_get(picture, "width", G_TYPE_INT, &width, "height", G_TYPE_INT, &height, nullptr) == FALSE) {
        Refuse("aspect", wanted.aspect, "with a size");
    }
    const auto* const row =
        std::ranges::find(lineup::kPictureAspectNames, wanted.aspect, &lineup::PictureAspectName::name);
    const lineup::Rational pixel = lineup::ShapeOf(width, height, row->aspect).sampleAspect;
    SetField(wanted.pictureCaps, "pixel-aspect-ratio", GST_TYPE_FRACTION, pixel.num, pixel.den);
}

/// What the values of a property may be, in words.
std::string RangeOf(GParamSpec& spec) {
    if (G_IS_PARAM_SPEC_ENUM(&spec)) {
        const GEnumClass& values = *G_PARAM_SPEC_ENUM(&spec)->enum_class;
        std::vector<std::string_view> names;
        for (guint i = 0; i < values.n_values; ++i) {
            names.emplace_back(values.values[i].value_nick);
        }
        return fmt::format("{}", fmt::join(names, ", "));
    }
    if (G_IS_PARAM_SPEC_DOUBLE(&spec)) {
        return fmt::format("{} to {}", G_PARAM_SPEC_DOUBLE(&spec)->minimum, G_PARAM_SPEC_DOUBLE(&spec)->maximum);
    }
    return "something else";
}

/// The value of a property; frees what it holds.
class PropertyValue {
public:
    PropertyValue(GParamSpec& spec, const std::string& text) {
        g_value_init(&mValue, spec.value_type);
        if (G_IS_PARAM_SPEC_STRING(&spec)) {
            g_value_set_string(&mValue, text.c_str());
        } else if (gst_value_deserialize(&mValue, text.c_str()) == FALSE ||
                   g_param_value_validate(&spec, &mValue) != FALSE) {
            g_value_unset(&mValue);
            Refuse(spec.name, text, RangeOf(spec));
        }
    }
    ~PropertyValue() { g_value_unset(&mValue); }
    PropertyValue(const PropertyValue&) = delete;
    PropertyValue& operator=(const PropertyValue&) = delete;

    [[nodiscard]] const GValue* Get() const noexcept { return &mValue; }

private:
    GValue mValue = G_VALUE_INIT;
};

GParamSpec& SpecOf(GObject* object, const std::string& property) {
    return *g_object_class_find_property(G_OBJECT_GET_CLASS(object), property.c_str());
}

/// The framework takes the name of a key whose characters cannot be told for one that is there, and falls over it.
void RequireCharacters(const std::string& address) {
    for (std::size_t at = address.find('%'); at != std::string::npos; at = address.find('%', at + 1)) {
        const std::string_view code = std::string_view(address).substr(at + 1, 2);
        int byte = 0;
        const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), byte, 16);
        if (error != std::errc() || end - code.data() != 2 || byte <= 0) {
            throw lineup::Error(fmt::format("{}: % must be followed by two hexadecimal digits, but not 00", address));
        }
    }
}

}  // namespace

std::string KeysText() {
    std::vector<std::string> texts;
    texts.reserve(kKeys.size());
    for (const Key& key : kKeys) {
        texts.push_back(fmt::format("{} ({})", key.name, key.text));
    }
    return fmt::format("{}", fmt::join(texts, "; "));
}

Wanted ParseAddress(const std::string& address) {
    RequireCharacters(address);
    const Uri uri(gst_uri_from_string(address.c_str()));
    const char* const host = uri ? gst_uri_get_host(uri.get()) : nullptr;
    if (!uri || (host != nullptr && *host != '\0')) {
        throw lineup::Error(fmt::format("{}: must be {}://?KEY=VALUE&KEY=VALUE...", address, kProtocol));
    }
    Wanted wanted;
    const Table table(gst_uri_get_query_table(uri.get()));
    GHashTableIter row{};
    gpointer name = nullptr;
    gpointer value = nullptr;
    if (table) {
        g_hash_table_iter_init(&row, table.get());
    }
    while (table && g_hash_table_iter_next(&row, &name, &value) != FALSE) {
        const std::string_view said = static_cast<const char*>(name);
        const auto* const key = std::ranges::find(kKeys, said, &Key::name);
        if (key == kKeys.end()) {
            throw lineup::Error(fmt::format("there is no key {} in an address; there are {}", said, NamesOf(kKeys)));
        }
        key->take(wanted, value == nullptr ? "" : static_cast<const char*>(value));
    }
    if (!wanted.aspect.empty()) {
        SetPixelShape(wanted);
    }
    return wanted;
}

void SetProperties(GstElement& element, const Wanted::Properties& properties) {
    GObject* const object = &element.object.object;
    for (const bool isReal : {false, true}) {
        for (const auto& [name, text] : properties) {
            const PropertyValue value(SpecOf(object, name), text);
            if (isReal) {
                g_object_set_property(object, name.c_str(), value.Get());
            }
        }
    }
}

void ResetProperties(GstElement& element, const Wanted::Properties& properties) {
    GObject* const object = &element.object.object;
    for (const auto& [name, text] : properties) {
        g_object_set_property(object, name.c_str(), g_param_spec_get_default_value(&SpecOf(object, name)));
    }
}

}  // namespace gstreamer
