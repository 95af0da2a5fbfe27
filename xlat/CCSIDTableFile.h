// The file of the CCSID table: text, one CCSID to a line, six decimal columns separated by white
// space: ccsid, dbcsPage, sbcsPage, widthClass, encodingClass, leadByteClass. What follows the
// sixth column is ignored. A line that begins with "#" is a comment.
// Limits: a line is read up to 255 characters; the rest of a longer one counts as the next line.
#pragma once

#include "CCSIDTable.h"
#include "RegularFile.h"

// Opens the table file: DNZCCSID.TBL, else ccsid.tbl, in the table directory. False, with a
// trace of what was tried, if there is neither or the path is too long.
bool openCcsidTable(FileReader& file);

// Reads the whole file into a new tree, which the caller owns; null is an empty tree. The last
// line for a CCSID wins. A line with one to five columns or with a page number that doesn't fit
// four hexadecimal digits is skipped with a trace text; an empty line, and one for which memory
// runs out, without. A read error ends the file.
[[nodiscard]] CCSIDNode* readCcsidTable(FileReader& file);
