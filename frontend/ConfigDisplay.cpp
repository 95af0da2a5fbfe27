#include "ConfigDisplay.h"

#include <cstdint>

#include "BoundedText.h"
#include "HTMLPage.h"
#include "MessageNumbers.h"
#include "MessageText.h"
#include "NameValuePair.h"
#include "ServiceCalls.h"
#include "WebInterface.h"

namespace {

constexpr char kHidden[] = "HIDDEN";

void write(const char* text) {
    WebInterface::Instance()->write_text(text, 0);
}

void writeMessage(std::int32_t number) {
    write(MessageText(number).text());
}

// A field name: a letter for the kind and the index of its row.
class FieldName {
public:
    FieldName(char kind, int row) { BoundedText(name_).appendf("%c%d", kind, row); }
    [[nodiscard]] const char* text() const { return name_; }

private:
    char name_[16];
};

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
    const int row = rowCount++;
    write("<TR>\n");
    write_data_field(pair->getName());
    write_input_field(FieldName('v', row).text(), pair->getValue(), nullptr);
    write_input_field(FieldName('d', row).text(), pair->getDesc(), nullptr);
    write_checkbox_field(FieldName('e', row).text());
    write_input_field(FieldName('n', row).text(), pair->getName(), kHidden);
    write("</TR>\n");
}

void ConfigDisplay::endTable(const char* hideFile, const char* saveFile, const char* filePath) {
    HTMLPage page("dnzcnf3.htm");
    writeNewEntryTable();
    if (filePath != nullptr) {
        write_input_field("dnzfilepath", filePath, kHidden);
    }
    writeSaveName(saveFile);
    char count[16];
    BoundedText(count).appendf("%d", rowCount);
    write_input_field("dnzNumPairs", count, kHidden);
    write_input_field("dnzhidefile", hideFile, kHidden);
    static_cast<void>(page.writeToStdout());  // a missing page has left its message
    rowCount = 0;
}

void ConfigDisplay::writeNewEntryTable() {
    write("</TABLE>\n<P>");
    writeMessage(kNewEntryText);
    write("</P>\n");
    write("<TABLE BORDER=0>\n");
    write("<TR><TH>");
    writeMessage(kNameHead);
    write("</TH><TH>");
    writeMessage(kValueHead);
    write("</TH><TH>");
    writeMessage(kDescriptionHead);
    write("</TH></TR>\n");
    write(
        "<TR><TD><INPUT NAME=dnzNewName VALUE=\"\" SIZE=25></TD>                  \n"
        "<TD><INPUT NAME=dnzNewValue VALUE=\"\" SIZE=25></TD>\n"
        "                  <TD><INPUT NAME=dnzNewDesc VALUE=\"\" SIZE=25></TD></TR>\n");
    write("</TABLE>\n");
}

void ConfigDisplay::writeSaveName(const char* saveFile) {
    write("<PRE>");
    write("<STRONG><FONT size=+1>\n");
    writeMessage(kSaveNameLabel);
    write("</FONT></STRONG><INPUT NAME=dnzINIsave VALUE=");
    write(saveFile);
    write(" SIZE=25>");
    write("</PRE>\n");
}

void ConfigDisplay::write_input_field(const char* name, const char* value, const char* hidden) {
    write(hidden != nullptr ? "<TD><INPUT TYPE= HIDDEN " : "<TD><INPUT TYPE= INPUT ");
    write(" NAME= ");
    write(name);
    write(" VALUE= \"");
    if (value != nullptr) {
        write(value);
    }
    write("\"  SIZE= 25 > </TD>\n ");
}

void ConfigDisplay::write_checkbox_field(const char* name) {
    write("<TD><INPUT TYPE= CHECKBOX ");
    write(" NAME= ");
    write(name);
    write(" VALUE= n  > </TD>\n");
}

void ConfigDisplay::write_data_field(const char* text) {
    write("<TD> ");
    write(text);
    write("</TD>");
}
