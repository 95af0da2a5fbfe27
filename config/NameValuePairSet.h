// Keeps the order of the rows of a form and of the lines of a saved file: by name, as compare() of
// the pairs says, never by arrival. The one collection of the configuration tool: its pairs are
// found by binary search and visited in this order.
// Results: 1 is success, 0 failure; null means no such pair. No argument is null.
// Ownership: a set owns its index, not its pairs. Pairs are made with `new` and live until the
// process ends; a copy of a set shares them.
// Limits: the index begins with 256 slots and doubles. There is one cursor for each set, so a
// set may not change during a walk of it.
#pragma once

#include <cstdint>
#include <memory>

class NameValuePair;

class NameValuePairSet {
public:
    NameValuePairSet() = default;
    // An own index of the same pairs, with the same cursor.
    NameValuePairSet(const NameValuePairSet& other);
    NameValuePairSet& operator=(const NameValuePairSet& other);
    ~NameValuePairSet() = default;

    // No two sets count as equal: these answer 0 and 1 without looking at the other set.
    int operator==(const NameValuePairSet& other) const;
    int operator!=(const NameValuePairSet& other) const;

    // Adds `pair`. Pairs of equal name are neighbours, in no particular order; a caller that wants
    // a name only once calls `find` first. Always 1.
    unsigned long push(NameValuePair* pair);
    // Removes this pair, found by its address: 1, or 0 if it isn't in the set.
    unsigned long pull(NameValuePair* pair);

    // A pair with exactly this name, or null. Borrowed.
    NameValuePair* find(const char* name);

    // A walk in name order: the first pair, then each following one, null at the end.
    NameValuePair* getFirst();
    NameValuePair* getNext();

    // Writes the set and its pairs to standard output, for debugging.
    void dump();

protected:
    // Adds `pair` as the last one, for a fill with many: sortIndex() has to follow before the set
    // is used. Each push() may move the whole index, which many of them would make slow.
    void append(NameValuePair* pair);
    void sortIndex();

private:
    void makeRoom();

    // Slots for MaxNumberInSet pairs; the first NumberInSet are in use. Null in a set that never
    // contained a pair: most sets of a request stay empty.
    std::unique_ptr<NameValuePair*[]> oIndexOfPairs;
    std::uint32_t NumberInSet = 0;
    std::uint32_t MaxNumberInSet = 256;
    std::uint32_t HalfLife = 2;       // kept, but without effect
    std::uint32_t oCurrentIndex = 0;  // slot of the pair that the walk has reached
};

// Comparator of the sort: both arguments point at slots of an index.
int compare(const void* a, const void* b);
// Comparator of the search: `key` points at a NameValuePair itself, `slot` at a slot of an index.
int altCompare(const void* key, const void* slot);
