// Runs a fuzz target over the files of the folders given, for the ordinary tests.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Input.h"

int main(int count, char** folders) {
    int files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(folders[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            std::fprintf(stderr, "%s\n", entry.path().filename().c_str());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++files;
        }
    }
    return files > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
