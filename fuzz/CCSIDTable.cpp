// Reading the CCSID table file.
#include "xlat/CCSIDTable.h"

#include <sstream>
#include <vector>

#include "Fuzz.h"
#include "xlat/CCSIDTableFile.h"

using namespace dnz;

// All fields of each entry. A walk by recursion would need a stack as deep as the tree.
static std::string readTable(const std::string& contents) {
    writeFile("ccsid.tbl", contents);
    FileReader file;
    require(openCcsidTable(file), "the table is found");
    CCSIDNode* root = readCcsidTable(file);
    std::ostringstream entries;
    for (std::vector<CCSIDNode*> left{root}; !left.empty();) {
        const CCSIDNode* node = left.back();
        left.pop_back();
        if (node != nullptr) {
            left.insert(left.end(), {node->left, node->right});
            require(xxxFindNode(root, node->ccsid) == node, "every number is found");
            entries << node->ccsid << ' ' << node->sbcsPageHex << ' ' << node->dbcsPageHex << ' '
                    << node->encodingClass << node->widthClass << node->leadByteClass << '\n';
        }
    }
    xxxDeleteNode(&root);
    require(root == nullptr, "a deleted tree is empty");
    return entries.str();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    const std::string contents = Input(data, size).rest();
    require(readTable(contents) == readTable(contents + "\n" + contents),
            "the same lines again change nothing");
    return 0;
}
