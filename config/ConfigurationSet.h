// The gateway's view of its settings for one request: a search by name in the fields of the form,
// then in the ini file that the form names, then in the default ini file. Results: 1 is yes, 0 is
// no; null means no such setting. Ownership: the object owns its three sets and borrows the request
// body from the web interface.
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
    // Three empty sets. A copy takes nothing from the other object.
    ConfigurationSet();
    ConfigurationSet(const ConfigurationSet& other);
    // Changes nothing.
    ConfigurationSet& operator=(const ConfigurationSet& other);
    virtual ~ConfigurationSet();

    // No two sets count as equal: 0 and 1.
    int operator==(const ConfigurationSet& other) const;
    int operator!=(const ConfigurationSet& other) const;

    // The pair with this name from the first source that has a valid one, or null. Borrowed.
    ConfigurationPart* findPart(const char* name);
    // 1 if `pair` has a value that isn't empty. Also 1 for the queue manager without a value: its
    // first source counts in any case. Otherwise, and for null, 0.
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
