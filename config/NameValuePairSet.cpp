#include "config/NameValuePairSet.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config/NameValuePair.h"
#include "config/Results.h"

using namespace dnz;

namespace {

constexpr std::size_t kSlotSize = sizeof(void*);  // a slot is a pointer

using Index = std::unique_ptr<NameValuePair*[]>;

// An index of `size` slots that begins with the first `count` pairs of `pairs`.
Index newIndex(std::uint32_t size, const Index& pairs, std::uint32_t count) {
    auto index = std::make_unique_for_overwrite<NameValuePair*[]>(size);
    std::copy_n(pairs.get(), count, index.get());
    return index;
}

NameValuePair* pairIn(const void* slot) {
    return *static_cast<NameValuePair* const*>(slot);
}

bool standsBefore(const NameValuePair* left, const NameValuePair* right) {
    return left->compare(right) < 0;
}

}  // namespace

int compare(const void* a, const void* b) {
    return pairIn(a)->compare(pairIn(b));
}

int altCompare(const void* key, const void* slot) {
    return static_cast<const NameValuePair*>(key)->compare(pairIn(slot));
}

NameValuePairSet::NameValuePairSet(const NameValuePairSet& other) {
    *this = other;
}

NameValuePairSet& NameValuePairSet::operator=(const NameValuePairSet& other) {
    if (this != &other) {
        const bool isIndexed = other.oIndexOfPairs != nullptr;
        oIndexOfPairs = isIndexed
                            ? newIndex(other.MaxNumberInSet, other.oIndexOfPairs, other.NumberInSet)
                            : nullptr;
        NumberInSet = other.NumberInSet;
        MaxNumberInSet = other.MaxNumberInSet;
        HalfLife = other.HalfLife;
        oCurrentIndex = other.oCurrentIndex;
    }
    return *this;
}

int NameValuePairSet::operator==(const NameValuePairSet& /*other*/) const {
    return 0;
}

int NameValuePairSet::operator!=(const NameValuePairSet& /*other*/) const {
    return 1;
}

unsigned long NameValuePairSet::push(NameValuePair* pair) {
    append(pair);
    // The other slots are sorted, so moving the last pair to the right place sorts them all.
    NameValuePair** last = oIndexOfPairs.get() + NumberInSet - 1;
    NameValuePair** place = std::upper_bound(oIndexOfPairs.get(), last, pair, standsBefore);
    std::rotate(place, last, last + 1);
    return kDone;
}

unsigned long NameValuePairSet::pull(NameValuePair* pair) {
    NameValuePair** end = oIndexOfPairs.get() + NumberInSet;
    NameValuePair** place = std::find(oIndexOfPairs.get(), end, pair);
    if (place == end) {
        return kFailed;
    }
    NameValuePair** last = end - 1;
    *place = *last;
    *last = nullptr;
    --NumberInSet;
    sortIndex();
    return kDone;
}

NameValuePair* NameValuePairSet::find(const char* name) {
    if (NumberInSet == 0) {
        return nullptr;
    }
    const NameValuePair key(name, std::strlen(name), nullptr, 0);
    const void* slot = std::bsearch(&key, oIndexOfPairs.get(), NumberInSet, kSlotSize, altCompare);
    return slot != nullptr ? pairIn(slot) : nullptr;
}

NameValuePair* NameValuePairSet::getFirst() {
    oCurrentIndex = 0;
    return NumberInSet > 0 ? oIndexOfPairs[0] : nullptr;
}

NameValuePair* NameValuePairSet::getNext() {
    if (NumberInSet == 0) {
        return nullptr;
    }
    ++oCurrentIndex;
    if (oCurrentIndex < NumberInSet) {
        return oIndexOfPairs[oCurrentIndex];
    }
    oCurrentIndex = 0;
    return nullptr;
}

void NameValuePairSet::dump() {
    std::printf("NameValuePairSet-------------Start\n");
    std::printf("NumberInSet<%i>\n", static_cast<int>(NumberInSet));
    std::printf("MaxNumberInSet<%i>\n", static_cast<int>(MaxNumberInSet));
    std::printf("HalfLife<%i>\n", static_cast<int>(HalfLife));
    for (std::uint32_t slot = 0; slot < NumberInSet; ++slot) {
        std::printf("oIndexOfPairs[%i]\n", static_cast<int>(slot));
        oIndexOfPairs[slot]->dump();
    }
    std::printf("NameValuePairSet-------------End\n");
}

void NameValuePairSet::append(NameValuePair* pair) {
    if (oIndexOfPairs == nullptr || NumberInSet == MaxNumberInSet) {
        makeRoom();
    }
    oIndexOfPairs[NumberInSet] = pair;
    ++NumberInSet;
}

void NameValuePairSet::sortIndex() {
    // Usually already sorted, since saved files are. The test also keeps the null index of an empty
    // set from qsort. Another sort might leave equal names in another order.
    if (!std::is_sorted(oIndexOfPairs.get(), oIndexOfPairs.get() + NumberInSet, standsBefore)) {
        std::qsort(oIndexOfPairs.get(), NumberInSet, kSlotSize, compare);
    }
}

// Makes the first index, or one with twice the slots.
void NameValuePairSet::makeRoom() {
    if (oIndexOfPairs != nullptr) {
        MaxNumberInSet *= 2;
    }
    oIndexOfPairs = newIndex(MaxNumberInSet, oIndexOfPairs, NumberInSet);
}
