#include "NameValuePairSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "NameValuePair.h"
#include "TraceRecords.h"

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

TEST(NameValuePairSet, IsEmptyAtFirst) {
    NameValuePairSet set;
    EXPECT_EQ(set.find("a"), nullptr);
    EXPECT_EQ(set.getNext(), nullptr);
    EXPECT_EQ(set.getFirst(), nullptr);
    EXPECT_EQ(set == set, 0);
    EXPECT_EQ(set != set, 1);
}

TEST(NameValuePairSet, WalksInNameOrderWithOneCursor) {
    NameValuePair a("a", "");
    NameValuePair b("b", "");
    NameValuePairSet set;
    EXPECT_EQ(set.push(&b), 1U);
    EXPECT_EQ(set.push(&a), 1U);
    EXPECT_EQ(walk(set), (Names{"a", "b"}));
    // The end of a walk leaves the cursor at the first slot.
    EXPECT_EQ(set.getNext(), &b);
    NameValuePairSet copy(set);
    EXPECT_EQ(copy.getNext(), nullptr);
    EXPECT_EQ(set.getFirst(), &a);
}

TEST(NameValuePairSet, FindsExactNamesOnly) {
    NameValuePair pair("abc", "");
    NameValuePairSet set;
    set.push(&pair);
    EXPECT_EQ(set.find("abc"), &pair);
    for (const char* name : {"ab", "abcd", "ABC", ""}) {
        EXPECT_EQ(set.find(name), nullptr) << name;
    }
}

TEST(NameValuePairSet, KeepsPairsOfOneNameTogether) {
    NameValuePair first("x", "1");
    NameValuePair other("y", "");
    NameValuePair second("x", "2");
    NameValuePairSet set;
    for (NameValuePair* pair : {&first, &other, &second}) {
        set.push(pair);
    }
    EXPECT_EQ(walk(set), (Names{"x", "x", "y"}));
    EXPECT_STREQ(set.find("x")->getName(), "x");
    // A pair is taken out by its address.
    EXPECT_EQ(set.pull(&first), 1U);
    EXPECT_EQ(set.pull(&first), 0U);
    EXPECT_EQ(set.find("x"), &second);
    EXPECT_EQ(walk(set), (Names{"x", "y"}));
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
        const std::string name = std::to_string(i * 7919 % kCount);
        set.push(&pairs.emplace_back(name.c_str(), ""));
    }
    EXPECT_LE(CountedPair::comparisons, kCount * kLogarithm);

    const Names names = walk(set);
    EXPECT_EQ(names.size(), pairs.size());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_STREQ(set.find("999")->getName(), "999");
    set.pull(&pairs.front());
    EXPECT_EQ(walk(set).size(), pairs.size() - 1);

    NameValuePairSet copy;
    copy = set;
    copy.push(&pairs.front());
    EXPECT_EQ(walk(copy), names);
    testing::internal::CaptureStdout();
    copy.dump();
    const std::string dump = printed();
    EXPECT_TRUE(
        dump.starts_with("NameValuePairSet-------------Start\nNumberInSet<1000>\n"
                         "MaxNumberInSet<1024>\nHalfLife<2>\noIndexOfPairs[0]\n"
                         "Name<0"));
    EXPECT_TRUE(dump.ends_with(">\nValue<" + std::string(1, '\0') +
                               ">\nNameValuePairSet-------------End\n"));
}

TEST(NameValuePairSet, ComparesSlotsAndKeys) {
    NameValuePair a("a", "");
    NameValuePair b("b", "");
    NameValuePair* const slots[] = {&a, &b};
    EXPECT_LT(compare(&slots[0], &slots[1]), 0);
    EXPECT_GT(altCompare(&b, &slots[0]), 0);
    EXPECT_EQ(altCompare(&b, &slots[1]), 0);
}
