// The file search, with any LANG and PATH.
#include "config/FileSearch.h"

#include "Fuzz.h"
#include "services/base/File.h"

using namespace dnz;

// A byte for the size of the result, then lines: LANG, PATH, the file's name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    if (std::filesystem::create_directories("a/b/en_US")) {  // by the first run
        writeFile("a/f", "x");
        writeFile("a/b/en_US/f", "x");
    }
    Input input(data, size);
    std::string result(1 + std::size_t{input.byte()}, 'x');
    const std::string language = input.textTo("\n");
    const std::string path = input.textTo("\n");
    const std::string name = input.textTo("\n");
    setVariable("LANG", language.c_str());
    setVariable("PATH", path.c_str());
    result.back() = '\0';
    const int found =
        findfileinpath("PATH", name.c_str(), result.data(), static_cast<int>(result.size()));
    require(result.find('\0') != std::string::npos, "the path found is terminated");
    require(found == 0 || openRegularFile(result.c_str()).isOpen(), "what is found can be read");
    require(std::string(getenv("PATH")).starts_with(path.c_str()), "PATH grows at its end");
    return 0;
}
