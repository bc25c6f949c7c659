#pragma once

#include "classlib/streams/ZData.h"
#include "platform/utf16.h"

#include <string>

// A text as the tables write it: printable ASCII as it is, every other unit as <E9> or <20AC>. A null text is
// an empty text.
[[nodiscard]] std::string plain(const char* text);
[[nodiscard]] std::string plain(const utf16_t* text);

// The same with the two empty forms told apart: null, '' and 'abc'.
[[nodiscard]] std::string shown(const char* text);
[[nodiscard]] std::string shown(const utf16_t* text);

// The bytes in use, as they are.
[[nodiscard]] std::string bytes_of(const ZData& data);
