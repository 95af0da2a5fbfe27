// The gateway's view of its settings for one request: one search by name across the fields of the
// form, the ini file that the form names, and the default ini file, strongest first.
// Results: 1 yes, 0 no; null for no such setting.
// Ownership: the three sets are embedded; the request body is borrowed from the web interface.
#pragma once

#include "config/CGIPartSet.h"
#include "config/IniFileSet.h"
#include "config/NameValuePair.h"

class WebInterface;

using ConfigurationPart = NameValuePair;

class ConfigurationSet {
public:
    // Reads the request body through `web`, then "dnz.ini" and the file that the form names.
    // Without a body no file is read.
    explicit ConfigurationSet(WebInterface* web);
    // Three empty sets. A copy takes nothing from the other object either.
    ConfigurationSet();
    ConfigurationSet(const ConfigurationSet& other);
    // Changes nothing.
    ConfigurationSet& operator=(const ConfigurationSet& other);
    virtual ~ConfigurationSet();

    // No two sets count as equal: 0 and 1.
    int operator==(const ConfigurationSet& other) const;
    int operator!=(const ConfigurationSet& other) const;

    // The pair of this name in the strongest source that has a valid one, or null. Borrowed.
    ConfigurationPart* findPart(const char* name);
    // 1 when `pair` has a value that isn't empty, or is the queue manager, whose strongest source
    // counts with or without a value; 0 otherwise and for null.
    int validValue(NameValuePair* pair);

private:
    void readRequestIni();

    CGIPartSet cgiParts;
    IniFileSet defaultIni;
    IniFileSet requestIni;
    int hasRequestIni = 0;  // 1 when the form named a file for requestIni
    const char* input = nullptr;
    unsigned long inputLength = 0;  // the terminator counted
};
