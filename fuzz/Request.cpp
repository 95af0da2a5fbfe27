// A whole request: a form and an ini file in, a page and a file out.
#include <algorithm>
#include <functional>

#include "Fuzz.h"
#include "config/IniFileSet.h"
#include "frontend/CGIInterface.h"
#include "frontend/ConfigInterface.h"

using namespace dnz;

// The ini file, a line of two dashes, the form.
void run(Input input) {
    const std::string file = input.textTo("\n--\n");
    const std::string form = input.rest();
    // The program may name any file that the user may write. A run stays in its own folder.
    if (form.find('/') != form.npos || form.find("%2f") != form.npos ||
        form.find("%2F") != form.npos) {
        return;
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
    // What is longer than 255 bytes is read as two lines. Only an entry that a save takes over from
    // its target, and that gets a mark for its description then, grows beyond that. And a line end
    // in a field makes two lines of its entry.
    const std::string saved = contentsOf("dnz.ini");
    const bool hasLongLine =
        std::search_n(saved.begin(), saved.end(), 256, '\n', std::not_equal_to()) != saved.end();
    const bool hasLineEnd = form.find_first_of("\r\n") != form.npos || form.find("%0") != form.npos;
    if (saved != file && !hasLongLine && !hasLineEnd) {
        IniFileSet entries;
        entries.setIniFileName("dnz.ini");
        require(entries.saveIniFile("again.ini") == 1, "what was read can be saved");
        require(contentsOf("again.ini") == saved, "what was saved reads back as it is");
    }
}
