// Reading the CCSID table file.
#include "xlat/CCSIDTable.h"

#include <map>
#include <vector>

#include "Fuzz.h"
#include "xlat/CCSIDTableFile.h"

using namespace dnz;

// All fields of each entry. A walk by recursion would need a stack as deep as the tree.
static std::map<std::int32_t, std::string> readTable(const std::string& contents) {
    writeFile("ccsid.tbl", contents);
    FileReader file;
    require(openCcsidTable(file), "the table is found");
    CCSIDNode* root = readCcsidTable(file);
    std::map<std::int32_t, std::string> entries;
    for (std::vector<CCSIDNode*> left{root}; !left.empty();) {
        CCSIDNode* node = left.back();
        left.pop_back();
        if (node == nullptr) {
            continue;
        }
        left.insert(left.end(), {node->left, node->right});
        char fields[99];
        std::snprintf(fields, sizeof fields, "%04x %04x %d %d %d",
                      static_cast<unsigned>(node->sbcsPage), static_cast<unsigned>(node->dbcsPage),
                      node->encodingClass, node->widthClass, node->leadByteClass);
        require(xxxFindNode(root, node->ccsid) == node, "every number is found");
        require(std::string(fields, 4) == node->sbcsPageHex &&
                    std::string(fields + 5, 4) == node->dbcsPageHex,
                "the digits are those of the page");
        entries[node->ccsid] = fields;
    }
    xxxDeleteNode(&root);
    require(root == nullptr, "a deleted tree is empty");
    return entries;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    const std::string contents = Input(data, size).rest();
    require(readTable(contents) == readTable(contents + "\n" + contents),
            "the same lines again change nothing");
    return 0;
}
