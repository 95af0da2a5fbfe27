// Numbers in text, read as the C library reads them but with no overflow left undefined.
#pragma once

// The decimal number at the start of `text`, which isn't null, as atoi reads it: white space, a
// sign, digits, and 0 where there are none. A number too large for an int gives the nearest int.
[[nodiscard]] int leadingNumber(const char* text);
