#include "classlib/time/ZDateTime.h"
#include "classlib/time/ZRandom.h"

#include <cstdio>

int main() {
    ZDateTime shot;
    if (shot.parse("18/11/26 14:05", 3))
        std::printf("%s\n", static_cast<const char*>(shot.inq_iso_date() + shot.format(" %H:%M")));
    ZRandom random(1);
    const unsigned int byte = random.next_byte();
    std::printf("%02X %08X\n", byte, random.next_u32());
}
