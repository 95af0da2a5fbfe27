// A fresh working directory, removed at its end, and what tests do to files in it and to variables.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

struct TemporaryDirectory {
    TemporaryDirectory() { std::filesystem::current_path(mkdtemp(path.data())); }
    ~TemporaryDirectory() {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(path);
    }
    std::string path = "/tmp/dnzcnf-test-XXXXXX";
};

inline std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary) << contents;
}

// Sets an environment variable, or removes it for null.
inline void setVariable(const char* name, const char* value) {
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
}
