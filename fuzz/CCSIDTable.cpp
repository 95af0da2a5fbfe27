// Reading the CCSID table file.
#include "xlat/CCSIDTable.h"

#include <climits>
#include <string>
#include <tuple>

#include "../tests/support/TemporaryDirectory.h"
#include "Input.h"
#include "xlat/CCSIDTableFile.h"

using namespace dnz;

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

bool isSame(const CCSIDNode& left, const CCSIDNode& right) {
    const auto fields = [](const CCSIDNode& node) {
        return std::tie(node.ccsid, node.sbcsPage, node.dbcsPage, node.encodingClass,
                        node.widthClass, node.leadByteClass);
    };
    return fields(left) == fields(right);
}

// Walks through two trees by their numbers. A walk by recursion would need a stack as deep as the
// tree.
void requireSameTrees(CCSIDNode* root, CCSIDNode* otherRoot) {
    CCSIDNode* node = smallestAbove(LLONG_MIN, root);
    CCSIDNode* other = smallestAbove(LLONG_MIN, otherRoot);
    for (; node != nullptr && other != nullptr; other = smallestAbove(other->ccsid, otherRoot)) {
        requireNode(root, *node);
        require(isSame(*node, *other), "the same lines again change no entry");
        node = smallestAbove(node->ccsid, root);
    }
    require(node == nullptr && other == nullptr, "the same lines again add no entry");
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
    requireSameTrees(once, twice);
    xxxDeleteNode(&once);
    xxxDeleteNode(&twice);
    require(once == nullptr && twice == nullptr, "a deleted tree is empty");
    return 0;
}
