// A whole request: a form and an ini file in, a page and a file out.
#include <string>

#include "../tests/support/TemporaryDirectory.h"
#include "Input.h"
#include "config/IniFileSet.h"
#include "frontend/CGIInterface.h"
#include "frontend/ConfigInterface.h"

using namespace dnz;

namespace {

// The program may name any file that the user may write. A fuzz run stays in its own folder.
bool leavesTheFolder(std::string_view form) {
    return form.find('/') != form.npos || form.find("%2f") != form.npos ||
           form.find("%2F") != form.npos;
}

void prepareFolder(const std::string& file) {
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::filesystem::remove(entry.path());
    }
    writeFile("dnz.ini", file);
    writeFile("bystander.ini", file);
    writeFile("dnzcnf2.htm", "<form>\n");
    writeFile("dnzcnf3.htm", "</form>\n");
}

void serve(const std::string& form) {
    writeFile("form", form);
    require(std::freopen("form", "r", stdin) != nullptr, "the form can be read");
    setVariable("CONTENT_LENGTH", std::to_string(form.size()).c_str());
    ConfigInterface controller;
    CGIInterface transport;
    if (controller.Initialize(transport.getInputBuffer()) != 0) {
        controller.ConfigUI();
    }
    require(std::fflush(stdout) == 0 && std::ftell(stdout) > 0, "every request has an answer");
}

// What is longer is read as two lines. Only an entry that a save takes over from its target, and
// that gets a mark for its description then, grows beyond that.
bool hasLongLine(const char* path) {
    constexpr std::size_t kLongest = 255;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.size() > kLongest) {
            return true;
        }
    }
    return false;
}

std::string savedAgain(const char* from, const char* to) {
    IniFileSet entries;
    entries.setIniFileName(from);
    require(entries.saveIniFile(to) == 1, "what was read can be saved");
    return contentsOf(to);
}

void requireStable(const std::string& saved) {
    const std::string once = savedAgain("dnz.ini", "once.ini");
    require(once == saved, "what was saved reads back as it is");
    require(savedAgain("once.ini", "twice.ini") == once, "a second save changes nothing");
}

}  // namespace

// The ini file, a line of two dashes, the form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    Input input(data, size);
    const std::string file(input.textTo("\n--\n"));
    const std::string form(input.rest());
    if (leavesTheFolder(form)) {
        return 0;
    }
    prepareFolder(file);
    setVariable("PATH", "");
    require(std::freopen("page", "w", stdout) != nullptr, "the page can be written");

    serve(form);
    // An escape may stand for a letter of the name.
    if (form.find("bystander") == form.npos && form.find('%') == form.npos) {
        require(contentsOf("bystander.ini") == file, "no other file is touched");
    }
    const std::string saved = contentsOf("dnz.ini");
    if (saved != file && !hasLongLine("dnz.ini")) {
        requireStable(saved);
    }
    return 0;
}
