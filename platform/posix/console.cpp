#include "platform/console.h"

#include "platform/posix/converted_text.h"

#include <cstdio>
#include <string>

namespace platform {

namespace {

// As bytes: a wide write would turn standard output into a wide stream for the whole process.
void write_bytes(const std::string& bytes) {
    static_cast<void>(std::fwrite(bytes.data(), 1, bytes.size(), stdout));
}

} // namespace

void write_line(const utf16_t* text) {
    write_bytes(utf8_text(text) + '\n');
}

void write_text(const utf16_t* text) {
    write_bytes(utf8_text(text));
}

} // namespace platform
