// The CCSID table: which code pages make up each coded character set and how it is encoded.
// It is a search tree by CCSID, built once from the table file and then only read. The tree is not
// balanced: its shape depends on the order of the entries, and a sorted file gives a chain. No
// operation here needs more stack for a longer chain.
// Ownership: the tree owns its nodes; its root is a field of the control block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dnz {

// A page number as text: four lower-case hexadecimal digits and a terminator. Page 0 means no page.
constexpr std::size_t kPageTextSize = 5;
constexpr std::int32_t kLargestPage = 0xFFFF;

// widthClass. Any other value has no effect on a conversion.
constexpr std::int32_t kSingleByteWidth = 1;
constexpr std::int32_t kMixedWidth = 3;

// encodingClass. The two PC classes are converted alike.
constexpr std::int32_t kHostEncoding = 1;
constexpr std::int32_t kPcEncoding = 2;
constexpr std::int32_t kOtherPcEncoding = 3;

}  // namespace dnz

// One line of the table file, at first one without pages.
struct CCSIDEntry {
    std::int32_t ccsid = 0;
    std::int32_t sbcsPage = 0;
    std::int32_t dbcsPage = 0;
    std::int32_t encodingClass = 0;
    std::int32_t widthClass = 0;
    std::int32_t leadByteClass = 0;  // which bytes begin a double-byte character in PC text
    char sbcsPageHex[dnz::kPageTextSize] = "0000";
    char dbcsPageHex[dnz::kPageTextSize] = "0000";
};

// An entry in the tree.
struct CCSIDNode {
    std::int32_t ccsid;
    std::int32_t sbcsPage;
    std::int32_t dbcsPage;
    std::int32_t encodingClass;
    std::int32_t widthClass;
    std::int32_t leadByteClass;
    CCSIDNode* left;   // the smaller CCSIDs; comparison is signed
    CCSIDNode* right;  // the larger ones
    char sbcsPageHex[dnz::kPageTextSize];
    char dbcsPageHex[dnz::kPageTextSize];
};

namespace dnz {

// Copies the fields of an entry to or from a node, whose links stay.
template <typename Source, typename Target>
void copyEntry(const Source& source, Target& target) {
    target.ccsid = source.ccsid;
    target.sbcsPage = source.sbcsPage;
    target.dbcsPage = source.dbcsPage;
    target.encodingClass = source.encodingClass;
    target.widthClass = source.widthClass;
    target.leadByteClass = source.leadByteClass;
    std::memcpy(target.sbcsPageHex, source.sbcsPageHex, kPageTextSize);
    std::memcpy(target.dbcsPageHex, source.dbcsPageHex, kPageTextSize);
}

}  // namespace dnz

// The node of `ccsid`, or null. A null root is an empty tree.
CCSIDNode* xxxFindNode(CCSIDNode* root, std::int32_t ccsid);

// Adds a node for `entry` at or below `*place`, where the search for its CCSID ends. Changes
// nothing if the CCSID exists already or memory runs out.
void xxxInsertNode(CCSIDNode** place, const CCSIDEntry* entry);

// A new node with the fields of `entry` and no links, or null if memory runs out. The caller owns
// it.
[[nodiscard]] CCSIDNode* xxxCreateNode(const CCSIDEntry* entry);

// Frees the whole tree, larger CCSIDs first, and sets `*place` to null.
void xxxDeleteNode(CCSIDNode** place);

// Frees all nodes below `node` but not the node itself, whose links are null then. Always 0.
std::int32_t xxxFreeNode(CCSIDNode* node);
