#include "ConfigurationSet.h"

#include <gtest/gtest.h>

#include "CGIInterface.h"
#include "Request.h"

namespace {

// The setting's value, "(none)" for a setting with none, "(absent)" for no setting.
std::string settingOf(ConfigurationSet& settings, const char* name) {
    const ConfigurationPart* part = settings.findPart(name);
    if (part == nullptr) {
        return "(absent)";
    }
    return part->getValue() != nullptr ? part->getValue() : "(none)";
}

}  // namespace

TEST(ConfigurationSet, SearchesTheStrongestSourceFirst) {
    TemporaryDirectory directory;
    const std::string otherIni = directory.path() + "/other.ini";
    writeFile("other.ini", "b request\nc request\nNZIGwQueueManager QM2\n");
    const std::string defaultIni = "b default\nc default\nd default\nNZIGwQueueManager QM1\n";
    struct {
        std::string body;
        const char* name;
        const char* value;
    } const cases[] = {
        {"a=form&b=form", "a", "form"},
        {"a=form&b=form", "b", "form"},
        {"b=&NZIGwIniFile=" + otherIni, "b", "request"},
        {"b=", "b", "default"},
        {"NZIGwIniFile=" + otherIni, "c", "request"},
        {"NZIGwIniFile=" + otherIni, "d", "default"},
        {"NZIGwIniFile=", "c", "default"},
        {"NZIGwQueueManager=", "NZIGwQueueManager", "(none)"},
        {"NZIGwIniFile=" + otherIni, "NZIGwQueueManager", "QM2"},
        {"x=y", "e", "(absent)"},
    };
    for (const auto& row : cases) {
        Request request(row.body);
        writeFile("dnz.ini", defaultIni);
        CGIInterface transport;
        EXPECT_EQ(settingOf(*transport.getConfigurationSet(), row.name), row.value)
            << row.body << " " << row.name;
    }
}

TEST(ConfigurationSet, IsEmptyWithoutABody) {
    Request request("");
    writeFile("dnz.ini", "b default\n");
    CGIInterface transport;
    EXPECT_EQ(settingOf(*transport.getConfigurationSet(), "b"), "(absent)");
}

TEST(ConfigurationSet, CopiesTakeNothingAndAreNeverEqual) {
    Request request("b=form");
    CGIInterface transport;
    const ConfigurationSet& settings = *transport.getConfigurationSet();
    ConfigurationSet copy(settings);
    copy = settings;
    EXPECT_EQ(settingOf(copy, "b"), "(absent)");
    EXPECT_FALSE(copy == settings || copy == ConfigurationSet());
    EXPECT_TRUE(copy != settings);
}
