#include "frontend/HTMLPage.h"

#include <cstring>

#include "config/FileSearch.h"
#include "config/Results.h"
#include "frontend/MessageNumbers.h"
#include "frontend/interface/WebInterface.h"
#include "services/base/File.h"
#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

std::unique_ptr<char[]> copyOfText(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const std::size_t size = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), text, size);
    return copy;
}

bool sameText(const char* left, const char* right) {
    return left == right || (left != nullptr && right != nullptr && std::strcmp(left, right) == 0);
}

void writeMissingPage(WebInterface& web, const char* name) {
    web.write_text("<HTML>", 0);
    web.write_text(MessageText(kTemplateMissing, name).text(), 0);
    web.write_text("</HTML>", 0);
}

// The pieces pass with their length, so that a zero byte in the file passes too.
void copyToPage(WebInterface& web, FileReader& file) {
    char piece[100];
    std::size_t count = 0;
    while ((count = file.read(piece, sizeof piece)) > 0) {
        web.write_text(piece, static_cast<long>(count));
    }
    web.write_text("\n", 0);
}

}  // namespace

HTMLPage::HTMLPage() {
    const TraceScope trace("HTMLPage::HTMLPage");
}

HTMLPage::HTMLPage(const char* name) : HTMLSourceFile(copyOfText(name)) {
    const TraceScope trace("HTMLPage::HTMLPage(char*)");
}

HTMLPage::HTMLPage(const HTMLPage& other) : HTMLSourceFile(copyOfText(other.HTMLSourceFile.get())) {
    const TraceScope trace("HTMLPage::HTMLPage(copy)");
}

HTMLPage::~HTMLPage() {
    const TraceScope trace("HTMLPage::~HTMLPage");
}

HTMLPage& HTMLPage::operator=(const HTMLPage& other) {
    const TraceScope trace("HTMLPage::operator=");
    if (!sameText(HTMLSourceFile.get(), other.HTMLSourceFile.get())) {
        HTMLSourceFile = copyOfText(other.HTMLSourceFile.get());
    }
    return *this;
}

int HTMLPage::operator==(const HTMLPage& other) const {
    TraceScope trace("HTMLPage::operator==");
    return trace.exitWith(sameText(HTMLSourceFile.get(), other.HTMLSourceFile.get()) ? 1 : 0);
}

int HTMLPage::operator!=(const HTMLPage& other) const {
    TraceScope trace("HTMLPage::operator!=");
    return trace.exitWith(sameText(HTMLSourceFile.get(), other.HTMLSourceFile.get()) ? 0 : 1);
}

long HTMLPage::writeToStdout() {
    TraceScope trace("HTMLPage::wrtToStdout");
    WebInterface& web = *WebInterface::Instance();
    const char* name = HTMLSourceFile != nullptr ? HTMLSourceFile.get() : "";
    FileReader file(openRegularFile(name));
    if (!file.isOpen()) {
        char path[kPathSize];
        BoundedText(path).append(name);
        if (findfileinpath("PATH", name, path, static_cast<int>(kPathSize)) == kFailed) {
            writeMissingPage(web, name);
            return trace.exitWith(kFailed);
        }
        file.use(openRegularFile(path));
    }
    if (file.isOpen()) {
        copyToPage(web, file);
    }
    return trace.exitWith(kDone);
}

const char* HTMLPage::get_HTMLSourceFile() const {
    const TraceScope trace("HTMLPage::get_HTMLSourceFile");
    return HTMLSourceFile.get();
}

void HTMLPage::set_HTMLSourceFile(char* const name) {
    const TraceScope trace("HTMLPage::set_HTMLSourceFile");
    static_cast<void>(HTMLSourceFile.release());
    HTMLSourceFile.reset(name);
}

void HTMLPage::setHTMLSourceFileName(const char* name) {
    HTMLSourceFile = copyOfText(name);
}
