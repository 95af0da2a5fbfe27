#include "NameValuePairSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "NameValuePair.h"

namespace {

using Names = std::vector<std::string>;

// Counts the comparisons that sets make.
class CountedPair : public NameValuePair {
public:
    using NameValuePair::compare;
    using NameValuePair::NameValuePair;
    int compare(const NameValuePair* other) const override {
        ++comparisons;
        return NameValuePair::compare(other);
    }
    static inline int comparisons = 0;
};

Names walk(NameValuePairSet& set) {
    Names names;
    for (const NameValuePair* pair = set.getFirst(); pair != nullptr; pair = set.getNext()) {
        names.emplace_back(pair->getName());
    }
    return names;
}

}  // namespace

TEST(NameValuePairSet, WalksInNameOrderWithOneCursor) {
    NameValuePair a("a", "");
    NameValuePair b("b", "");
    NameValuePairSet set;
    EXPECT_EQ(set.find("a"), nullptr);
    EXPECT_EQ(set.getNext(), nullptr);
    EXPECT_EQ(set.getFirst(), nullptr);
    EXPECT_EQ(set.push(&b) + set.push(&a), 2U);
    EXPECT_EQ(walk(set), (Names{"a", "b"}));
    // The end of a walk leaves the cursor at the first slot.
    EXPECT_EQ(set.getNext(), &b);
    NameValuePairSet copy(set);
    EXPECT_EQ(copy.getNext(), nullptr);
}

TEST(NameValuePairSet, KeepsPairsOfOneNameTogether) {
    NameValuePair first("xx", "1");
    NameValuePair other("y", "");
    NameValuePair second("xx", "2");
    NameValuePairSet set;
    for (NameValuePair* pair : {&first, &other, &second}) {
        set.push(pair);
    }
    EXPECT_EQ(walk(set), (Names{"xx", "xx", "y"}));
    for (const char* name : {"", "x", "xxx", "XX"}) {
        EXPECT_EQ(set.find(name), nullptr) << name;
    }
    // A pair is taken out by its address.
    EXPECT_EQ(set.pull(&first), 1U);
    EXPECT_EQ(set.pull(&first), 0U);
    EXPECT_EQ(set.find("xx"), &second);
    EXPECT_EQ(set.pull(&other) + set.pull(&second), 2U);
    EXPECT_EQ(set.getFirst(), nullptr);
}

TEST(NameValuePairSet, GrowsWithoutLossAtTheCostOfABinarySearch) {
    constexpr int kCount = 1000;
    constexpr int kLogarithm = 10;  // of 1000, to base 2, rounded up
    std::deque<CountedPair> pairs;
    NameValuePairSet set;
    CountedPair::comparisons = 0;
    for (int i = 0; i < kCount; ++i) {
        set.push(&pairs.emplace_back(std::to_string(i * 7919 % kCount).c_str(), ""));
    }
    EXPECT_LE(CountedPair::comparisons, kCount * kLogarithm);
    const Names names = walk(set);
    EXPECT_EQ(names.size(), pairs.size());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));

    NameValuePairSet copy;
    copy = set;
    EXPECT_EQ(set.pull(&pairs.front()), 1U);
    set.push(&pairs.front());
    EXPECT_EQ(walk(set), names);
    testing::internal::CaptureStdout();
    copy.dump();
    EXPECT_TRUE(testing::internal::GetCapturedStdout().starts_with(
        "NameValuePairSet-------------Start\nNumberInSet<1000>\nMaxNumberInSet<1024>\n"
        "HalfLife<2>\noIndexOfPairs[0]\nName<0"));
}
