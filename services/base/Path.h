// Paths: the directories of the product, and how a directory and a file name are joined.
#pragma once

#include <cstddef>
#include <string_view>

#include "services/base/Text.h"

namespace dnz {

constexpr char kProgramDirectory[] = "/opt/nzm/bin";
constexpr char kDataDirectory[] = "/var/nzm";

// The size of a path, its terminator included. A longer path counts as one that can't be opened.
constexpr std::size_t kPathSize = 255;

// A directory, a "/" unless the directory ends in one, and a file name. If the directory is null,
// the path is the name alone. Use it only if it fits().
class Path : public FixedText<kPathSize> {
public:
    Path(const char* directory, std::string_view name) {
        if (directory != nullptr) {
            appendDirectory(*this, directory);
        }
        append(name);
    }

    [[nodiscard]] bool fits() const { return !truncated(); }

    static void appendDirectory(BoundedText& path, std::string_view directory) {
        path.append(directory);
        if (!directory.ends_with('/')) {
            path.append("/");
        }
    }
};

}  // namespace dnz
