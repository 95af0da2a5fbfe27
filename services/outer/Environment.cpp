#include "services/outer/Environment.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "services/base/File.h"
#include "services/base/Path.h"

using namespace dnz;

namespace {

constexpr char kEnvironmentFile[] = "/var/nzm/dnz.env";
constexpr int kLineSize = 255;  // 254 characters and a terminator

constexpr int kOverwrite = 1;

void addProductDirectories() {
    const char* current = std::getenv("PATH");
    if (current != nullptr && std::strstr(current, kDataDirectory) != nullptr) {
        return;
    }
    std::string path = current != nullptr ? current : "";
    if (!path.empty() && path.back() != ':') {
        path.append(":");
    }
    path.append(kDataDirectory).append(":").append(kProgramDirectory).append(":");
    setenv("PATH", path.c_str(), kOverwrite);
}

}  // namespace

const char* initializeenv() {
    addProductDirectories();
    setenv("NZCHLLIB", kDataDirectory, kOverwrite);
    setenv("NZCHLTAB", "ANZCLCHL.TAB", kOverwrite);
    setenv("DNZ_XLAT_PATH", "/var/nzm/conv/table", kOverwrite);
    return initializeFromEnvironmentFile(kEnvironmentFile);
}

const char* dnz::initializeFromEnvironmentFile(const char* path) {
    const StreamHandle file(std::fopen(path, "r"));
    if (file == nullptr) {
        return nullptr;
    }
    char line[kLineSize];
    // A last line without a line end is ignored: the end of the file is tested before its text.
    while (std::fgets(line, kLineSize, file.get()) != nullptr && std::feof(file.get()) == 0) {
        line[std::strcspn(line, "\r\n")] = '\0';
        if (std::strstr(line, "DNZ_TRACE") != nullptr) {
            setenv("DNZ_TRACE", "ON", kOverwrite);
        }
        if (std::strstr(line, "DNZ_PATH") != nullptr) {
            setenv("DNZ_PATH", "/tmp", kOverwrite);
            return "DNZ_PATH=";
        }
    }
    return nullptr;
}
