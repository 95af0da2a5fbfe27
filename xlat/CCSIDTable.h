// The CCSID table: which code pages make up each coded character set and how it is encoded.
// It is a search tree by CCSID, built once from the table file and then only read. The tree is not
// balanced: its shape depends on the order of the entries, and a sorted file gives a chain. No
// operation here needs more stack for a longer chain.
// Ownership: the tree owns its nodes; its root is a field of the control block.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

// A page number as text: four lower-case hexadecimal digits and a terminator.
constexpr std::size_t kPageTextSize = 5;

// The text of page 0, which means no page.
constexpr char kNoPageText[kPageTextSize] = "0000";

constexpr std::int32_t kLargestPage = 0xFFFF;

// widthClass. Any other value has no effect on a conversion.
constexpr std::int32_t kSingleByteWidth = 1;
constexpr std::int32_t kMixedWidth = 3;

// encodingClass. The two PC classes are converted alike.
constexpr std::int32_t kHostEncoding = 1;
constexpr std::int32_t kPcEncoding = 2;
constexpr std::int32_t kOtherPcEncoding = 3;

}  // namespace dnz

// One line of the table file.
struct CCSIDEntry {
    std::int32_t ccsid;
    std::int32_t sbcsPage;
    std::int32_t dbcsPage;
    std::int32_t encodingClass;
    std::int32_t widthClass;
    std::int32_t leadByteClass;  // which bytes begin a double-byte character in PC text
    char sbcsPageHex[dnz::kPageTextSize];
    char dbcsPageHex[dnz::kPageTextSize];
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

namespace dnz {

// Overwrites all fields of `node` but its links.
void setNodeFields(CCSIDNode* node, const CCSIDEntry& entry);

}  // namespace dnz
