// Reading the CCSID table file.
#include "CCSIDTable.h"

#include <climits>

#include "../tests/support/TemporaryDirectory.h"
#include "CCSIDTableFile.h"
#include "Input.h"

namespace {

void requireNode(CCSIDNode* root, const CCSIDNode& node) {
    require(xxxFindNode(root, node.ccsid) == &node, "every number is found");
    char page[kPageTextSize];
    std::snprintf(page, sizeof page, "%04x", static_cast<unsigned>(node.sbcsPage) & 0xFFFFU);
    require(std::string_view(page) == node.sbcsPageHex, "the digits are those of the page");
}

CCSIDNode* smallestAbove(long long ccsid, CCSIDNode* root) {
    CCSIDNode* smallest = nullptr;
    for (CCSIDNode* node = root; node != nullptr;) {
        smallest = node->ccsid > ccsid ? node : smallest;
        node = node->ccsid > ccsid ? node->left : node->right;
    }
    return smallest;
}

// Walks through the tree by its numbers and returns how many they are.
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

// The table file.
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
