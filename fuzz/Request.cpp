// A whole request: a form and an ini file in, a page and a file out.
#include <sstream>

#include "Fuzz.h"
#include "config/IniFileSet.h"
#include "frontend/CGIInterface.h"
#include "frontend/ConfigInterface.h"

using namespace dnz;

// What is longer than 255 bytes is read as two lines. Only an entry that a save takes over from its
// target, and that gets a mark for its description then, grows beyond that.
static bool hasLongLine(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    while (line.size() <= 255 && std::getline(lines, line)) {
    }
    return line.size() > 255;
}

static std::string savedAgain(const char* from, const char* to) {
    IniFileSet entries;
    entries.setIniFileName(from);
    require(entries.saveIniFile(to) == 1, "what was read can be saved");
    return contentsOf(to);
}

// The ini file, a line of two dashes, the form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::string file = input.textTo("\n--\n");
    const std::string form = input.rest();
    // The program may name any file that the user may write. A run stays in its own folder.
    if (form.find('/') != form.npos || form.find("%2f") != form.npos ||
        form.find("%2F") != form.npos) {
        return 0;
    }
    const TemporaryDirectory directory;
    writeFile("dnz.ini", file);
    writeFile("bystander.ini", file);
    writeFile("dnzcnf2.htm", "<form>\n");
    writeFile("dnzcnf3.htm", "</form>\n");
    writeFile("form", form);
    setVariable("PATH", "");
    setVariable("CONTENT_LENGTH", std::to_string(form.size()).c_str());
    require(
        std::freopen("page", "w", stdout) != nullptr && std::freopen("form", "r", stdin) != nullptr,
        "the streams can be opened");
    {
        ConfigInterface controller;
        CGIInterface transport;
        if (controller.Initialize(transport.getInputBuffer()) != 0) {
            controller.ConfigUI();
        }
    }
    require(std::fflush(stdout) == 0 && std::ftell(stdout) > 0, "every request has an answer");
    // An escape may stand for a letter of the name.
    const bool isNamed = form.find("bystander") != form.npos || form.find('%') != form.npos;
    require(isNamed || contentsOf("bystander.ini") == file, "no other file is touched");
    const std::string saved = contentsOf("dnz.ini");
    if (saved != file && !hasLongLine(saved)) {
        require(savedAgain("dnz.ini", "once.ini") == saved, "what was saved reads back as it is");
    }
    return 0;
}
