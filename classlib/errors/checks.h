#pragma once

#include <cstddef>

class ZUString;

// The two checks of the library. A failed check reports to the current reporter (ZProgramErrorOutput), breaks
// into the debugger when the reporter asks for it, and lets the operation go on.

// Reports a condition that does not hold, with its text, the stem of the source file's name and the line.
#define ZASSERT(condition)                                                                                   \
    do {                                                                                                     \
        if (!(condition)) [[unlikely]]                                                                       \
            report_failed_assertion(#condition, stem_text<source_stem_t(__FILE__)>(), __LINE__);             \
    } while (false)

// Reports a message, a ZUString or what makes one, from inside the test that calls for it.
#define ZWARNING(message) report_warning(message, stem_text<source_stem_t(__FILE__)>(), __LINE__)

void report_failed_assertion(const char* condition, const char* file, int line);
void report_warning(const ZUString& message, const char* file, int line);

// The name of a source file without folders and extension: "classlib/files/ZFile.cpp" gives "ZFile".
template <std::size_t Size>
struct source_stem_t {
    consteval explicit source_stem_t(const char (&path)[Size]) {
        std::size_t length = 0;
        for (const char c : path) {
            if (c == '/' || c == '\\')
                length = 0;
            else
                text[length++] = c;
        }
        for (std::size_t i = 0, end = length; i < end; ++i) {
            if (text[i] == '.')
                length = i;
        }
        for (std::size_t i = length; i < Size; ++i)
            text[i] = '\0';
    }

    char text[Size]{};
};

// The text of a stem, which lives as long as the process: a reporter may keep it.
template <source_stem_t Stem>
[[nodiscard]] constexpr const char* stem_text() noexcept {
    return Stem.text;
}
