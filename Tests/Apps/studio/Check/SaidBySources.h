#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// The texts that sources put together: every literal of words and every call of fmt::format, in each of its wordings,
/// with kValue for what is known at run time alone. An alternative of words (`isOne ? "is" : "are"`) and a function
/// that returns text are followed.
class SaidBySources {
public:
    static constexpr const char* kValue = "1234";

    struct Text {
        std::string file;
        std::string text;
    };

    /// A source, as its file's name and what stands in it.
    void Add(const std::string& file, const std::string& source);

    /// All of them, without texts that hold no words.
    [[nodiscard]] std::vector<Text> Texts();

private:
    struct Function {
        std::string file;
        std::string body;
    };

    [[nodiscard]] std::vector<std::string> Expand(std::string_view code);
    [[nodiscard]] std::vector<std::string> Format(std::string_view arguments);
    [[nodiscard]] std::vector<std::string> Returned(const std::string& name);
    [[nodiscard]] std::vector<std::string> Held(const std::string& name);
    void TakeRoots(const std::string& file, std::string_view code, std::vector<Text>& texts);

    std::map<std::string, std::string> mSources;   // without comments and the functions that return text
    std::map<std::string, Function> mFunctions;    // those, by name
    std::set<std::string, std::less<>> mFollowed;  // whose texts are part of others
    bool mIsOne = true;                            // what is counted is one
    std::string mScope;                            // the code that is being read
};

}  // namespace test
