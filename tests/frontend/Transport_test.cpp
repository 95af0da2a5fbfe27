#include <gtest/gtest.h>

#include <cstring>

#include "CGIInterface.h"
#include "Cache.h"
#include "ContextName.h"
#include "Request.h"
#include "ThreadObjectSet.h"

namespace {

std::string outputOf(void (*write)(WebInterface&)) {
    Request request("a=b");
    CGIInterface transport;
    testing::internal::CaptureStdout();
    write(transport);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

class CollectingCache : public Cache {
public:
    void write(const char* text, long length) override {
        text_.append(text, static_cast<std::size_t>(length));
    }
    std::string text_;
};

}  // namespace

TEST(Transport, EndsTheHeaderSectionWithTheFirstText) {
    EXPECT_EQ(outputOf([](WebInterface& web) {
                  web.write_header("Content-type", " text/html");
                  web.write_text("", 0);
                  web.write_text("abcdef", 3);
                  web.write_text("x\0y", 3);
                  web.write_text(-7);
              }),
              std::string("Content-type: text/html\n\nabcx\0y-7", 33));
    EXPECT_EQ(outputOf([](WebInterface& web) { web.write_text(5); }), "\n5");
}

TEST(Transport, ReadsTheBodyOnce) {
    Request request("a=b&c");
    CGIInterface transport;
    const char* body = transport.getInputBuffer();
    EXPECT_STREQ(body, "a=b&c");
    EXPECT_EQ(transport.getInputBufferLength(), 6U);
    EXPECT_EQ(transport.getInputBuffer(), body);
    EXPECT_NE(transport.getConfigurationSet(), nullptr);
    EXPECT_STREQ(transport.InterfaceType(), "CGI");
    EXPECT_EQ(WebInterface::Instance(), &transport);
}

TEST(Transport, TakesHalfABodyForNone) {
    for (const char* length : {"6", "-1", "0", "five", "", "99999999999"}) {
        Request request("a=b&c");
        setVariable("CONTENT_LENGTH", length);
        testing::internal::CaptureStderr();
        CGIInterface transport;
        EXPECT_EQ(transport.getInputBuffer(), nullptr) << length;
        EXPECT_EQ(transport.getInputBufferLength(), 0U) << length;
        const std::string log = testing::internal::GetCapturedStderr();
        const bool isShort = std::atol(length) > 5;
        EXPECT_EQ(log.find("but only 5 bytes came\n") != std::string::npos, isShort);
        EXPECT_EQ(log.find("CONTENT_LENGTH is zero") == std::string::npos, isShort);
    }
}

TEST(Transport, CopiesTheContextEncoded) {
    Request request("a=b");
    CGIInterface transport;
    std::string expected;
    for (const char* name : ContextName) {
        setVariable(name, nullptr);
        expected += std::string("&") + name + "=";
        if (std::strcmp(name, "HTTP_HOST") == 0) {
            setVariable(name, "a b:8\xE9");
            expected += "a+b%3A8%E9";
        }
    }
    CollectingCache cache;
    EXPECT_EQ(transport.CacheContext(&cache, nullptr), 1);
    EXPECT_EQ(cache.text_, expected);
    setVariable("HTTP_HOST", nullptr);
}

TEST(ThreadObjects, LieInTheSlotOfTheirThread) {
    ThreadObjectSet& set = *ThreadObjectSet::Instance();
    EXPECT_EQ(ThreadObjectSet::Instance(), &set);
    int first = 0;
    int second = 0;
    set.add(&first);
    EXPECT_EQ(set.query(), &first);
    set.add(&second);
    EXPECT_EQ(set.query(), &second);
    set.remove();
    EXPECT_EQ(set.query(), nullptr);
}
