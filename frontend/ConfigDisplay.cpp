#include "frontend/ConfigDisplay.h"

#include <cstdint>
#include <string_view>

#include "config/NameValuePair.h"
#include "frontend/FormFields.h"
#include "frontend/HTMLPage.h"
#include "frontend/MessageNumbers.h"
#include "frontend/interface/WebInterface.h"
#include "services/base/Text.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr char kHidden[] = "HIDDEN";

// The page of one operation. Looks up the web interface once: each look-up writes trace records.
class PageWriter {
public:
    // Writes the pieces in order: texts, and numbers of messages. Each is written separately, since
    // each appears in the trace. An empty view must be terminated: its length 0 means up to there.
    template <typename... Pieces>
    void write(const Pieces&... pieces) {
        (writePiece(pieces), ...);
    }

private:
    void writePiece(std::string_view text) {
        web_.write_text(text.data(), static_cast<long>(text.size()));
    }
    void writePiece(std::int32_t message) { writePiece(MessageText(message).text()); }

    WebInterface& web_ = *WebInterface::Instance();
};

// Here and in the next function the texts repeat field names of FormFields.h: as pieces of their
// own these would add trace records.
void writeNewEntryTable(PageWriter& page) {
    page.write("</TABLE>\n<P>", kNewEntryText, "</P>\n");
    page.write("<TABLE BORDER=0>\n");
    page.write("<TR><TH>", kNameHead, "</TH><TH>", kValueHead, "</TH><TH>", kDescriptionHead,
               "</TH></TR>\n");
    page.write(
        "<TR><TD><INPUT NAME=dnzNewName VALUE=\"\" SIZE=25></TD>                  \n"
        "<TD><INPUT NAME=dnzNewValue VALUE=\"\" SIZE=25></TD>\n"
        "                  <TD><INPUT NAME=dnzNewDesc VALUE=\"\" SIZE=25></TD></TR>\n");
    page.write("</TABLE>\n");
}

void writeSaveName(PageWriter& page, const char* saveFile) {
    page.write("<PRE>", "<STRONG><FONT size=+1>\n", kSaveNameLabel);
    page.write("</FONT></STRONG><INPUT NAME=dnzINIsave VALUE=", saveFile, " SIZE=25>", "</PRE>\n");
}

}  // namespace

ConfigDisplay::ConfigDisplay() {
    const TraceScope trace("ConfigDisplay::ConfigDisplay");
}

ConfigDisplay::~ConfigDisplay() {
    const TraceScope trace("ConfigDisplay::~ConfigDisplay");
}

int ConfigDisplay::startTable() {
    HTMLPage page("dnzcnf2.htm");
    WebInterface::Instance()->write_header("Content-type", " text/html");
    return static_cast<int>(page.writeToStdout());
}

void ConfigDisplay::insertRow(NameValuePair* pair) {
    if (pair == nullptr) {
        return;
    }
    PageWriter page;
    const int row = rowCount++;
    page.write("<TR>\n");
    write_data_field(pair->getName());
    write_input_field(FieldName(kValueKind, row).text(), pair->getValue(), nullptr);
    write_input_field(FieldName(kDescriptionKind, row).text(), pair->getDesc(), nullptr);
    write_checkbox_field(FieldName(kExcludeKind, row).text());
    write_input_field(FieldName(kNameKind, row).text(), pair->getName(), kHidden);
    page.write("</TR>\n");
}

void ConfigDisplay::endTable(const char* hideFile, const char* saveFile, const char* filePath) {
    HTMLPage closingPage("dnzcnf3.htm");
    PageWriter page;
    writeNewEntryTable(page);
    if (filePath != nullptr) {
        write_input_field(kFilePathField, filePath, kHidden);
    }
    writeSaveName(page, saveFile);
    FixedText<16> count;
    write_input_field(kRowCountField, count.appendf("%d", rowCount).c_str(), kHidden);
    write_input_field(kShownFileField, hideFile, kHidden);
    static_cast<void>(closingPage.writeToStdout());  // a missing page has left its message
    rowCount = 0;
}

void ConfigDisplay::write_input_field(const char* name, const char* value, const char* hidden) {
    PageWriter page;
    page.write(hidden != nullptr ? "<TD><INPUT TYPE= HIDDEN " : "<TD><INPUT TYPE= INPUT ");
    page.write(" NAME= ", name, " VALUE= \"");
    if (value != nullptr) {
        page.write(value);
    }
    page.write("\"  SIZE= 25 > </TD>\n ");
}

void ConfigDisplay::write_checkbox_field(const char* name) {
    PageWriter().write("<TD><INPUT TYPE= CHECKBOX ", " NAME= ", name, " VALUE= n  > </TD>\n");
}

void ConfigDisplay::write_data_field(const char* text) {
    PageWriter().write("<TD> ", text, "</TD>");
}
