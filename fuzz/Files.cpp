// The file search, with any LANG and PATH, and reading the CCSID table file: both take each input.
#include <sstream>
#include <vector>

#include "Fuzz.h"
#include "config/FileSearch.h"
#include "services/base/File.h"
#include "xlat/CCSIDTable.h"
#include "xlat/CCSIDTableFile.h"

using namespace dnz;

// A byte for the size of the result, then lines: LANG, PATH, the file's name.
static void searchFile(Input input) {
    if (std::filesystem::create_directories("a/b/en_US")) {  // by the first run
        writeFile("a/f", "x");
        writeFile("a/b/en_US/f", "x");
    }
    std::string result(1 + input.number(1), 'x');
    setVariable("LANG", input.textTo("\n").c_str());
    const std::string path = input.textTo("\n");
    setVariable("PATH", path.c_str());
    const std::string name = input.textTo("\n");
    result.back() = '\0';
    const int found =
        findfileinpath("PATH", name.c_str(), result.data(), static_cast<int>(result.size()));
    require(result.find('\0') != std::string::npos, "the path found is terminated");
    require(found == 0 || openRegularFile(result.c_str()).isOpen(), "what is found can be read");
    require(std::string(getenv("PATH")).starts_with(path.c_str()), "PATH grows at its end");
}

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

void run(Input input) {
    searchFile(input);
    const std::string contents = input.rest();
    require(readTable(contents) == readTable(contents + "\n" + contents),
            "the same lines again change nothing");
}
