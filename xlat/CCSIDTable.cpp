#include "xlat/CCSIDTable.h"

#include <new>

#include "services/base/ReturnCodes.h"

using namespace dnz;

CCSIDNode* xxxFindNode(CCSIDNode* root, std::int32_t ccsid) {
    CCSIDNode* node = root;
    while (node != nullptr && node->ccsid != ccsid) {
        node = ccsid < node->ccsid ? node->left : node->right;
    }
    return node;
}

void xxxInsertNode(CCSIDNode** place, const CCSIDEntry* entry) {
    while (*place != nullptr && (*place)->ccsid != entry->ccsid) {
        place = entry->ccsid < (*place)->ccsid ? &(*place)->left : &(*place)->right;
    }
    if (*place == nullptr) {
        *place = xxxCreateNode(entry);
    }
}

CCSIDNode* xxxCreateNode(const CCSIDEntry* entry) {
    auto* node = new (std::nothrow) CCSIDNode{};
    if (node != nullptr) {
        copyEntry(*entry, *node);
    }
    return node;
}

void xxxDeleteNode(CCSIDNode** place) {
    CCSIDNode* node = *place;
    while (node != nullptr) {
        CCSIDNode* larger = node->right;
        if (larger != nullptr) {
            // Rotations bring the largest node to the top without a stack.
            node->right = larger->left;
            larger->left = node;
            node = larger;
        } else {
            CCSIDNode* smaller = node->left;
            delete node;
            node = smaller;
        }
    }
    *place = nullptr;
}

std::int32_t xxxFreeNode(CCSIDNode* node) {
    xxxDeleteNode(&node->right);
    xxxDeleteNode(&node->left);
    return kServiceOk;
}
