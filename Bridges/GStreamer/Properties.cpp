#include "Bridges/GStreamer/Properties.h"

#include <lineup/Card.h>
#include <lineup/Idents.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

namespace gstreamer {

namespace {

/// The values of an enumeration. `gst-inspect-1.0` shows the titles.
class EnumValues {
public:
    void Add(int value, std::string_view name, std::string_view title) {
        const auto keep = [](std::string_view text) { return g_intern_string(std::string(text).c_str()); };
        mValues.push_back({value, keep(title), keep(name)});
    }
    /// The type refers to its values for ever.
    [[nodiscard]] GType Register(const char* typeName) const {
        auto kept = std::make_unique<GEnumValue[]>(mValues.size() + 1);  // the last one is zeros
        std::ranges::copy(mValues, kept.get());
        return g_enum_register_static(typeName, kept.release());
    }

private:
    std::vector<GEnumValue> mValues;
};

}  // namespace

GType SoundEnum() {
    static const GType type = [] {
        EnumValues values;
        values.Add(0, "tone", "Steady tone");
        int number = 0;
        for (const lineup::Ident& ident : lineup::Idents()) {
            values.Add(++number, ident.name, ident.title);
        }
        return values.Register("LineupSound");
    }();
    return type;
}

GType CardEnum() {
    static const GType type = [] {
        static constexpr std::array<std::string_view, 3> kTitles = {"The card for the picture's height", "The HD card",
                                                                    "The SD card"};
        static_assert(kTitles.size() == lineup::kCardNames.size());
        EnumValues values;
        for (std::size_t i = 0; i < kTitles.size(); ++i) {
            values.Add(static_cast<int>(lineup::kCardNames.at(i).card), lineup::kCardNames.at(i).name, kTitles.at(i));
        }
        return values.Register("LineupCard");
    }();
    return type;
}

}  // namespace gstreamer
