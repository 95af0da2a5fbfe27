#include "ConfigurationSet.h"

#include <gtest/gtest.h>

#include <string>

#include "../support/TemporaryDirectory.h"
#include "TraceRecords.h"
#include "WebInterface.h"

// The front end isn't linked: these stand in for its part of the class.
WebInterface::WebInterface() = default;
WebInterface::~WebInterface() = default;
const char* WebInterface::getInputBuffer() {
    return inputBuffer;
}
unsigned long WebInterface::getInputBufferLength() const {
    return inputBufferLength;
}
ConfigurationSet* WebInterface::getConfigurationSet() const {
    return configurationSet;
}

namespace {

// A transport that has a request body and does nothing else.
class Request : public WebInterface {
public:
    explicit Request(const char* body) : body_(body != nullptr ? body : "") {
        if (body != nullptr) {
            inputBuffer = body_.data();
            inputBufferLength = body_.size() + 1;
        }
    }
    char* InterfaceType() override { return nullptr; }
    long write_header(const char* /*name*/, const char* /*value*/) override { return 1; }
    long write_text(const char* /*text*/, long /*length*/) override { return 1; }
    long write_text(const int /*number*/) override { return 1; }
    long CacheContext(Cache* /*cache*/, const char* /*unused*/) override { return 1; }
    long LogError(const char* /*text*/) override { return 1; }

private:
    std::string body_;
};

}  // namespace

TEST(ConfigurationSet, AnswersFromTheStrongestSource) {
    const TemporaryDirectory directory;
    setVariable("PATH", "");
    writeFile("dnz.ini", "NZIGwQueueManager QM\nNZIGwQueue Q.DEFAULT\nNZIGwContext All\n");
    writeFile("own.ini", "NZIGwQueue Q.OWN\nNZIGwReplyQueue #none\n");
    struct {
        const char* body;
        const char* name;
        const char* value;  // "-" for a pair without a value, null for no pair
    } const cases[] = {
        {"NZIGwQueue=Q.FORM&NZIGwIniFile=own.ini", "NZIGwQueue", "Q.FORM"},
        {"NZIGwQueue=&NZIGwIniFile=own.ini", "NZIGwQueue", "Q.OWN"},
        {"NZIGwQueue=", "NZIGwQueue", "Q.DEFAULT"},
        {"NZIGwIniFile=missing.ini", "NZIGwQueue", "Q.DEFAULT"},
        {"NZIGwIniFile=", "NZIGwQueue", "Q.DEFAULT"},
        {"NZIGwIniFile=%00", "NZIGwQueue", "Q.DEFAULT"},
        {"NZIGwQueueManager=", "NZIGwQueueManager", "-"},
        {"a=b", "NZIGwQueueManager", "QM"},
        {"NZIGwIniFile=own.ini", "NZIGwReplyQueue", nullptr},
        {"NZIGwIniFile=own.ini", "NZIGwContext", "All"},
        {"", "NZIGwWaitInterval", nullptr},
        {nullptr, "NZIGwQueue", nullptr},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.body != nullptr ? row.body : "no body");
        Request request(row.body);
        ConfigurationSet set(&request);
        const ConfigurationPart* const part = set.findPart(row.name);
        ASSERT_EQ(part == nullptr, row.value == nullptr);
        if (part != nullptr) {
            EXPECT_STREQ(part->getValue() != nullptr ? part->getValue() : "-", row.value);
        }
    }
}

TEST(ConfigurationSet, IsEmptyWithoutARequestAndNeverEqual) {
    ConfigurationSet set;
    ConfigurationSet copy(set);
    EXPECT_EQ(copy.findPart("NZIGwQueueManager"), nullptr);
    NameValuePair nameless;
    EXPECT_EQ(copy.validValue(&nameless), 0);
    takeTraceRecords();
    copy = set;
    EXPECT_EQ(copy == set, 0);
    EXPECT_EQ(copy != set, 1);
    EXPECT_EQ(takeTraceRecords(),
              (std::vector<std::string>{"{ConfigSet::operator=", "}ConfigSet::operator= 0",
                                        "{ConfigSet::operator==", "}ConfigSet::operator== 0",
                                        "{ConfigSet::operator!=", "}ConfigSet::operator!= 1"}));
}
