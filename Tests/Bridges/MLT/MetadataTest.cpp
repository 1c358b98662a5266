#include "Bridges/MLT/ModulePlace.h"
#include "Bridges/MLT/Properties.h"
#include "Tests/Bridges/MLT/Framework.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <yaml-cpp/yaml.h>

namespace {

const YAML::Node& Metadata() {
    static const YAML::Node node = YAML::LoadFile(TEST_SOURCE_DIR "/Bridges/MLT/producer_barsandtone.yml");
    return node;
}

YAML::Node Parameter(const std::string& name) {
    for (const YAML::Node& parameter : Metadata()["parameters"]) {
        if (parameter["identifier"].as<std::string>() == name) {
            return parameter;
        }
    }
    ADD_FAILURE() << "there is no parameter " << name;
    return {};
}

// The keys of a map of the framework's schema, with what it allows for each.
using Schema = std::map<std::string, YAML::Node>;

Schema SchemaOf(const YAML::Node& mapping) {
    Schema schema;
    for (const auto& entry : mapping) {
        schema[entry.first.as<std::string>()] = entry.second;
    }
    return schema;
}

void ExpectFollows(const YAML::Node& map, const Schema& schema) {
    for (const auto& entry : map) {
        const auto key = entry.first.as<std::string>();
        const auto rule = schema.find(key);
        ASSERT_NE(rule, schema.end()) << "the framework knows no " << key;
        if (const YAML::Node choices = rule->second["enum"]) {
            std::set<std::string> names;
            for (const auto& choice : choices) {
                names.insert(choice.as<std::string>());
            }
            EXPECT_EQ(names.count(entry.second.as<std::string>()), 1U) << key << ": " << entry.second;
        }
    }
    for (const auto& [key, rule] : schema) {
        if (rule["required"] && rule["required"].as<std::string>() == "yes") {
            EXPECT_TRUE(map[key]) << key << " is missing";
        }
    }
}

TEST(Metadata, FollowsTheFrameworksSchema) {
    const YAML::Node schema = YAML::LoadFile(TEST_MLT_DATA "/metaschema.yaml");
    ExpectFollows(Metadata(), SchemaOf(schema["mapping"]));
    const Schema parameter = SchemaOf(schema["mapping"]["parameters"]["sequence"][0]["mapping"]);
    for (const YAML::Node& node : Metadata()["parameters"]) {
        ExpectFollows(node, parameter);
    }
}

TEST(Metadata, NamesTheProducer) {
    EXPECT_EQ(Metadata()["identifier"].as<std::string>(), "barsandtone");
    EXPECT_EQ(Metadata()["type"].as<std::string>(), "producer");
}

TEST(Metadata, GivesTheRangesThatTheProducerHas) {
    for (const bridge::NumberProperty& property : {bridge::kFrequency, bridge::kLevel}) {
        const YAML::Node node = Parameter(property.name);
        EXPECT_EQ(node["type"].as<std::string>(), "float");
        EXPECT_EQ(node["minimum"].as<double>(), property.lowest);
        EXPECT_EQ(node["maximum"].as<double>(), property.highest);
        EXPECT_EQ(node["default"].as<double>(), property.fallback);
        EXPECT_EQ(node["unit"].as<std::string>(), property.unit);
    }
}

TEST(Metadata, GivesTheNamesThatTheProducerKnows) {
    for (const auto* const property : {&bridge::CardProperty(), &bridge::MatrixProperty(), &bridge::DepthProperty(),
                                       &bridge::SoundProperty(), &bridge::ChannelsProperty()}) {
        const YAML::Node node = Parameter(property->name);
        const auto names = node["values"].as<std::vector<std::string>>();
        EXPECT_EQ(names, std::vector<std::string>(property->names.begin(), property->names.end()));
        EXPECT_EQ(node["default"].as<std::string>(), property->names.front());
    }
}

TEST(Metadata, DescribesEveryPropertyAndNothingElse) {
    std::set<std::string> names;
    for (const YAML::Node& node : Metadata()["parameters"]) {
        names.insert(node["identifier"].as<std::string>());
        for (const char* const key : {"title", "type", "description", "default"}) {
            EXPECT_TRUE(node[key]) << node["identifier"] << " has no " << key;
        }
    }
    EXPECT_EQ(names, (std::set<std::string>{"resource", "card", "matrix", "depth", "sound", "frequency", "level",
                                            "channels"}));
}

TEST(Metadata, ReachesTheFramework) {
    const mlt_properties metadata =
        mlt_repository_metadata(test::Repository(), mlt_service_producer_type, "barsandtone");
    ASSERT_NE(metadata, nullptr);
    EXPECT_STREQ(mlt_properties_get(metadata, "title"), "Bars and Tone");
    const auto parameters = static_cast<mlt_properties>(mlt_properties_get_data(metadata, "parameters", nullptr));
    EXPECT_EQ(mlt_properties_count(parameters), 8);
}

}  // namespace
