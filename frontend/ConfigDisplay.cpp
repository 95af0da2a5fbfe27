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

// The page of one operation: an operation looks up its web interface once.
class PageWriter {
public:
    void write(std::string_view text) {
        web_.write_text(text.data(), static_cast<long>(text.size()));
    }
    void writeMessage(std::int32_t number) { write(MessageText(number).text()); }

private:
    WebInterface& web_ = *WebInterface::Instance();
};

// Here and in the next function the field names are part of the texts: each text written separately
// would appear in the trace.
void writeNewEntryTable(PageWriter& page) {
    page.write("</TABLE>\n<P>");
    page.writeMessage(kNewEntryText);
    page.write("</P>\n");
    page.write("<TABLE BORDER=0>\n");
    page.write("<TR><TH>");
    page.writeMessage(kNameHead);
    page.write("</TH><TH>");
    page.writeMessage(kValueHead);
    page.write("</TH><TH>");
    page.writeMessage(kDescriptionHead);
    page.write("</TH></TR>\n");
    page.write(
        "<TR><TD><INPUT NAME=dnzNewName VALUE=\"\" SIZE=25></TD>                  \n"
        "<TD><INPUT NAME=dnzNewValue VALUE=\"\" SIZE=25></TD>\n"
        "                  <TD><INPUT NAME=dnzNewDesc VALUE=\"\" SIZE=25></TD></TR>\n");
    page.write("</TABLE>\n");
}

void writeSaveName(PageWriter& page, const char* saveFile) {
    page.write("<PRE>");
    page.write("<STRONG><FONT size=+1>\n");
    page.writeMessage(kSaveNameLabel);
    page.write("</FONT></STRONG><INPUT NAME=dnzINIsave VALUE=");
    page.write(saveFile);
    page.write(" SIZE=25>");
    page.write("</PRE>\n");
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
    page.write(" NAME= ");
    page.write(name);
    page.write(" VALUE= \"");
    if (value != nullptr) {
        page.write(value);
    }
    page.write("\"  SIZE= 25 > </TD>\n ");
}

void ConfigDisplay::write_checkbox_field(const char* name) {
    PageWriter page;
    page.write("<TD><INPUT TYPE= CHECKBOX ");
    page.write(" NAME= ");
    page.write(name);
    page.write(" VALUE= n  > </TD>\n");
}

void ConfigDisplay::write_data_field(const char* text) {
    PageWriter page;
    page.write("<TD> ");
    page.write(text);
    page.write("</TD>");
}
