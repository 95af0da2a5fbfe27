// Ini files: read one into a set of IniFileParts, write a set back.
//
// A file is plain text, one entry on a line: a name, a value and a description after `#`, such
// as `NZIGwQueue GATE.IN #requests`. The space is the only separator. A line that begins with `#`
// is an entry like any other. Entries are written sorted by name.
//
// Results: 1 is success, 0 failure. Ownership: the set makes its parts and, like every set, never
// deletes them; they live until the process ends.
// Limits: 255 bytes of a line are read at once, the rest is read as a line of its own; a written
// line is cut after 258 bytes. Saving writes in place, with no temporary file and
// no lock, and write errors go undetected.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "config/NameValuePairSet.h"
#include "services/base/File.h"

class IniFileSet : public NameValuePairSet {
public:
    IniFileSet();
    // Both share the pairs and copy the file name. A new copy counts as not read; an assignment
    // leaves Populated() as it was.
    IniFileSet(const IniFileSet& other);
    IniFileSet& operator=(const IniFileSet& other);
    virtual ~IniFileSet();

    // No two sets count as equal: 0 and 1.
    int operator==(const IniFileSet& other) const;
    int operator!=(const IniFileSet& other) const;

    // Takes a copy of `name`, which may be null, and reads the file.
    void setIniFileName(const char* name);
    // Null until a name was set. Borrowed.
    const char* getIniFileName() const;
    // The directory, with a trailing slash, in which the file search found the file; null when the
    // file opened under its own name or wasn't found.
    const char* getIniFilePath() const;

    // Opens the file under its name or else as the search of findfileinpath finds it, and adds its
    // entries. 1 once a file was read to its end. Without a name, without a file or after a read
    // error nothing is added and the result stays as it was, 0 at first; there is no message.
    unsigned long populate();
    // The same result, without reading.
    unsigned long Populated() const;
    // Whether a file was found but couldn't be read to its end, so that nothing of it is here.
    [[nodiscard]] bool failedToRead() const { return readFailed_; }

    // A part with this name, or null. Borrowed.
    NameValuePair* findPart(const char* name);

    // Makes a part and adds it. `name` isn't null, the other two may be. A value ends at its first
    // space after other text; a save drops what follows that space. A value that begins
    // with `#` becomes a description.
    void addNewIniPart(const char* name, const char* value, const char* desc);

    // Writes the entries to `path`, which is emptied first. 1, or 0 if the file can't be
    // opened for writing and is untouched.
    [[nodiscard]] int saveIniFile(const char* path);

private:
    void readEntries(dnz::FileReader& file);

    std::optional<std::string> oIniFileName;
    std::optional<std::string> oIniFilePath;
    std::uint32_t oPopulated = 0;
    bool readFailed_ = false;
};
