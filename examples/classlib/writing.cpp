#include "classlib/strings/ZString.h"

#include <cstdio>

int main() {
    ZString line;
    line << "f/" << 8 << " 1/" << 250 << "s ";
    line.set_width(6);
    line.set_fill('.');
    line << base16 << 255u << ' ';
    line.set_precision(3);
    line << 0.05 << ' ' << scientific << 1234.5;
    std::printf("%s\n", static_cast<const char*>(line));
}
