// The environment variables that make up the context of a request: those of RFC 3875 and some that
// older servers add.
#pragma once

#include <iterator>

// clang-format off
constexpr const char* ContextName[] = {
    "AUTH_TYPE",
    "AUTH_PASS",
    "HTTP_ACCEPT",
    "HTTP_ACCEPT_LANGUAGE",
    "HTTP_PRAGMA",
    "HTTP_HOST",
    "HTTP_REFERER",
    "HTTP_USER_AGENT",
    "HTTP_UA_CPU",
    "HTTP_UA_OS",
    "HTTP_UA_COLOR",
    "HTTP_UA_PIXELS",
    "HTTP_RESPONSE",
    "HTTP_REASON",
    "REQUEST_METHOD",
    "SCRIPT_NAME",
    "CONTENT_TYPE",
    "CONTENT_LENGTH",
    "QUERY_STRING",
    "PATH_INFO",
    "PATH_TRANSLATED",
    "REMOTE_HOST",
    "REMOTE_ADDR",
    "REMOTE_USER",
    "REMOTE_IDENT",
    "SERVER_ROOT",
    "SERVER_NAME",
    "SERVER_PORT",
    "SERVER_SOFTWARE",
    "SERVER_PROTOCOL",
    "GATEWAY_INTERFACE",
};
// clang-format on

static_assert(std::size(ContextName) == 31);
