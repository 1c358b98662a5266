#include "Apps/manual/ManualPage.h"

#include "Apps/manual/Roff.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <functional>

namespace manual {

namespace {

using Options = std::vector<const CLI::Option*>;
using Commands = std::vector<const CLI::App*>;

// Those that a help text shows.
Options ShownOptions(const CLI::App& command, bool positional) {
    return command.get_options([positional](const CLI::Option* option) {
        return option->get_positional() == positional && !option->get_group().empty();
    });
}

Commands ShownCommands(const CLI::App& program) {
    return program.get_subcommands(
        std::function<bool(const CLI::App*)>([](const CLI::App* command) { return !command->get_group().empty(); }));
}

std::string LowerFirst(std::string text) {
    text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
    return text;
}

std::string WithoutPoint(std::string text) {
    if (text.ends_with('.')) {
        text.pop_back();
    }
    return text;
}

std::string Upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::toupper(letter); });
    return text;
}

// "-y, --overwrite" or "--size WIDTHxHEIGHT".
std::string Term(const CLI::Option& option) {
    std::string term;
    for (const std::string& name : option.get_snames()) {
        term += Bold("-" + name) + ", ";
    }
    for (const std::string& name : option.get_lnames()) {
        term += Bold("--" + name) + ", ";
    }
    term.resize(term.size() - 2);
    return option.get_items_expected_max() == 0 ? term : term + " " + Italic(option.get_type_name());
}

std::string Meaning(const CLI::Option& option) {
    const std::string usual = option.get_default_str();
    return Filled(option.get_description() + (usual.empty() ? "" : " [" + usual + "]"));
}

std::string OptionList(const CLI::App& command) {
    std::string list;
    std::string group = "Options";
    for (const std::string& next : command.get_groups()) {
        for (const CLI::Option* const option : ShownOptions(command, false)) {
            if (option->get_group() != next) {
                continue;
            }
            if (group != next) {
                group = next;
                list += fmt::format(".SS {}\n", group);
            }
            list += fmt::format(".TP\n{}\n{}", Term(*option), Meaning(*option));
        }
    }
    return list;
}

std::string Synopsis(const CLI::App& command, const std::string& call) {
    std::string line = Bold(call) + " [" + Italic("OPTIONS") + "]";
    if (!ShownCommands(command).empty()) {
        return line + " " + Italic("COMMAND") + " ...";
    }
    for (const CLI::Option* const option : ShownOptions(command, true)) {
        const std::string name = Italic(option->get_name(true)) + (option->get_expected_max() > 1 ? " ..." : "");
        line += option->get_required() ? " " + name : " [" + name + "]";
    }
    return line;
}

std::string Positionals(const CLI::App& command) {
    std::string list;
    for (const CLI::Option* const option : ShownOptions(command, true)) {
        list += fmt::format(".TP\n{}\n{}", Italic(option->get_name(true)),
                            Filled(WithoutPoint(option->get_description()) + "."));
    }
    return list;
}

std::string CommandList(const CLI::App& program) {
    std::string list;
    for (const CLI::App* const command : ShownCommands(program)) {
        list += fmt::format(".TP\n{}(1)\n{}", Bold(program.get_name() + "-" + command->get_name()),
                            Filled(command->get_description() + "."));
    }
    return list.empty() ? "" : ".SH COMMANDS\n" + list;
}

std::string SeeAlso(const std::vector<std::string>& names) {
    std::string text = ".SH SEE ALSO\n";
    for (const std::string& name : names) {
        text += fmt::format("{}(1){}\n", Bold(name), &name == &names.back() ? "" : ",");
    }
    return text;
}

Page MakePage(const CLI::App& command, const std::string& call, const Edition& edition,
              const std::vector<std::string>& related) {
    std::string name = call;
    std::ranges::replace(name, ' ', '-');
    const std::string description = WithoutPoint(command.get_description());
    // Sections that the help text begins come after the options.
    const std::string help = FromHelp(command.get_footer());
    const std::size_t sections = std::min(help.find(".SH "), help.size());
    std::string source = fmt::format(".TH {} 1 {} \"Bars and Tone {}\" \"User Commands\"\n", Escaped(Upper(name)),
                                     edition.date, edition.version);
    source += fmt::format(".SH NAME\n{} \\- {}\n", Escaped(name), Escaped(LowerFirst(description)));
    source += fmt::format(".SH SYNOPSIS\n{}\n", Synopsis(command, call));
    source += fmt::format(".SH DESCRIPTION\n{}", Filled(description + "."));
    source += Positionals(command);
    source += CommandList(command);
    source += ".SH OPTIONS\n" + OptionList(command);
    if (sections > 0) {
        source += ".SH NOTES\n" + help.substr(0, sections);
    }
    source += help.substr(sections);
    source += SeeAlso(related);
    return {name, source};
}

}  // namespace

std::vector<Page> ManualPages(const CLI::App& program, const Edition& edition,
                              const std::vector<std::string>& related) {
    std::vector<Page> pages;
    std::vector<std::string> all = related;
    for (const CLI::App* const command : ShownCommands(program)) {
        const std::string call = program.get_name() + " " + command->get_name();
        pages.push_back(MakePage(*command, call, edition, {program.get_name()}));
        all.push_back(pages.back().name);
    }
    std::ranges::sort(all);
    pages.push_back(MakePage(program, program.get_name(), edition, all));
    return pages;
}

}  // namespace manual
