// Presets share build folders: what one of them leaves unsaid, the one before it decides.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <map>
#include <set>
#include <string>

namespace {

using nlohmann::json;

// "option(LINEUP_TESTS ..." and "set(LINEUP_SANITIZERS ... CACHE ..." name the options.
std::set<std::string> OptionsOfTheBuild() {
    std::set<std::string> options;
    std::ifstream file(TEST_SOURCE_DIR "/CMakeLists.txt");
    for (std::string line; std::getline(file, line);) {
        const bool isCached = line.starts_with("set(LINEUP_") && line.find(" CACHE ") != std::string::npos;
        if (isCached || line.starts_with("option(LINEUP_")) {
            const std::size_t begin = line.find('(') + 1;
            options.insert(line.substr(begin, line.find(' ') - begin));
        }
    }
    return options;
}

class Presets : public testing::Test {
protected:
    void SetUp() override {
        const json document = json::parse(std::ifstream(TEST_SOURCE_DIR "/CMakePresets.json"));
        for (const json& preset : document.at("configurePresets")) {
            mPresets[preset.at("name")] = preset;
        }
    }

    // The names of what a preset and those that it inherits from set.
    [[nodiscard]] std::set<std::string> SaidBy(const std::string& name) const {
        const json& preset = mPresets.at(name);
        std::set<std::string> said;
        if (preset.contains("inherits")) {
            said = SaidBy(preset["inherits"]);
        }
        if (const auto variables = preset.find("cacheVariables"); variables != preset.end()) {
            for (const auto& [variable, value] : variables->items()) {
                said.insert(variable);
            }
        }
        return said;
    }

    std::map<std::string, json> mPresets;
};

TEST_F(Presets, SayEveryOptionOfTheBuild) {
    const std::set<std::string> options = OptionsOfTheBuild();
    ASSERT_THAT(options, testing::IsSupersetOf({"LINEUP_TESTS", "LINEUP_UNIT_SOURCES", "LINEUP_SANITIZERS"}));
    ASSERT_TRUE(mPresets.contains("release-tests"));
    for (const auto& [name, preset] : mPresets) {
        EXPECT_THAT(SaidBy(name), testing::IsSupersetOf(options)) << "the preset " << name;
    }
}

}  // namespace
