// Template pages: the static HTML of the form is in files outside the program. An object
// names one and copies it to the page, byte for byte.
// Results: 1 is success or true, 0 is failure or false.
#pragma once

#include <memory>

class HTMLPage {
public:
    HTMLPage();
    // Takes a copy of `name`, the bare name of the file.
    explicit HTMLPage(const char* name);
    HTMLPage(const HTMLPage& other);
    virtual ~HTMLPage();
    HTMLPage& operator=(const HTMLPage& other);

    // By the names, as text.
    int operator==(const HTMLPage& other) const;
    int operator!=(const HTMLPage& other) const;

    // Copies the file, followed by a line feed, to the page of the calling thread. The working
    // directory comes first, then the directories of the file search. 0 when the file isn't
    // found anywhere: a message takes its place then.
    [[nodiscard]] virtual long writeToStdout();

    // The name, or null. Borrowed.
    const char* get_HTMLSourceFile() const;
    // Takes ownership of `name`, an array made with new. Doesn't release the former array, which
    // then belongs to the caller.
    void set_HTMLSourceFile(char* const name);
    // Takes a copy of `name`.
    void setHTMLSourceFileName(const char* name);

private:
    std::unique_ptr<char[]> HTMLSourceFile;
};
