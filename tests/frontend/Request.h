// A request as a web server hands it over: a body on standard input, its length in the
// environment.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "../support/TemporaryDirectory.h"

// Works in a fresh directory of its own.
class Request {
public:
    explicit Request(const std::string& body) {
        writeFile("body", body);
        if (std::freopen("body", "r", stdin) == nullptr) {
            std::abort();
        }
        setVariable("CONTENT_LENGTH", std::to_string(body.size()).c_str());
    }

private:
    TemporaryDirectory directory_;
};
