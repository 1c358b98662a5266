#include "Apps/lineup/Completion/Completion.h"

#include <lineup/CheckSettings.h>
#include <lineup/FormatTable.h>
#include <lineup/SendSettings.h>
#include <lineup/StreamTable.h>
#include <lineup/Validation.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <span>
#include <string_view>

namespace cli {

namespace {

using Candidates = std::vector<Candidate>;

// A command line as far as it goes.
struct Line {
    const CLI::App* command = nullptr;  // null: an unknown command
    std::vector<std::string> positionals{};
    std::set<const CLI::Option*> given{};
    const CLI::Option* pending = nullptr;  // waits for its value
    bool optionsAreOver = false;
};

bool TakesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

bool IsHidden(const CLI::Option& option) {
    return option.get_group().empty();
}

std::vector<const CLI::Option*> Positionals(const CLI::App& command) {
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::App*> Commands(const CLI::App& app) {
    return app.get_subcommands(std::function<bool(const CLI::App*)>(
        [](const CLI::App* command) { return !command->get_group().empty(); }));  // a hidden one has none
}

const CLI::App* FindCommand(const CLI::App& app, const std::string& name) {
    const auto commands = Commands(app);
    const auto found = std::ranges::find(commands, name, [](const CLI::App* command) { return command->get_name(); });
    return found == commands.end() ? nullptr : *found;
}

// --- the values of options ------------------------------------------------------------------------

template <class Codec>
Candidates CodecNames(std::span<const Codec> codecs, const Line& line,
                      std::span<const std::string_view> lineup::FileFormat::*ofFormat) {
    const lineup::FileFormat* const format =
        line.positionals.empty() ? nullptr : lineup::FindFileFormat(line.positionals.front());
    Candidates names;
    for (const Codec& codec : codecs) {
        if (format == nullptr || std::ranges::find(format->*ofFormat, codec.name) != (format->*ofFormat).end()) {
            names.push_back({std::string(codec.name), std::string(codec.description)});
        }
    }
    return names;
}

// All of them: a stream has no file format that would leave some out.
template <class Codec>
Candidates StreamCodecNames(std::span<const Codec> codecs) {
    Candidates names;
    for (const Codec& codec : codecs) {
        names.push_back({std::string(codec.name), std::string(codec.description)});
    }
    names.push_back({lineup::kNoCodec, ""});
    return names;
}

bool IsStream(const Line& line) {
    return line.command->get_name() == "send";
}

Candidates VideoCodecNames(const Line& line) {
    if (IsStream(line)) {
        return StreamCodecNames(lineup::StreamVideoCodecs());
    }
    return CodecNames(lineup::VideoCodecs(), line, &lineup::FileFormat::videoCodecs);
}

Candidates AudioCodecNames(const Line& line) {
    if (IsStream(line)) {
        return StreamCodecNames(lineup::StreamAudioCodecs());
    }
    return CodecNames(lineup::AudioCodecs(), line, &lineup::FileFormat::audioCodecs);
}

Candidates PromiseIds(const Line& /*line*/) {
    Candidates ids;
    for (const lineup::validation::Promise& promise : lineup::validation::Promises()) {
        ids.push_back({std::string(promise.id), std::string(promise.text)});
    }
    return ids;
}

Candidates ToleranceValues(const Line& /*line*/) {
    Candidates values;
    for (const lineup::CheckTolerance& tolerance : lineup::CheckTolerances()) {
        values.push_back({fmt::format("{}={:g}", tolerance.name, tolerance.value),
                          fmt::format("{}: {}", tolerance.unit, tolerance.meaning)});
    }
    return values;
}

// Options whose values stand in a table of the library; those of others stand in their type: "auto|hd|sd".
struct ValueTable {
    std::string_view option;
    Candidates (*values)(const Line& line);
};
constexpr std::array<ValueTable, 4> kValueTables = {{
    {"video-codec", VideoCodecNames},
    {"audio-codec", AudioCodecNames},
    {"only", PromiseIds},
    {"tolerance", ToleranceValues},
}};

Candidates WordsOf(std::string_view type) {
    Candidates words;
    while (type.find('|') != std::string_view::npos) {
        words.push_back({std::string(type.substr(0, type.find('|'))), ""});
        type.remove_prefix(type.find('|') + 1);
    }
    if (!words.empty()) {
        words.push_back({std::string(type), ""});
    }
    return words;
}

Completion Values(const CLI::Option& option, const Line& line) {
    for (const ValueTable& table : kValueTables) {
        if (option.check_lname(std::string(table.option))) {
            return {.candidates = table.values(line)};
        }
    }
    const std::string type = option.get_type_name();
    if (type == "FOLDER") {
        return {.names = Completion::Names::Folders};
    }
    if (type == "FILE" || option.get_positional()) {
        return {.names = Completion::Names::Files};
    }
    return {.candidates = WordsOf(type)};
}

// --- the line -------------------------------------------------------------------------------------

// "--option=value" in pieces becomes one word again.
std::vector<std::string> Joined(const std::vector<std::string>& words) {
    std::vector<std::string> joined;
    bool afterSign = false;
    for (const std::string& word : words) {
        const bool isSign = word == "=" && !joined.empty() && joined.back().starts_with("--");
        if (isSign || afterSign) {
            joined.back() += word;
        } else {
            joined.push_back(word);
        }
        afterSign = isSign;
    }
    return joined;
}

void TakeOption(Line& line, const std::string& word) {
    const std::size_t sign = word.find('=');
    const CLI::Option* const option = line.command->get_option_no_throw(word.substr(0, sign));
    if (option == nullptr) {
        return;
    }
    line.given.insert(option);
    if (TakesValue(*option) && sign == std::string::npos) {
        line.pending = option;
    }
}

void Take(Line& line, const CLI::App& app, const std::string& word) {
    if (line.pending != nullptr) {
        line.pending = nullptr;
    } else if (word == "--" && !line.optionsAreOver) {
        line.optionsAreOver = true;
    } else if (word.starts_with('-') && !line.optionsAreOver) {
        TakeOption(line, word);
    } else if (line.command == &app) {
        line.command = FindCommand(app, word);
        line.given.clear();
    } else {
        line.positionals.push_back(word);
    }
}

bool MayFollow(const CLI::Option& option, const Line& line) {
    const bool again = option.get_expected_max() > 1 || !line.given.contains(&option);
    const auto excluded = option.get_excludes();
    return again && !IsHidden(option) && option.nonpositional() &&
           std::ranges::none_of(excluded, [&line](const auto* other) { return line.given.contains(other); });
}

Candidates Options(const Line& line) {
    Candidates names;
    for (const CLI::Option* const option : line.command->get_options()) {
        if (MayFollow(*option, line) && !option->get_lnames().empty()) {
            names.push_back({"--" + option->get_lnames().front(), option->get_description()});
        }
    }
    return names;
}

Candidates CommandNames(const CLI::App& app) {
    Candidates names;
    for (const CLI::App* const command : Commands(app)) {
        names.push_back({command->get_name(), command->get_description()});
    }
    return names;
}

Completion All(const Line& line, const CLI::App& app, const std::string& word) {
    if (line.pending != nullptr) {
        return Values(*line.pending, line);
    }
    const std::size_t sign = word.find('=');
    if (word.starts_with("--") && sign != std::string::npos && !line.optionsAreOver) {
        const CLI::Option* const option = line.command->get_option_no_throw(word.substr(0, sign));
        return option == nullptr ? Completion{} : Values(*option, line);
    }
    if (word.starts_with('-') && !line.optionsAreOver) {
        return {.candidates = Options(line)};
    }
    if (line.command == &app) {
        return {.candidates = CommandNames(app)};
    }
    const auto positionals = Positionals(*line.command);
    if (line.positionals.size() < positionals.size()) {
        return Values(*positionals[line.positionals.size()], line);
    }
    if (!positionals.empty() && positionals.back()->get_expected_max() > 1) {
        return Values(*positionals.back(), line);
    }
    return {.candidates = line.optionsAreOver ? Candidates{} : Options(line)};
}

}  // namespace

Completion Complete(const CLI::App& app, const std::vector<std::string>& words) {
    const std::vector<std::string> joined = Joined(words);
    Line line{.command = &app};
    if (joined.empty()) {
        return {};
    }
    for (std::size_t i = 0; i + 1 < joined.size() && line.command != nullptr; ++i) {
        Take(line, app, joined[i]);
    }
    if (line.command == nullptr) {
        return {};
    }
    const std::string& word = joined.back();
    Completion completion = All(line, app, word);
    const bool isValue = word.starts_with("--") && word.find('=') != std::string::npos;
    const std::string start = isValue ? word.substr(word.find('=') + 1) : word;
    std::erase_if(completion.candidates, [&start](const Candidate& one) { return !one.word.starts_with(start); });
    return completion;
}

}  // namespace cli
