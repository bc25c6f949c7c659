#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"

#include <cstdio>
#include <cstring>

int main() {
    const char* const settings = "# exposure\n"
                                 "red eye = 0x1F, 2.5\n"
                                 "note: a\\:b; the rest\n";
    ZMemoryRStream in(settings, static_cast<int>(std::strlen(settings)));
    ZString name;
    char separator = 0;
    int flags = 0;
    double value = 0;
    const int stop = in.read_name(name);
    in >> separator >> flags >> separator >> value;
    name.trim();
    std::printf("'%s' ends at '%c': %d %.1f\n", static_cast<const char*>(name), stop, flags, value);

    ZString word;
    ZString note;
    in >> word >> separator;
    in.skip_space();
    in.read_until(";", note);
    std::printf("%s '%s' in line %d\n", static_cast<const char*>(word), static_cast<const char*>(note),
                in.inq_line() + 1);
}
