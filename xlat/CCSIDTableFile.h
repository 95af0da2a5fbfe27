// Reads the file of the CCSID table. It is text, one CCSID to a line, in six decimal columns
// separated by white space: ccsid, dbcsPage, sbcsPage, widthClass, encodingClass, leadByteClass.
// Text after the sixth column is ignored. A line that begins with "#" is a comment. Limits: 255
// characters of a line are read; the rest counts as the next line.
#pragma once

#include "services/base/File.h"
#include "xlat/CCSIDTable.h"

namespace dnz {

// Opens the table file: DNZCCSID.TBL, else ccsid.tbl, in the table directory. False, with a trace
// of the names tried, if there is neither or the path is too long.
bool openCcsidTable(FileReader& file);

// Reads the whole file into a new tree, which the caller owns; null is an empty tree. The last line
// for a CCSID counts. A line with one to five columns, or with a page number of more than four
// hexadecimal digits, is skipped with a trace text. An empty line, or one for which memory runs
// out, is skipped without a trace text. A read error ends the file.
[[nodiscard]] CCSIDNode* readCcsidTable(FileReader& file);

}  // namespace dnz
