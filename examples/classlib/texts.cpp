#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"

#include <cstdio>

int main() {
    ZUString name = ZUString::from_utf8("Gr\xC3\xBC\xC3\x9F"
                                        "e 0x1F.cr2");
    name.replace(UTF16(" "), UTF16("_"));
    const int dot = name.find_last(UTF16(".")[0]);
    std::printf("%s, %d units\n", static_cast<const char*>(ZMBString(name)), name.length());

    int number = 0;
    int base = 0;
    if (name.sub_string(6, dot - 6).to_int(number, &base))
        std::printf("%d, written in base %d\n", number, base);
}
