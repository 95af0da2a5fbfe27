// Reading the CCSID table file.
#include "CCSIDTable.h"

#include <climits>
#include <string>

#include "../tests/support/TemporaryDirectory.h"
#include "CCSIDTableFile.h"
#include "Input.h"

namespace {

void requirePage(std::int32_t page, std::string_view digits) {
    require(page >= 0 && page <= kLargestPage, "a page has four digits");
    char text[kPageTextSize];
    std::snprintf(text, sizeof text, "%04x", static_cast<unsigned>(page) & 0xFFFFU);
    require(text == digits, "the digits are those of the page");
}

void requireNode(CCSIDNode* root, const CCSIDNode& node) {
    require(xxxFindNode(root, node.ccsid) == &node, "every number is found");
    requirePage(node.sbcsPage, node.sbcsPageHex);
    requirePage(node.dbcsPage, node.dbcsPageHex);
}

CCSIDNode* smallestAbove(long long ccsid, CCSIDNode* root) {
    CCSIDNode* smallest = nullptr;
    for (CCSIDNode* node = root; node != nullptr;) {
        smallest = node->ccsid > ccsid ? node : smallest;
        node = node->ccsid > ccsid ? node->left : node->right;
    }
    return smallest;
}

// Walks through the tree by its numbers and returns how many they are. A walk by recursion would
// need a stack as deep as the tree.
int requireTree(CCSIDNode* root) {
    int count = 0;
    for (CCSIDNode* node = smallestAbove(LLONG_MIN, root); node != nullptr;
         node = smallestAbove(node->ccsid, root)) {
        requireNode(root, *node);
        ++count;
    }
    return count;
}

CCSIDNode* readTable(const std::string& contents) {
    writeFile("ccsid.tbl", contents);
    FileReader file;
    require(openCcsidTable(file), "the table is found");
    return readCcsidTable(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    const std::string contents(Input(data, size).rest());
    CCSIDNode* once = readTable(contents);
    CCSIDNode* twice = readTable(contents + "\n" + contents);
    require(requireTree(once) == requireTree(twice), "the same lines again change nothing");
    xxxDeleteNode(&once);
    xxxDeleteNode(&twice);
    require(once == nullptr && twice == nullptr, "a deleted tree is empty");
    return 0;
}
