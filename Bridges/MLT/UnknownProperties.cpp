#include "Bridges/MLT/UnknownProperties.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <vector>

namespace bridge {

namespace {

using namespace std::string_view_literals;

/// The plain words that the framework, its programs and editors set on any producer.
constexpr std::array kOfTheFramework = {
    "autoclose"sv, "background"sv, "caption"sv,   "consumer"sv, "end"sv,      "eof"sv,     "filter"sv, "force"sv,
    "hide"sv,      "id"sv,         "in"sv,        "length"sv,   "loop"sv,     "note"sv,    "out"sv,    "pause"sv,
    "playlist"sv,  "producer"sv,   "refresh"sv,   "resource"sv, "seekable"sv, "service"sv, "speed"sv,  "start"sv,
    "text"sv,      "title"sv,      "transport"sv, "ttl"sv,      "xml"sv};

constexpr std::size_t kMostSlips = 2;  // letters that are wrong, missing or too many in a name that is meant

bool IsPlainWord(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= 'a' && c <= 'z'; });
}

/// How many letters are to be changed, put in or left out to make one word the other.
std::size_t Slips(std::string_view from, std::string_view to) {
    std::vector<std::size_t> costs(to.size() + 1);
    std::iota(costs.begin(), costs.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = costs[0];
        costs[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = costs[j + 1];
            costs[j + 1] = std::min({replaced, costs[j] + 1, costs[j + 1] + 1});
        }
    }
    return costs.back();
}

std::string Sentence(std::string_view name) {
    const auto names = PropertyNames();
    const auto* const meant =
        std::ranges::min_element(names, {}, [name](std::string_view known) { return Slips(name, known); });
    const std::string question = Slips(name, *meant) <= kMostSlips ? fmt::format("; is {} meant?", *meant) : "";
    return fmt::format("there is no property {}{}", name, question);
}

}  // namespace

void UnknownProperties::ComplainOf(mlt_properties properties, const Complain& complain) {
    const auto own = PropertyNames();
    const int count = mlt_properties_count(properties);
    for (int i = 0; i < count; ++i) {
        const char* const found = mlt_properties_get_name(properties, i);
        const std::string_view name = found == nullptr ? "" : found;
        const bool known = std::ranges::find(own, name) != own.end() ||
                           std::ranges::find(kOfTheFramework, name) != kOfTheFramework.end();
        if (IsPlainWord(name) && !known && mSaid.insert(std::string(name)).second) {
            complain(Sentence(name));
        }
    }
}

}  // namespace bridge
