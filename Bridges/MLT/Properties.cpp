#include "Bridges/MLT/Properties.h"

#include <lineup/Card.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>

#include <array>
#include <vector>

namespace bridge {

namespace {

using Names = std::vector<std::string_view>;

template <class Rows>
Names NamesOf(const Rows& rows, Names names = {}) {
    for (const auto& row : rows) {
        names.push_back(row.name);
    }
    return names;
}

}  // namespace

const NameProperty& CardProperty() {
    static const Names names = NamesOf(lineup::kCardNames);
    static const NameProperty property{"card", names};
    return property;
}

const NameProperty& MatrixProperty() {
    static constexpr std::array<std::string_view, 2> kNames = {"profile", "601"};
    static constexpr NameProperty kProperty{"matrix", kNames};
    return kProperty;
}

const NameProperty& DepthProperty() {
    static constexpr std::array<std::string_view, 3> kNames = {"16", "12", "10"};
    static constexpr NameProperty kProperty{"depth", kNames};
    return kProperty;
}

const NameProperty& SoundProperty() {
    static const Names names = NamesOf(lineup::Idents(), {"tone"});
    static const NameProperty property{"sound", names};
    return property;
}

const NameProperty& ChannelsProperty() {
    static const Names names = NamesOf(lineup::ChannelLayouts(), {"auto"});
    static const NameProperty property{"channels", names};
    return property;
}

}  // namespace bridge
