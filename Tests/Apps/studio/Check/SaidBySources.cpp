#include "Tests/Apps/studio/Check/SaidBySources.h"

#include <algorithm>
#include <cctype>
#include <regex>
#include <utility>

namespace test {

namespace {

constexpr std::string_view kFormat = "fmt::format(";
constexpr std::string_view kSentence = "Sentence(";

std::string_view Trimmed(std::string_view code) {
    constexpr std::string_view kSpace = " \n\t";
    const std::size_t first = code.find_first_not_of(kSpace);
    return first == std::string_view::npos ? "" : code.substr(first, code.find_last_not_of(kSpace) - first + 1);
}

// Where the literal of a text or a character that begins at `at` ends.
std::size_t EndOfLiteral(std::string_view code, std::size_t at) {
    const char quote = code[at];
    for (++at; at < code.size() && code[at] != quote; ++at) {
        at += code[at] == '\\' ? 1U : 0U;
    }
    return std::min(code.size(), at + 1);
}

bool BeginsLiteral(std::string_view code, std::size_t at) {
    const bool isDigitMark = code[at] == '\'' && at > 0 && std::isdigit(static_cast<unsigned char>(code[at - 1])) != 0;
    return (code[at] == '"' || code[at] == '\'') && !isDigitMark;
}

// Calls `take(place)` for each place outside of literals; it ends where that says so.
template <class Take>
void ForEachPlace(std::string_view code, std::size_t from, const Take& take) {
    for (std::size_t at = from; at < code.size();) {
        if (BeginsLiteral(code, at)) {
            at = EndOfLiteral(code, at);
        } else if (take(at)) {
            ++at;
        } else {
            return;
        }
    }
}

std::string WithoutComments(std::string_view source) {
    std::string code;
    for (std::size_t at = 0; at < source.size();) {
        if (source.substr(at, 2) == "//") {
            at = std::min(source.find('\n', at), source.size());
            continue;
        }
        const std::size_t end = BeginsLiteral(source, at) ? EndOfLiteral(source, at) : at + 1;
        code += source.substr(at, end - at);
        at = end;
    }
    return code;
}

// What stands between the bracket before `from` and the one that closes it.
std::string_view Within(std::string_view code, std::size_t from) {
    int depth = 1;
    std::size_t end = code.size();
    ForEachPlace(code, from, [&](std::size_t at) {
        depth += std::string_view("([{").find(code[at]) != std::string_view::npos ? 1 : 0;
        depth -= std::string_view(")]}").find(code[at]) != std::string_view::npos ? 1 : 0;
        end = depth == 0 ? at : end;
        return depth > 0;
    });
    return code.substr(from, end - from);
}

// The parts of `code` between the marks that stand outside of brackets and literals.
std::vector<std::string_view> Split(std::string_view code, char mark) {
    std::vector<std::string_view> parts;
    int depth = 0;
    std::size_t begin = 0;
    ForEachPlace(code, 0, [&](std::size_t at) {
        depth += std::string_view("([{").find(code[at]) != std::string_view::npos ? 1 : 0;
        depth -= std::string_view(")]}").find(code[at]) != std::string_view::npos ? 1 : 0;
        const bool isScope = mark == ':' && (code.substr(at, 2) == "::" || (at > 0 && code[at - 1] == ':'));
        if (depth == 0 && code[at] == mark && !isScope) {
            parts.push_back(Trimmed(code.substr(begin, at - begin)));
            begin = at + 1;
        }
        return true;
    });
    parts.push_back(Trimmed(code.substr(begin)));
    return parts;
}

// Adjacent literals of text; `rest` is what follows them.
std::string Literals(std::string_view code, std::string_view& rest) {
    std::string text;
    while (!code.empty() && code.front() == '"') {
        const std::size_t end = EndOfLiteral(code, 0);
        text += code.substr(1, end - 2);
        code = Trimmed(code.substr(end));
    }
    rest = code;
    return text;
}

bool HasLetters(const std::string& text) {
    return std::ranges::any_of(text, [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; });
}

bool HasWords(const std::string& text) {
    static const std::regex kWords("[A-Za-z]{2,}.* |[a-z] [A-Za-z]{2,}");
    return std::regex_search(text, kWords);
}

std::vector<std::string> Joined(const std::vector<std::string>& some, const std::vector<std::string>& others) {
    std::vector<std::string> all;
    for (const std::string& one : some) {
        for (const std::string& other : others) {
            all.push_back(one + other);
        }
    }
    return all;
}

}  // namespace

void SaidBySources::Add(const std::string& file, const std::string& source) {
    static const std::regex kFunction(
        R"(\n(?:std::string|std::string_view|const char\*) (?:\w+::)?(\w+)\(([^;{}]|\{\})*\)(?: const)? \{\n)");
    std::string code = WithoutComments(source);
    for (std::smatch match; std::regex_search(code, match, kFunction);) {
        const auto begin = static_cast<std::size_t>(match.position() + match.length());
        const std::string body(Within(code, begin));
        mFunctions[match[1]] = {file, body};
        code.erase(static_cast<std::size_t>(match.position()),
                   begin + body.size() + 1 - static_cast<std::size_t>(match.position()));
    }
    mSources[file] = code;
}

std::vector<std::string> SaidBySources::Format(std::string_view arguments) {
    static const std::regex kPlace(R"(\{[^{}]*\})");
    const auto parts = Split(arguments, ',');
    std::vector<std::string> texts{""};
    std::string_view rest;
    const std::string shape = Literals(parts.front(), rest);
    std::size_t argument = 0;
    auto copied = shape.begin();
    for (std::sregex_iterator place(shape.begin(), shape.end(), kPlace), end; place != end; ++place) {
        const std::string before(copied, shape.begin() + place->position());
        ++argument;
        texts = Joined(Joined(texts, {before}),
                       argument < parts.size() ? Expand(parts[argument]) : std::vector<std::string>{kValue});
        copied = shape.begin() + place->position() + place->length();
    }
    return Joined(texts, {std::string(copied, shape.end())});
}

std::vector<std::string> SaidBySources::Returned(const std::string& name) {
    mFollowed.insert(name);
    const std::string& body = mFunctions[name].body;
    const std::string outer = std::exchange(mScope, body);
    std::vector<std::string> texts;
    for (std::size_t at = body.find("return "); at != std::string::npos; at = body.find("return ", at + 1)) {
        const std::string_view expression = Split(std::string_view(body).substr(at + 7), ';').front();
        std::ranges::copy(Expand(expression), std::back_inserter(texts));
    }
    mScope = outer;
    std::erase(texts, kValue);
    return std::ranges::any_of(texts, HasLetters) ? texts : std::vector<std::string>{kValue};
}

// What a constant of the code that is being read holds.
std::vector<std::string> SaidBySources::Held(const std::string& name) {
    const std::regex declared("const (char\\* const|std::string|std::string_view) " + name + " = ");
    const std::string scope = mScope;
    std::smatch match;
    if (!std::regex_search(scope, match, declared)) {
        return {kValue};
    }
    return Expand(
        Split(std::string_view(scope).substr(static_cast<std::size_t>(match.position() + match.length())), ';')
            .front());
}

std::vector<std::string> SaidBySources::Expand(std::string_view code) {
    static const std::regex kCall(R"(^(?:\w+::)*(\w+)\()");
    code = Trimmed(code);
    if (const auto choice = Split(code, '?'); choice.size() > 1) {
        const std::string_view answers = code.substr(static_cast<std::size_t>(choice[1].data() - code.data()));
        const auto ways = Split(answers, ':');  // of one choice within another, the last two are the inner one's
        std::vector<std::string> texts;
        if (choice[0].ends_with("== 1") && ways.size() == 2) {
            return Expand(ways[mIsOne ? 0 : 1]);
        }
        for (const std::string_view way : ways) {
            std::ranges::copy(Expand(Split(way, '?').back()), std::back_inserter(texts));
        }
        return texts;
    }
    const auto isText = [](std::string_view term) { return term.starts_with('"'); };
    if (const auto terms = Split(code, '+'); terms.size() > 1 && std::ranges::any_of(terms, isText)) {
        std::vector<std::string> texts{""};
        for (const std::string_view term : terms) {
            texts = Joined(texts, Expand(term));
        }
        return texts;
    }
    std::string_view rest;
    if (const std::string text = Literals(code, rest); code.starts_with('"')) {
        return {text};
    }
    std::cmatch call;
    const std::string copy(code);
    if (code.empty() || code == "{}" || code == "std::string()") {
        return {""};
    }
    if (std::ranges::all_of(code, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; })) {
        return Held(copy);
    }
    if (!std::regex_search(copy.c_str(), call, kCall) || !copy.ends_with(')')) {
        return {kValue};
    }
    const std::string_view arguments = Within(code, static_cast<std::size_t>(call.length()));
    if (code.starts_with(kFormat)) {
        return Format(arguments);
    }
    if (code.starts_with("std::string(")) {
        return Expand(arguments);
    }
    if (code.starts_with(kSentence)) {
        std::vector<std::string> sentences = Expand(arguments);
        for (std::string& sentence : sentences) {
            sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
            sentence += '.';
        }
        return sentences;
    }
    return mFunctions.contains(call[1]) ? Returned(call[1]) : std::vector<std::string>{kValue};
}

void SaidBySources::TakeRoots(const std::string& file, std::string_view code, std::vector<Text>& texts) {
    mScope = code;
    for (std::size_t at = 0; at < code.size(); ++at) {
        std::string_view expression;
        if (code[at] == '"') {
            std::string_view rest;
            static_cast<void>(Literals(code.substr(at), rest));
            expression = code.substr(at, static_cast<std::size_t>(rest.data() - code.data()) - at);
        } else if (BeginsLiteral(code, at)) {
            at = EndOfLiteral(code, at) - 1;
            continue;
        } else {
            for (const std::string_view call : {kFormat, kSentence}) {
                if (code.substr(at).starts_with(call)) {
                    expression = code.substr(at, call.size() + Within(code, at + call.size()).size() + 1);
                }
            }
        }
        if (expression.empty()) {
            continue;
        }
        for (const bool isOne : {true, false}) {
            mIsOne = isOne;
            for (const std::string& text : Expand(expression)) {
                if (HasWords(text)) {
                    texts.push_back({file, text.ends_with(": ") ? text + kValue : text});
                }
            }
        }
        at += expression.size() - 1;
    }
}

std::vector<SaidBySources::Text> SaidBySources::Texts() {
    std::vector<Text> texts;
    for (const auto& [file, code] : mSources) {
        TakeRoots(file, code, texts);
    }
    for (const auto& [name, function] : mFunctions) {
        if (!mFollowed.contains(name)) {
            TakeRoots(function.file, function.body, texts);
        }
    }
    return texts;
}

}  // namespace test
