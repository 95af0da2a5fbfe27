// The file search, with any LANG and PATH.
#include "FileSearch.h"

#include <string>

#include "../tests/support/TemporaryDirectory.h"
#include "Input.h"
#include "RegularFile.h"
#include "Results.h"

// A byte for the size of the result, then lines: LANG, PATH, the file's name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    if (std::filesystem::create_directories("a/b/en_US")) {  // by the first run
        writeFile("a/f", "x");
        writeFile("a/b/en_US/f", "x");
    }
    Input input(data, size);
    const int resultSize = 1 + input.byte();
    const std::string language(input.textTo("\n"));
    const std::string path(input.textTo("\n"));
    const std::string name(input.textTo("\n"));
    setVariable("LANG", language.c_str());
    setVariable("PATH", path.c_str());

    std::string result(static_cast<std::size_t>(resultSize), 'x');
    result.back() = '\0';
    const int code = findfileinpath("PATH", name.c_str(), result.data(), resultSize);
    const std::size_t end = result.find('\0');
    require(end != std::string::npos, "the path found is terminated");
    result.resize(end);
    require(code == kFailed || openRegularFile(result.c_str()).isOpen(),
            "what is found can be read");
    require(std::string(getenv("PATH")).starts_with(path.c_str()), "PATH grows at its end");
    return 0;
}
