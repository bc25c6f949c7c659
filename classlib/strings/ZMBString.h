#pragma once

#include "classlib/strings/ZString.h"

class ZUString;

// The UTF-8 form of a wide text, in which paths reach byte interfaces. Lone surrogates become U+FFFD. Null
// for the null form of the text, and when it cannot be converted.
class ZMBString final : public ZString {
public:
    ZMBString(const ZUString& text);

// Compilers warn that they never choose this operator by themselves, since a ZMBString is a ZString already.
// It is here for those who name it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wclass-conversion"
    operator const ZString&() const noexcept {
        return *this;
    }
#pragma GCC diagnostic pop
};
